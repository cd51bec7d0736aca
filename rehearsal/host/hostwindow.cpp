#include "hostwindow.h"

#include "host.h"
#include "palette.h"
#include "statusline.h"
#include "viewgrid.h"

#include <QScreen>
#include <QVBoxLayout>

namespace {

constexpr int msBetweenFigures = 250;
/// Sides of the views of a new window, while the screen has room: of a single one and of several.
constexpr int singleSide = 640;
constexpr int severalSide = 400;

QPalette darkPalette()
{
    QPalette colors(palette::window);
    colors.setColor(QPalette::Window, palette::window);
    colors.setColor(QPalette::WindowText, palette::text);
    return colors;
}

} // namespace

HostWindow::HostWindow(const Host &host)
    : m_views(new ViewGrid)
    , m_status(new StatusLine(host))
{
    setWindowTitle(tr("Rehearsal host \u2013 BEYOND stand-in"));
    setPalette(darkPalette());
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 14, 14, 10);
    layout->setSpacing(8);
    layout->addWidget(m_views, 1);
    layout->addWidget(m_status);
    const bool several = host.info().zoneCount > 1;
    for (int zone = 0; zone < host.info().zoneCount; ++zone) {
        auto *view = new ZoneView(several ? tr("Zone %1").arg(zone + 1) : QString());
        m_views->add(view);
        m_zones.push_back({view, {}});
    }
    const int columns = bestColumns(host.info().zoneCount, {16, 9});
    const int rows = (host.info().zoneCount + columns - 1) / columns;
    const int side = several ? severalSide : singleSide;
    const QSize wished(columns * side + 28, std::max(rows, 1) * (side + 32) + 60);
    resize(wished.boundedTo(screen()->availableSize() * 0.9));

    connect(&host, &Host::frameReceived, this, &HostWindow::takeFrame);
    connect(&host, &Host::received, this, &HostWindow::refresh);
    connect(&host, &Host::outputSwitched, this, [this](bool on) {
        for (const Zone &zone : m_zones)
            zone.view->setOutputOn(on);
        m_status->setOutputOn(on);
    });
    refreshFigures();
}

QImage HostWindow::snapshot()
{
    return m_views->grab().toImage();
}

QString HostWindow::summary() const
{
    return QStringLiteral("%1 frames, %2 per second, %3 points in the last one, %4 missed")
        .arg(m_total.frames())
        .arg(m_total.framesPerSecond(), 0, 'f', 1)
        .arg(m_total.points())
        .arg(m_total.missed());
}

void HostWindow::takeFrame(int zone, const Frame &frame)
{
    const auto now = Statistics::Time::clock::now();
    Zone &to = m_zones[std::size_t(zone)];
    to.view->setFrame(frame.points);
    const auto points = static_cast<qsizetype>(frame.points.size());
    to.statistics.add(now, points, frame.missed);
    m_total.add(now, points, frame.missed);
}

void HostWindow::refresh()
{
    for (const Zone &zone : m_zones)
        zone.view->refresh();
    if (m_sinceFigures.hasExpired(msBetweenFigures))
        refreshFigures();
}

void HostWindow::refreshFigures()
{
    m_sinceFigures.start();
    const auto now = Statistics::Time::clock::now();
    for (Zone &zone : m_zones) {
        const QString figures = tr("%1 frames/s     %2 points     %3 missed")
                                    .arg(zone.statistics.framesInLastSecond(now))
                                    .arg(zone.statistics.points())
                                    .arg(zone.statistics.missed());
        if (m_zones.size() > 1)
            zone.view->setFigures(figures);
        else
            m_status->setFigures(figures);
    }
    if (m_zones.empty())
        m_status->setFigures(tr("No zones"));
}
