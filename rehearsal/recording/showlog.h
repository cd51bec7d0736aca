#pragma once

#include "events.h"
#include "frames.h"

#include <QByteArray>

#include <array>
#include <optional>
#include <vector>

/// The proof of darkness: lists what happened in a show and tells, for each way in which it can
/// end, whether and when each zone was dark.
///
/// A projector repeats its last frame until it is told otherwise. So a zone shows light while
/// output is enabled and the zone's last frame has a lit point, however long ago it came. What ends
/// a show: output disabled, the session closed, the game gone, a dark frame after lit ones, and
/// frames that stop with a lit one.
///
/// Times are those of the events and frames, in the order in which they are noted, and count from
/// the start of the host. They are kept in whole microseconds, as recordings keep them.
class ShowLog
{
public:
    /// A zone whose frames stop for longer counts as left.
    static constexpr SharedTime longestPause = 1'000'000'000;

    explicit ShowLog(SharedTime start = 0);

    void note(const Event &event);
    void note(int zone, const Frame &frame);

    /// Whether the zone shows light now.
    bool showsLight(int zone) const;
    /// The list, the endings and the figures of each zone as text, in lines.
    QByteArray report() const;

private:
    struct Zone
    {
        std::uint64_t frames = 0;
        std::uint64_t litFrames = 0;
        std::uint64_t missed = 0;
        std::size_t mostPoints = 0;
        SharedTime lastFrameAt = 0;
        SharedTime lastLitAt = 0;
        SharedTime lightChangedAt = 0; ///< when light last began or ended
        bool lit = false; ///< its last frame has a lit point
        bool showsLight = false;
        bool left = false; ///< its frames have stopped with a lit one
        std::vector<std::size_t> litEndings; ///< indexes of the endings that left it lit until now
    };
    struct Line
    {
        SharedTime at;
        QByteArray text;
    };
    /// An ending as one zone saw it.
    struct Ending
    {
        SharedTime at;
        QByteArray text;
        bool wasLit;
        std::optional<SharedTime> darkAt;
    };

    SharedTime sinceStart(SharedTime time) const { return (time - m_start) / 1000 * 1000; }
    void addLine(SharedTime at, QByteArray text);
    void addEnding(SharedTime at, const QByteArray &text, int zone);
    void lookForLeftZones(SharedTime now);
    void updateLight(int zone, SharedTime at);
    static QByteArray textOf(const Ending &ending);

    SharedTime m_start;
    bool m_outputOn = false;
    std::array<Zone, maxZones> m_zones;
    std::vector<Line> m_lines;
    std::vector<Ending> m_endings;
};
