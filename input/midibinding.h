#pragma once

#include "midimessage.h"

#include <optional>

/// The message that a player's control was learnt from. Status 0 means not learnt. The numbers
/// come from the settings file, so that they may be none that a message can carry.
struct MidiBinding
{
    unsigned status = 0;
    unsigned number = 0;

    constexpr bool isLearnt() const { return status != 0; }
    /// Whether a message has the learnt status, channel included.
    constexpr bool matchesStatus(const MidiMessage &message) const
    {
        return isLearnt() && message.status == status;
    }
    /// Whether a message has both learnt bytes; its value is free.
    constexpr bool matches(const MidiMessage &message) const
    {
        return matchesStatus(message) && message.number == number;
    }
};

/// What a message does for the player whose device sent it.
struct MidiAction
{
    std::optional<int> paddleInput; ///< the paddle's new step per tick, -64 ... +63
    bool start = false; ///< whether a start is requested, with whatever value came
};

/// Matches a message against a player's two bindings; it may serve both at once. With
/// `fourteenBits` the status alone selects the move message and the step is its first data byte:
/// such a controller sends the coarse half of its position there.
constexpr MidiAction midiActionFor(const MidiBinding &move, const MidiBinding &start,
    bool fourteenBits, const MidiMessage &message)
{
    constexpr int centre = 64;
    MidiAction action;
    if (fourteenBits && move.matchesStatus(message))
        action.paddleInput = message.number - centre;
    else if (!fourteenBits && move.matches(message))
        action.paddleInput = message.value - centre;
    action.start = start.matches(message);
    return action;
}
