#pragma once

#include "hoststate.h"

#include <QByteArray>

#include <optional>
#include <span>

/// An event of a show, other than a frame.
struct Event
{
    /// The values are stored in recordings: append new kinds.
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
    std::uint64_t process = 0; ///< the game's process id, for events of a session

    bool operator==(const Event &) const = default;
};

/// Whether output is enabled after the event; none if the event does not change it.
std::optional<bool> outputAfter(const Event &event);

/// Whether a point emits light: it has a colour, finite coordinates and is not blanked travel.
bool isLit(const LdbPoint &point);
/// Whether any point emits light.
bool isLit(std::span<const LdbPoint> points);

/// A time in the format of reports and dumps: milliseconds with three decimals.
QByteArray inMilliseconds(SharedTime time);
