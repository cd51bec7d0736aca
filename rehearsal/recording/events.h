#pragma once

#include "hoststate.h"

#include <QByteArray>

#include <optional>
#include <span>

/// Something that happened in a show, apart from frames.
struct Event
{
    /// The numbers are those in recordings: new kinds go to the end.
    enum Kind : std::uint8_t {
        HostStarted, ///< with output disabled
        OutputEnabled,
        OutputDisabled,
        SessionOpened,
        SessionClosed,
        GameGone, ///< its process ended with the session open
        HostEnded,
    };
    static constexpr int kinds = HostEnded + 1;

    Kind kind;
    SharedTime at;
    std::uint64_t process = 0; ///< the game's process id, of sessions and their end

    bool operator==(const Event &) const = default;
};

/// Whether output is enabled after the event; none if it says nothing about it.
std::optional<bool> outputAfter(const Event &event);

/// Whether a point emits light: it has a colour, is not blanked travel and lies somewhere.
bool isLit(const LdbPoint &point);
/// Whether any point emits light.
bool isLit(std::span<const LdbPoint> points);

/// A time as reports and dumps write it: milliseconds with three decimals.
QByteArray inMilliseconds(SharedTime time);
