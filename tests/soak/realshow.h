#pragma once

#include "players.h"
#include "playerstage.h"

#include <mutex>

/// The whole program's window in real time, with its own threads and timers: a MIDI controller on
/// the left, a gamepad on the right, and a host that can be restarted. Test's thread, unless noted.
class RealShow
{
public:
    RealShow();
    ~RealShow();
    RealShow(const RealShow &) = delete;
    RealShow &operator=(const RealShow &) = delete;

    /// Opens the window, switches the output on and shows the game.
    void start();
    /// Lets both controllers act once. Every 20 ms.
    void play();
    /// Makes the host go away, and come back; the operator then switches everything on again.
    void restartHost();
    /// Destroys the window, after which the zone must be dark.
    void end();

    /// The first rule that was broken, or an empty text.
    QString broken() const;
    bool isDark() const; ///< after end()

    int winners = 0; ///< winner displays that a start press has ended
    Relaxed<int> comparedFrames = 0; ///< pairs of frames in play that were three ticks apart

private:
    void switchOn();
    void watchFrame();
    QString brokenPace(bool lit);
    void breaks(const QString &rule);

    PlayerStage m_stage;
    Fader m_fader{m_stage.midi, 0, FakeMidi::Thread::Foreign};
    Whim m_whim{2};
    const Pong *m_game = nullptr;
    Relaxed<bool> m_watches = false;
    int m_turns = 0;
    int m_admired = 0; ///< turns since the match was over

    /// The ball in the last frame, on the game thread.
    struct Flight
    {
        bool inPlay = false;
        Point ball;
        float vx = 0;
    };
    Flight m_last;

    mutable std::mutex m_mutex;
    QString m_broken;
    bool m_lastFrameLit = false;
};
