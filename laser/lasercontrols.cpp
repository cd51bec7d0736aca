#include "lasercontrols.h"

#include "badbey.h"
#include "looks.h"
#include "windowtexts.h"

#include <QComboBox>
#include <QDebug>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace {

/// More zones than any host has; a larger count is an error that must not exhaust memory.
constexpr int mostZones = 1000;

/// Labels a checkable button with the effect of its next click, coloured by its present state.
void showState(QPushButton *button, const QString &textWhenOn, const QString &textWhenOff)
{
    button->setText(button->isChecked() ? textWhenOn : textWhenOff);
    looks::apply(button, button->isChecked() ? looks::switchedOn : looks::switchedOff);
}

} // namespace

LaserControls::LaserControls(const LaserWidgets &widgets, Pong &pong)
    : ui(widgets)
    , pong(pong)
{
}

void LaserControls::switchOutput()
{
    const bool on = ui.enableButton->isChecked();
    pong.enableOutput(on);
    if (std::exchange(outputOn, on) != on)
        qDebug("Laser output %s", on ? "enabled" : "disabled");
    showState(ui.enableButton, WindowTexts::tr("Disable Laser Output"),
        WindowTexts::tr("Enable Laser Output"));
}

void LaserControls::showGame()
{
    const bool shown = ui.showButton->isChecked();
    if (pong.gameShown.exchange(shown) != shown)
        qDebug("Game %s", shown ? "shown" : "hidden");
    emit gameShownChanged(pong.gameShown);
    showState(ui.showButton, WindowTexts::tr("Hide pong"), WindowTexts::tr("Show pong"));
}

void LaserControls::chooseZone(int entry)
{
    pong.setZone(entry - 1);
    if (std::exchange(zoneEntry, entry) == entry)
        return;
    if (entry > 0)
        qDebug("Zone %d selected", entry);
    else
        qDebug("No zone selected");
}

void LaserControls::RefreshZoneList(bool noZones)
{
    QSignalBlocker rebuilding(ui.zoneComboBox); // rebuilding the list must not select a zone
    ui.zoneComboBox->clear();
    ui.zoneComboBox->addItem(WindowTexts::tr("Select laser zone"));
    if (!noZones) {
        const int zones = pong.zoneCount();
        if (zones > mostZones)
            qDebug() << "Only the first" << mostZones << "zones are listed of" << zones;
        for (int k = 1; k <= std::min(zones, mostZones); ++k)
            ui.zoneComboBox->addItem(WindowTexts::tr("BEYOND Zone ") + QString::number(k));
    }
    rebuilding.unblock();
    // The second answer may differ; select only a zone that is listed.
    if (pong.zoneCount() > 0 && ui.zoneComboBox->count() > 1)
        ui.zoneComboBox->setCurrentIndex(1);
}

void LaserControls::RefreshBeyondStatus(BeyondState beState)
{
    RefreshZoneList(false);
    logHost(beState);
    if (beState == BeyondReady) {
        showHostReady();
        return;
    }
    if (beState == BeyondNotReady) {
        ui.statusLabel->setText(
            WindowTexts::tr("BEYOND Not Started - Please Start BEYOND build 1614 or above"));
        looks::apply(ui.statusLabel, looks::hostNotReady);
    }
    // Click the buttons, so that they, the game and the host's output end up as if the operator had
    // switched them off.
    if (pong.gameShown)
        ui.showButton->click();
    if (ui.enableButton->isChecked())
        ui.enableButton->click();
    for (QPushButton *button : {ui.showButton, ui.enableButton, ui.resetButton})
        button->setEnabled(false);
}

void LaserControls::showHostReady()
{
    for (QPushButton *button : {ui.showButton, ui.enableButton, ui.resetButton})
        button->setEnabled(true);
    ui.statusLabel->setText(WindowTexts::tr("BEYOND ")
        + QString::number(pong.binding()->beyondVersion) + WindowTexts::tr(" Started"));
    looks::apply(ui.statusLabel, looks::hostReady);
}

void LaserControls::logHost(BeyondState beState)
{
    const int build = pong.binding()->beyondVersion;
    if (beState == BeyondReady) {
        if (hostBuild != build)
            qDebug("Host found: BEYOND %d, zones: %d", build, ui.zoneComboBox->count() - 1);
        hostBuild = build;
    } else if (hostBuild) {
        qDebug("Host lost: BEYOND %d", *hostBuild);
        hostBuild.reset();
    } else if (build >= 0 && build < oldestBeyondBuild) {
        qDebug("Host too old: BEYOND %d", build);
    }
}
