#include "mainwindow.h"
#include "ui_mainwindow.h"

#include <QDebug>

#include <algorithm>

namespace {

/// More zones than any host has; a number beyond it is a mistake that must not fill the memory.
constexpr int mostZones = 1000;

/// Shows on a checkable button what its next click does, coloured by what is on now.
void showState(QPushButton *button, const QString &textWhenOn, const QString &textWhenOff)
{
    static const QString active = QStringLiteral(
        "QPushButton {background-color:#FA8;} QPushButton:hover {background-color:#FC8;} "
        "QPushButton:pressed {border:1px ridge #F00; background-color:#F97;}");
    static const QString idle = QStringLiteral(
        "QPushButton {background-color:#79F;} QPushButton:hover {background-color:#7BF;} "
        "QPushButton:pressed {border:1px ridge #03F; background-color:#67F;}");
    button->setText(button->isChecked() ? textWhenOn : textWhenOff);
    button->setStyleSheet(button->isChecked() ? active : idle);
}

} // namespace

void MainWindow::on_enableButton_clicked()
{
    pong->enableOutput(ui->enableButton->isChecked());
    showState(ui->enableButton, tr("Disable Laser Output"), tr("Enable Laser Output"));
}

void MainWindow::on_showButton_clicked()
{
    pong->gameShown = ui->showButton->isChecked();
    gameShownChanged(pong->gameShown);
    showState(ui->showButton, tr("Hide pong"), tr("Show pong"));
}

void MainWindow::RefreshZoneList(bool noZones)
{
    disconnect(ui->zoneComboBox, &QComboBox::currentIndexChanged, this, &MainWindow::zoneChanged);
    ui->zoneComboBox->clear();
    ui->zoneComboBox->addItem(tr("Select laser zone"));
    if (!noZones) {
        const int zones = pong->zoneCount();
        if (zones > mostZones)
            qDebug() << "Only the first" << mostZones << "zones are listed of" << zones;
        for (int k = 1; k <= std::min(zones, mostZones); ++k)
            ui->zoneComboBox->addItem(tr("BEYOND Zone ") + QString::number(k));
    }
    connect(ui->zoneComboBox, &QComboBox::currentIndexChanged, this, &MainWindow::zoneChanged);
    // Asked a second time, the host may have zones that are not listed yet.
    if (pong->zoneCount() > 0 && ui->zoneComboBox->count() > 1)
        ui->zoneComboBox->setCurrentIndex(1);
}

void MainWindow::zoneChanged(int iZone)
{
    pong->setZone(iZone - 1);
}
