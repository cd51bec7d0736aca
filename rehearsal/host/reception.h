#pragma once

#include "framehistory.h"
#include "frames.h"

#include <array>

/// The frames received of a show: the history of each zone and of all together, and since when
/// output is as it is. Its times are those of the show's clock.
struct Reception
{
    std::array<FrameHistory, maxZones> zones;
    FrameHistory total;
    SharedTime outputSince = 0;

    void add(int zone, const Frame &frame, SharedTime sentAt)
    {
        const FrameFacts facts = factsOf(frame.points);
        zones.at(std::size_t(zone)).add(sentAt, facts, frame.missed);
        total.add(sentAt, facts, frame.missed);
    }
    const FrameHistory &of(int zone) const { return zones.at(std::size_t(zone)); }
};
