#include "looks.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QPushButton>

namespace {

/// The opacity of a disabled button: high enough that its text keeps a contrast of 3 : 1.
constexpr qreal disabledOpacity = 0.6;

/// Fades its widget, which owns it, while the widget is disabled.
class DisabledFade : public QGraphicsOpacityEffect
{
public:
    explicit DisabledFade(QWidget *widget)
    {
        setOpacity(disabledOpacity);
        setEnabled(!widget->isEnabled());
        widget->installEventFilter(this);
        widget->setGraphicsEffect(this);
    }

    bool eventFilter(QObject *widget, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange)
            setEnabled(!static_cast<QWidget *>(widget)->isEnabled());
        return false;
    }
};

} // namespace

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

void fadeWhileDisabled(QPushButton *button)
{
    // The system greys a disabled button's text, which is hard to read on a coloured button.
    QPalette palette = button->palette();
    palette.setColor(QPalette::Disabled, QPalette::ButtonText,
        palette.color(QPalette::Active, QPalette::ButtonText));
    button->setPalette(palette);
    new DisabledFade(button);
}

} // namespace looks
