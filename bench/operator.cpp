#include "operator.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPushButton>
#include <QStyleOptionSlider>

#include <algorithm>
#include <cstdlib>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr int stepsOfTurn = 6; ///< ten turns a second
constexpr int stepsOfReport = 30;

/// A number that goes up and down between 0 and `most`, one each step.
int pendulum(int step, int most)
{
    return most - std::abs(step % (2 * most) - most);
}

QRect handleOf(const QSlider *slider)
{
    QStyleOptionSlider option;
    option.initFrom(slider);
    option.subControls = QStyle::SC_SliderHandle;
    option.orientation = slider->orientation();
    option.minimum = slider->minimum();
    option.maximum = slider->maximum();
    option.sliderPosition = slider->sliderPosition();
    option.sliderValue = slider->value();
    return slider->style()->subControlRect(
        QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider);
}

void sendMouse(QWidget *widget, QEvent::Type type, QPointF at)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, widget->mapToGlobal(at), button, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

/// The enabled and visible widgets of a kind.
template <class Widget>
QList<Widget *> usable(const QMainWindow *window, const QString &prefix)
{
    QList<Widget *> found;
    for (Widget *widget : window->findChildren<Widget *>()) {
        if (widget->isVisible() && widget->isEnabled() && widget->objectName().startsWith(prefix))
            found.append(widget);
    }
    return found;
}

} // namespace

Operator::Operator(QMainWindow *window, const QByteArray &action)
    : m_window(window)
    , m_size(window->size())
{
    const std::pair<const char *, void (Operator::*)()> actions[] = {
        {"speed", &Operator::drag},
        {"lists", &Operator::openOrCloseList},
        {"learn", &Operator::clickLearn},
        {"size", &Operator::resizeWindow},
        {"report", &Operator::report},
    };
    const auto *found = std::find_if(std::begin(actions), std::end(actions),
        [&action](const auto &known) { return action == known.first; });
    if (found == std::end(actions))
        qFatal("Unknown action: %s", action.constData());
    m_action = found->second;
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Operator::step);
    m_timer.start(16ms);
}

void Operator::step()
{
    (this->*m_action)();
    ++m_steps;
}

bool Operator::isTurn()
{
    return m_steps % stepsOfTurn == 0;
}

void Operator::drag()
{
    auto *slider = m_window->findChild<QSlider *>(QStringLiteral("speedSlider"));
    if (m_steps == 0) {
        m_handle = handleOf(slider);
        m_heldValue = slider->value();
        sendMouse(slider, QEvent::MouseButtonPress, m_handle.center());
        return;
    }
    const int range = slider->maximum() - slider->minimum();
    const int wanted = slider->minimum() + pendulum(m_steps, range);
    const double pixelsPerValue = double(slider->width() - m_handle.width()) / range;
    const QPointF moved((wanted - m_heldValue) * pixelsPerValue, 0);
    sendMouse(slider, QEvent::MouseMove, m_handle.center() + moved);
    if (std::abs(slider->value() - wanted) > 1)
        qFatal("The slider does not follow the mouse");
}

void Operator::openOrCloseList()
{
    if (!isTurn())
        return;
    const auto lists = usable<QComboBox>(m_window, {});
    QComboBox *list = lists.at(m_turns / 2 % lists.size());
    if (m_turns++ % 2 == 0)
        list->showPopup();
    else
        list->hidePopup();
}

void Operator::clickLearn()
{
    if (!isTurn())
        return;
    const auto buttons = usable<QPushButton>(m_window, QStringLiteral("learn"));
    buttons.at(m_turns++ / 2 % buttons.size())->click();
}

void Operator::resizeWindow()
{
    m_window->resize(m_size + QSize(2, 1) * pendulum(m_steps, 60));
}

void Operator::report()
{
    if (m_steps % stepsOfReport != 0)
        return;
    const QMetaObject *type = m_window->metaObject();
    for (int i = type->methodOffset(); i < type->methodCount(); ++i) {
        const QMetaMethod method = type->method(i);
        if (method.name() != "RefreshBeyondStatus")
            continue;
        const qint32 ready = 2; // BeyondReady
        method.invoke(m_window, Qt::DirectConnection,
            QGenericArgument(method.parameterTypeName(0).constData(), &ready));
        return;
    }
    qFatal("The window takes no reports");
}
