// The effects of the window's menus on its views.

#include "host.h"
#include "hostwindow.h"
#include "scrubbar.h"
#include "sidepanel.h"
#include "statusline.h"
#include "viewgrid.h"

#include <QAction>
#include <QActionGroup>
#include <QEvent>
#include <QFileDialog>
#include <QMenuBar>

#include <algorithm>

void HostWindow::showHost()
{
    const HostInfo &info = m_host.info();
    m_status->showHost(m_host);
    m_actions.busy->setChecked(!info.ready);
    m_actions.gone->setChecked(m_host.isGone());
    m_actions.zones->actions().at(info.zoneCount)->setChecked(true);
    for (QAction *action : m_actions.ofHost())
        action->setEnabled(m_host.isRunning());
    m_views->setCount(zoneCount());
    m_actions.large->setEnabled(zoneCount() > 1);
    choose(std::clamp(m_chosen, 0, std::max(zoneCount() - 1, 0)));
}

void HostWindow::applySettings()
{
    ScannerSettings scanner;
    scanner.pointRate = m_panel->pointRate();
    scanner.colorDelay = m_panel->colorDelay();
    scanner.hasMirrors = m_actions.asDrawn->isChecked();
    scanner.colorOrder =
        m_actions.swappedColors->isChecked() ? ColorOrder::BlueGreenRed : ColorOrder::RedGreenBlue;
    const Marks marks = {
        m_actions.points->isChecked(), m_actions.travel->isChecked(), m_actions.order->isChecked()};
    for (ZoneView *view : m_zones) {
        scanner.speed = view->isHeld() ? m_speed : 1;
        view->setScanner(scanner);
        view->setPersistence(m_panel->persistence());
        view->setMarks(marks);
    }
}

void HostWindow::choose(int zone)
{
    if (zone != m_chosen)
        m_actions.hold->setChecked(false);
    m_chosen = zone;
    const bool areMany = zoneCount() > 1;
    for (int i = 0; i < maxZones; ++i) {
        m_zones[std::size_t(i)]->setLineShown(areMany);
        m_zones[std::size_t(i)]->setChosen(areMany && i == zone);
    }
    if (m_views->alone())
        m_views->setAlone(m_zones[std::size_t(zone)]);
}

void HostWindow::setLarge(bool large)
{
    m_views->setAlone(large ? m_zones[std::size_t(m_chosen)] : nullptr);
}

void HostWindow::setFullScreen(bool full)
{
    // The picture alone, as the audience sees it.
    menuBar()->setVisible(!full);
    m_below->setVisible(!full);
    m_panel->setVisible(!full && (m_actions.strip->isChecked() || m_actions.doctor->isChecked()));
    setWindowState(windowState().setFlag(Qt::WindowFullScreen, full));
}

void HostWindow::changeEvent(QEvent *event)
{
    // A desktop has ways of its own to end full screen.
    if (event->type() == QEvent::WindowStateChange)
        m_actions.fullScreen->setChecked(isFullScreen());
    QMainWindow::changeEvent(event);
}

void HostWindow::hold(bool on)
{
    ZoneView *view = m_zones[std::size_t(m_chosen)];
    if (!on)
        setPace(1);
    view->hold(on);
    m_scrub->setFrame(on ? std::span<const LdbPoint>(view->frame()) : std::span<const LdbPoint>());
    m_scrub->setVisible(on);
}

void HostWindow::setPace(double speed)
{
    if (speed < 1)
        m_actions.hold->setChecked(true);
    m_speed = speed;
    for (QAction *action : m_actions.pace->actions()) {
        if (action->data().toDouble() == speed)
            action->setChecked(true);
    }
    applySettings();
}

void HostWindow::savePicture()
{
    const QImage picture = snapshot();
    const QString file = QFileDialog::getSaveFileName(
        this, tr("Save Picture"), QStringLiteral("rehearsal.png"), tr("Pictures (*.png)"));
    if (!file.isEmpty() && !picture.save(file))
        warn(tr("The picture cannot be written to \"%1\".").arg(file));
}
