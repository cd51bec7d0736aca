#include "badbey.h"
#include "mainwindow.h"
#include "ui_mainwindow.h"

void MainWindow::RefreshBeyondStatus(BeyondState beState)
{
    RefreshZoneList(false);
    const std::array governed = {ui->showButton, ui->enableButton, ui->resetButton};
    if (beState == BeyondReady) {
        for (QPushButton *button : governed)
            button->setEnabled(true);
        ui->statusLabel->setText(
            tr("BEYOND ") + QString::number(pong->binding()->beyondVersion) + tr(" Started"));
        ui->statusLabel->setStyleSheet(QStringLiteral("color:#26F;font-weight:bold;"));
        return;
    }
    if (beState == BeyondNotReady) {
        ui->statusLabel->setText(
            tr("BEYOND Not Started - Please Start BEYOND build 1614 or above"));
        ui->statusLabel->setStyleSheet(QStringLiteral("color:#D30;font-weight:bold;"));
    }
    // Clicks, so that the buttons, the game and the host's output all end as if the operator had
    // switched them off.
    if (pong->gameShown)
        ui->showButton->click();
    if (ui->enableButton->isChecked())
        ui->enableButton->click();
    for (QPushButton *button : governed)
        button->setEnabled(false);
}
