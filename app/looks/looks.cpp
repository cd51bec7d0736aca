#include "looks.h"

#include <QWidget>

namespace looks {

const QLatin1StringView learnt(
    "QPushButton {background-color:#97A;} QPushButton:hover {background-color:#FF4;} "
    "QPushButton:pressed {background-color:#DD0;} QPushButton:disabled {background-color:#999;}");
const QLatin1StringView notLearnt(
    "QPushButton {background-color:#BBB;} QPushButton:hover {background-color:#FF4;} "
    "QPushButton:pressed {background-color:#DD0;} QPushButton:disabled {background-color:#999;}");
const QLatin1StringView learning(
    "QPushButton {background-color:#08F;} QPushButton:hover {background-color:#0AF;} "
    "QPushButton:pressed {background-color:#08D;}");
const QLatin1StringView switchedOn(
    "QPushButton {background-color:#FA8;} QPushButton:hover {background-color:#FC8;} "
    "QPushButton:pressed {border:1px ridge #F00; background-color:#F97;}");
const QLatin1StringView switchedOff(
    "QPushButton {background-color:#79F;} QPushButton:hover {background-color:#7BF;} "
    "QPushButton:pressed {border:1px ridge #03F; background-color:#67F;}");
const QLatin1StringView hostReady("color:#26F;font-weight:bold;");
const QLatin1StringView hostNotReady("color:#D30;font-weight:bold;");
const QLatin1StringView checkBox("QCheckBox {color:#CCC;}");

void apply(QWidget *widget, QLatin1StringView look)
{
    if (widget->styleSheet() != look)
        widget->setStyleSheet(look);
}

} // namespace looks
