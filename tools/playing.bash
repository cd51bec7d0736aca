# Sourced after harness.bash by scripts that play the game with real key presses, as an operator and
# two players, starting without settings. Tab moves through the controls in order, so fonts and sizes
# do not matter. The game's window must have the keyboard focus.

# stage_show_game: enables laser output and shows the game.
stage_show_game() {
    stage_keys Tab space Tab space
}

# stage_learn_keys: after stage_show_game, sets both players to the keyboard: start, up and down are
# d, w and s on the left, Right, Up and Down on the right.
stage_learn_keys() {
    stage_keys Tab Tab Tab Tab Down Down            # zone, speed, reset, left: the keyboard
    stage_keys Tab space d Tab space w Tab space s  # start, up, down
    stage_keys Tab Tab Down Down                    # sensitivity, right: the keyboard
    stage_keys Tab space Right Tab space Up Tab space Down
}

# stage_play_point COMMAND...: with the learnt keys, left serves and wins a point. Runs COMMAND while
# the ball is in flight.
stage_play_point() {
    stage_keys d                                    # leave the score display
    stage_hold w 3                                  # out of the right paddle's reach
    stage_keys d                                    # serve
    sleep 0.6
    "$@"
    stage_until 60 stage_logged "Score LR = 1-0" || stage_fail "No point was scored."
}
