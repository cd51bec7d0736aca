#include "hostwindow.h"

#include "framedoctor.h"
#include "host.h"
#include "palette.h"
#include "playbackbar.h"
#include "scrubbar.h"
#include "showkeeper.h"
#include "showplayer.h"
#include "sidepanel.h"
#include "statusline.h"
#include "viewgrid.h"
#include "windowmemory.h"

#include <QAction>
#include <QActionGroup>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>

#include <algorithm>

namespace {

constexpr int figuresInterval = 200; // milliseconds
constexpr int smallestPicture = 300;

QPalette darkPalette()
{
    QPalette colors(palette::frame, palette::window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
             QPalette::ToolTipText, QPalette::HighlightedText})
        colors.setColor(role, palette::text);
    colors.setColor(QPalette::Base, palette::raised);
    colors.setColor(QPalette::Button, palette::frame);
    colors.setColor(QPalette::ToolTipBase, palette::frame);
    colors.setColor(QPalette::Highlight, palette::chosen);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colors.setColor(QPalette::Disabled, role, palette::quiet);
    return colors;
}

QLabel *advice()
{
    auto *label = new QLabel(HostWindow::tr("Software checks are advisory: scan-fail, emergency "
                                            "stop and shutter belong in hardware."));
    QPalette colors = label->palette();
    colors.setColor(QPalette::WindowText, palette::quiet);
    label->setPalette(colors);
    label->setWordWrap(true);
    return label;
}

} // namespace

HostWindow::HostWindow(Host &host, ShowKeeper &keeper)
    : m_host(host)
    , m_keeper(keeper)
    , m_actions(*this)
    , m_views(new ViewGrid)
    , m_panel(new SidePanel)
    , m_scrub(new ScrubBar)
    , m_playback(new PlaybackBar(m_actions))
    , m_status(new StatusLine(host, m_actions.record))
    , m_below(new QWidget)
{
    setPalette(darkPalette());
    menuBar()->setPalette(palette());
    for (int number = 1; number <= maxZones; ++number) {
        auto *view = new ZoneView(tr("Zone %1").arg(number));
        m_views->add(view);
        m_zones.push_back(view);
        connect(view, &ZoneView::chosen, this, [this, number] { choose(number - 1); });
        connect(view, &ZoneView::doubleClicked, this,
            [this] { m_actions.large->setChecked(!m_actions.large->isChecked()); });
    }
    layOut();
    connectHost();
    connectView();
    connectFrame();
    connectHostSwitches();
    connectShows();
    m_sinceFigures.start();
    showSource();
    showRecording();
    const bool hasPlace = recallWindow(*this, m_actions, *m_panel);
    applySettings();
    if (!hasPlace) {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        setGeometry(placeBesideGame(screen, minimumSizeHint().expandedTo(minimumSize())));
    }
}

HostWindow::~HostWindow() = default;

void HostWindow::layOut()
{
    auto *middle = new QWidget;
    auto *beside = new QHBoxLayout(middle);
    beside->setContentsMargins(0, 0, 0, 0);
    beside->setSpacing(14);
    beside->addWidget(m_views, 1);
    beside->addWidget(m_panel);
    m_views->setMinimumSize(smallestPicture, smallestPicture);

    auto *below = new QVBoxLayout(m_below);
    below->setContentsMargins(0, 0, 0, 0);
    below->setSpacing(4);
    below->addWidget(m_status);
    below->addWidget(advice());

    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(12, 12, 12, 8);
    layout->setSpacing(8);
    layout->addWidget(middle, 1);
    layout->addWidget(m_scrub);
    layout->addWidget(m_playback);
    layout->addWidget(m_below);
    setCentralWidget(content);
    m_scrub->hide();
}

void HostWindow::connectHost()
{
    connect(&m_host, &Host::frameReceived, this, &HostWindow::takeLive);
    connect(&m_host, &Host::outputSwitched, this, &HostWindow::switchLiveOutput);
    connect(&m_host, &Host::received, this, [this] {
        if (!m_player)
            refresh();
    });
    connect(&m_host, &Host::changed, this, &HostWindow::showHost);
}

void HostWindow::connectView()
{
    connect(m_actions.quit, &QAction::triggered, this, &QWidget::close);
    connect(m_actions.savePicture, &QAction::triggered, this, &HostWindow::savePicture);
    for (const QAction *action : {m_actions.asDrawn, m_actions.swappedColors, m_actions.points,
             m_actions.travel, m_actions.order})
        connect(action, &QAction::toggled, this, &HostWindow::applySettings);
    connect(m_panel, &SidePanel::changed, this, &HostWindow::applySettings);
    connect(m_actions.strip, &QAction::toggled, m_panel, &SidePanel::setStripShown);
    connect(m_actions.doctor, &QAction::toggled, m_panel, &SidePanel::setDoctorShown);
    connect(m_actions.large, &QAction::toggled, this, &HostWindow::setLarge);
    connect(m_actions.fullScreen, &QAction::toggled, this, &HostWindow::setFullScreen);
    connect(m_actions.leaveFullScreen, &QAction::triggered, this,
        [this] { m_actions.fullScreen->setChecked(false); });
}

void HostWindow::connectFrame()
{
    connect(m_actions.hold, &QAction::toggled, this, &HostWindow::hold);
    connect(m_actions.pace, &QActionGroup::triggered, this,
        [this](const QAction *action) { setPace(action->data().toDouble()); });
    const auto step = [this](int points) {
        m_actions.hold->setChecked(true);
        m_scrub->step(points);
    };
    connect(m_actions.nextPoint, &QAction::triggered, this, [step] { step(1); });
    connect(m_actions.previousPoint, &QAction::triggered, this, [step] { step(-1); });
    connect(m_scrub, &ScrubBar::moved, this, [this](int count) {
        setPace(1);
        m_zones[std::size_t(m_chosen)]->setPointsShown(count);
    });
}

void HostWindow::connectHostSwitches()
{
    const auto change = [this](const auto &edit) {
        HostInfo info = m_host.info();
        edit(info);
        m_host.setInfo(info);
    };
    connect(m_actions.busy, &QAction::toggled, this,
        [change](bool busy) { change([busy](HostInfo &info) { info.ready = !busy; }); });
    connect(m_actions.tooOld, &QAction::toggled, this, [change](bool old) {
        constexpr int lastTooOld = 1613;
        const int build = old ? lastTooOld : HostInfo().build;
        change([build](HostInfo &info) { info.build = build; });
    });
    connect(m_actions.gone, &QAction::toggled, &m_host, &Host::setGone);
    connect(m_actions.zones, &QActionGroup::triggered, this, [change](const QAction *action) {
        const int count = action->data().toInt();
        change([count](HostInfo &info) { info.zoneCount = count; });
    });
}

QImage HostWindow::snapshot()
{
    refresh();
    // Until the light of the last frames is as bright as it gets.
    constexpr SharedTime step = 16'000'000;
    constexpr int steps = 12;
    for (int i = 1; i <= steps; ++i) {
        for (ZoneView *view : m_zones)
            view->refresh(sharedNow() + i * step);
    }
    return m_views->grab().toImage();
}

QString HostWindow::summary() const
{
    return tr("%1 frames, %2 per second, %3 points in the last one, %4 missed")
        .arg(m_live.total.frames())
        .arg(m_live.total.framesPerSecond(), 0, 'f', 1)
        .arg(m_live.total.facts().points)
        .arg(m_live.total.missed());
}

void HostWindow::remember() const
{
    rememberWindow(*this, m_actions, *m_panel);
}

void HostWindow::takeLive(int zone, const Frame &frame)
{
    // Whatever a writer has put there, differences of times stay in range.
    const SharedTime sentAt = std::clamp(frame.sentAt, SharedTime(0), sharedNow());
    m_live.add(zone, frame, sentAt);
    if (!m_player)
        m_zones[std::size_t(zone)]->takeFrame(frame.points, sentAt);
}

void HostWindow::switchLiveOutput(bool on)
{
    m_live.outputSince = sharedNow();
    if (!m_player)
        showOutput(on);
}

void HostWindow::showOutput(bool on)
{
    m_status->setOutputOn(on);
    for (ZoneView *view : m_zones)
        view->setOutputOn(on);
}

void HostWindow::refresh()
{
    const SharedTime now = sharedNow();
    for (ZoneView *view : m_zones) {
        if (view->isVisible() && !isMinimized())
            view->refresh(now);
    }
    const ZoneView *chosen = m_zones[std::size_t(m_chosen)];
    if (chosen->isHeld() && m_speed < 1)
        m_scrub->follow(chosen->nextPoint());
    if (m_sinceFigures.hasExpired(figuresInterval))
        refreshFigures();
}

void HostWindow::refreshFigures()
{
    m_sinceFigures.start();
    noticeFailedRecording();
    showRecording();
    const Reception &received = reception();
    const Conditions now = conditions();
    QList<Finding> findings = examineOutput(received.total.lastSent(), now);
    for (int number = 1; number <= zoneCount(); ++number) {
        const FrameHistory &history = received.of(number - 1);
        m_zones[std::size_t(number) - 1]->setFigures(tr("%1 frames/s \u00b7 %2 points")
                                                         .arg(history.framesInLastSecond(now.now))
                                                         .arg(history.facts().points));
        // A zone is left lit whichever one is looked at.
        for (const Finding &finding : examine(number, history, now)) {
            if (number == m_chosen + 1 || finding.cause == Cause::zoneLeftLit)
                findings.append(finding);
        }
    }
    m_panel->setFindings(findings);
    m_panel->setFigures(figuresOf(m_chosen + 1, received.of(m_chosen), now));
    m_status->setFigures(tr("%1 missed").arg(received.total.missed()));
}

Conditions HostWindow::conditions() const
{
    const Playback *playback = m_player ? m_player->playback() : nullptr;
    return {playback ? playback->position() : sharedNow(),
        playback ? playback->isOutputOn() : m_host.isOutputOn(), reception().outputSince,
        m_panel->pointRate(), m_panel->longestStand()};
}
