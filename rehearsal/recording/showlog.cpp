#include "showlog.h"

#include <algorithm>
#include <utility>

namespace {

/// Further events are counted but not listed, so that a flickering game cannot fill the memory.
constexpr std::size_t longestList = 10'000;

QByteArray nameOf(int zone)
{
    return "zone " + QByteArray::number(zone + 1);
}

QByteArray nameOf(const Event &event)
{
    switch (event.kind) {
    case Event::HostStarted:
        return "host started, output disabled";
    case Event::OutputEnabled:
        return "output enabled";
    case Event::OutputDisabled:
        return "output disabled";
    case Event::SessionOpened:
        return "session opened by process " + QByteArray::number(event.process);
    case Event::SessionClosed:
        return "session closed";
    case Event::GameGone:
        return "game gone";
    case Event::HostEnded:
        return "host ended";
    }
    return {};
}

bool isEnding(Event::Kind kind)
{
    return kind == Event::OutputDisabled || kind == Event::SessionClosed || kind == Event::GameGone;
}

QByteArray rowOf(SharedTime at, const QByteArray &text)
{
    return inMilliseconds(at).rightJustified(14) + "  " + text + '\n';
}

} // namespace

ShowLog::ShowLog(SharedTime start)
    : m_start(start)
{
}

void ShowLog::note(const Event &event)
{
    const SharedTime at = sinceStart(event.at);
    lookForLeftZones(at);
    addLine(at, nameOf(event));
    if (isEnding(event.kind)) {
        for (int zone = 0; zone < maxZones; ++zone) {
            if (m_zones.at(std::size_t(zone)).frames > 0)
                addEnding(at, nameOf(event) + ": " + nameOf(zone), zone);
        }
    }
    m_outputOn = outputAfter(event).value_or(m_outputOn);
    for (int zone = 0; zone < maxZones; ++zone)
        updateLight(zone, at);
}

void ShowLog::note(int zone, const Frame &frame)
{
    const SharedTime at = sinceStart(frame.sentAt);
    lookForLeftZones(at);
    Zone &to = m_zones.at(std::size_t(zone));
    const bool wasLit = std::exchange(to.lit, isLit(frame.points));
    if (to.lit && !wasLit) {
        addLine(at, nameOf(zone) + ": first lit frame");
    } else if (!to.lit && wasLit) {
        addLine(to.lastLitAt, nameOf(zone) + ": last lit frame");
        addLine(at, nameOf(zone) + ": dark frame");
        if (to.showsLight && !to.left)
            addEnding(to.lastLitAt, nameOf(zone) + ", last lit frame:", zone);
    }
    ++to.frames;
    to.litFrames += to.lit ? 1 : 0;
    to.missed += frame.missed;
    to.mostPoints = std::max(to.mostPoints, frame.points.size());
    to.lastFrameAt = at;
    to.lastLitAt = to.lit ? at : to.lastLitAt;
    to.left = false;
    updateLight(zone, at);
}

bool ShowLog::showsLight(int zone) const
{
    return m_zones.at(std::size_t(zone)).showsLight;
}

QByteArray ShowLog::report() const
{
    QByteArray text = "Rehearsal report: times in milliseconds since the host started.\n"
                      "A zone repeats its last frame until it gets another or output is "
                      "disabled.\n\nEvents\n";
    std::vector<Line> lines = m_lines;
    std::ranges::stable_sort(lines, {}, &Line::at);
    for (const Line &line : lines)
        text += rowOf(line.at, line.text);
    if (m_lines.size() == longestList)
        text += "The list is full; later events are not shown.\n";

    text += "\nEndings\n";
    std::vector<Ending> endings = m_endings;
    std::ranges::stable_sort(endings, {}, &Ending::at);
    for (const Ending &ending : endings)
        text += rowOf(ending.at, textOf(ending));

    text += "\nZones\n";
    for (int zone = 0; zone < maxZones; ++zone) {
        const Zone &of = m_zones.at(std::size_t(zone));
        if (of.frames == 0)
            continue;
        text += nameOf(zone) + ": " + QByteArray::number(of.frames) + " frames, "
            + QByteArray::number(of.litFrames) + " lit, " + QByteArray::number(of.missed)
            + " missed, at most " + QByteArray::number(qulonglong(of.mostPoints)) + " points, "
            + (of.showsLight ? "lit" : "dark") + " at the end\n";
    }

    const auto lit = std::ranges::count_if(endings, [](const Ending &e) { return !e.darkAt; });
    text += lit == 0 ? QByteArray("\nEvery ending left every zone dark.\n")
                     : "\nLeft lit: " + QByteArray::number(qint64(lit)) + " of "
            + QByteArray::number(qint64(endings.size())) + " endings.\n";
    return text;
}

void ShowLog::addLine(SharedTime at, QByteArray text)
{
    if (m_lines.size() < longestList)
        m_lines.push_back({at, std::move(text)});
}

void ShowLog::addEnding(SharedTime at, const QByteArray &text, int zone)
{
    if (m_endings.size() == longestList)
        return;
    Zone &of = m_zones.at(std::size_t(zone));
    Ending ending = {at, text, of.showsLight, std::nullopt};
    if (of.showsLight)
        of.litEndings.push_back(m_endings.size());
    else
        ending.darkAt = of.lightChangedAt;
    m_endings.push_back(std::move(ending));
}

/// Detects zones whose frames have stopped with a lit one.
void ShowLog::lookForLeftZones(SharedTime now)
{
    for (int zone = 0; zone < maxZones; ++zone) {
        Zone &of = m_zones.at(std::size_t(zone));
        if (!of.showsLight || of.left || now - of.lastFrameAt <= longestPause)
            continue;
        of.left = true;
        addLine(of.lastFrameAt, nameOf(zone) + ": frames stopped with a lit one");
        addEnding(of.lastFrameAt, nameOf(zone) + ", frames stopped:", zone);
    }
}

void ShowLog::updateLight(int zone, SharedTime at)
{
    Zone &of = m_zones.at(std::size_t(zone));
    const bool shows = m_outputOn && of.lit;
    if (shows == of.showsLight)
        return;
    of.showsLight = shows;
    of.lightChangedAt = at;
    if (shows)
        return;
    for (const std::size_t ending : of.litEndings)
        m_endings[ending].darkAt = at;
    of.litEndings.clear();
}

QByteArray ShowLog::textOf(const Ending &ending)
{
    if (!ending.darkAt)
        return ending.text + " not dark";
    if (!ending.wasLit) {
        return ending.text + " dark "
            + inMilliseconds(std::max<SharedTime>(ending.at - *ending.darkAt, 0)) + " ms before";
    }
    return ending.text + " dark " + inMilliseconds(*ending.darkAt - ending.at) + " ms after";
}
