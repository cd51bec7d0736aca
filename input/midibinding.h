#pragma once

#include "midimessage.h"

#include <optional>

/// The message that a control was learnt from. Status 0 means not learnt. The numbers come from the
/// settings file and may exceed what a message can carry.
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
    /// Whether a message has both learnt bytes, with any value.
    constexpr bool matches(const MidiMessage &message) const
    {
        return matchesStatus(message) && message.number == number;
    }
};

/// The effect of a message for the player whose device sent it.
struct MidiAction
{
    std::optional<int> paddleInput; ///< the paddle's new step per tick, -64 ... +63
    bool start = false; ///< whether a start is requested; the value is ignored
};

/// Matches a message against a player's two bindings; it may match both. With `fourteenBits` the
/// status alone identifies the move message, and the step is its first data byte: such a controller
/// sends the coarse half of its position there.
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
