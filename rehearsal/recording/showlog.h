#pragma once

#include "events.h"
#include "frames.h"

#include <QByteArray>

#include <array>
#include <optional>
#include <vector>

/// Lists the events of a show and reports, for every ending, whether and when each zone went dark.
///
/// A projector repeats its last frame until it gets another. A zone therefore shows light while
/// output is enabled and its last frame has a lit point, however old that frame is. Endings are:
/// output disabled, session closed, game gone, a dark frame after lit ones, and frames that stop
/// with a lit one.
///
/// Events and frames must be noted in the order of their times. Times count from the start of the
/// host, in whole microseconds as in recordings.
class ShowLog
{
public:
    /// If frames stop for longer, they count as ended.
    static constexpr SharedTime longestPause = 1'000'000'000;

    explicit ShowLog(SharedTime start = 0);

    void note(const Event &event);
    void note(int zone, const Frame &frame);

    /// Whether the zone shows light now.
    bool showsLight(int zone) const;
    /// The events, the endings and the figures of each zone, as lines of text.
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
        bool left = false; ///< its frames stopped with a lit one
        std::vector<std::size_t> litEndings; ///< indexes of the endings since which it has been lit
    };
    struct Line
    {
        SharedTime at;
        QByteArray text;
    };
    /// An ending, for one zone.
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
