#include "playbackbar.h"

#include "hostactions.h"
#include "playback.h"

#include <QAction>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>

#include <algorithm>
#include <array>
#include <limits>

namespace {

constexpr SharedTime millisecond = 1'000'000;
constexpr std::array usualSpeeds = {
    PlaybackBar::slowest, 0.25, 0.5, 1.0, 2.0, PlaybackBar::fastest};

/// Minutes, seconds and milliseconds, as "1:02.345".
QString inMinutes(SharedTime time)
{
    const SharedTime all = time / millisecond;
    return QStringLiteral("%1:%2.%3")
        .arg(all / 60'000)
        .arg(all / 1000 % 60, 2, 10, QLatin1Char('0'))
        .arg(all % 1000, 3, 10, QLatin1Char('0'));
}

QToolButton *buttonFor(QAction *action, Qt::ToolButtonStyle style)
{
    auto *button = new QToolButton;
    button->setDefaultAction(action);
    button->setToolButtonStyle(style);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(action->iconText());
    return button;
}

} // namespace

PlaybackBar::PlaybackBar(const HostActions &actions, QWidget *parent)
    : QWidget(parent)
    , m_slider(new QSlider(Qt::Horizontal))
    , m_time(new QLabel)
    , m_speed(new QDoubleSpinBox)
{
    m_slider->setFocusPolicy(Qt::NoFocus);
    m_slider->setAccessibleName(tr("Position in the recording"));
    m_slider->setToolTip(tr("Position in the recording"));
    m_time->setAccessibleName(tr("Time in the recording"));
    // As wide as its longest text, so that the slider does not move under the hand.
    m_time->setMinimumWidth(
        m_time->fontMetrics().horizontalAdvance(QStringLiteral("88:88.888 / 88:88.888")));
    m_speed->setRange(slowest, fastest);
    m_speed->setSingleStep(0.1);
    m_speed->setPrefix(QStringLiteral("\u00d7 "));
    m_speed->setValue(1);
    m_speed->setAccessibleName(tr("Speed of the playback"));
    m_speed->setToolTip(tr("Speed: 1 as the show was"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QAction *action : {actions.previousFrame, actions.play, actions.nextFrame})
        layout->addWidget(buttonFor(action, Qt::ToolButtonIconOnly));
    layout->addWidget(m_slider, 1);
    layout->addWidget(m_time);
    layout->addWidget(m_speed);
    layout->addWidget(buttonFor(actions.backToLive, Qt::ToolButtonTextOnly));
    connect(m_slider, &QSlider::valueChanged, this,
        [this](int value) { emit moved(value * millisecond); });
    connect(m_speed, &QDoubleSpinBox::valueChanged, this, &PlaybackBar::speedChanged);
}

void PlaybackBar::follow(const Playback &playback)
{
    const QSignalBlocker quiet(m_slider);
    const SharedTime length = playback.end() - playback.start();
    const SharedTime position = playback.position() - playback.start();
    // Three weeks; a longer show is moved through by steps of ten seconds.
    const auto milliseconds = [](SharedTime time) {
        return static_cast<int>(
            std::min<SharedTime>(time / millisecond, std::numeric_limits<int>::max()));
    };
    m_slider->setRange(0, milliseconds(length));
    m_slider->setValue(milliseconds(position));
    m_time->setText(tr("%1 / %2").arg(inMinutes(position), inMinutes(length)));
}

double PlaybackBar::speed() const
{
    return m_speed->value();
}

void PlaybackBar::setSpeed(double speed)
{
    m_speed->setValue(speed);
}

void PlaybackBar::changeSpeed(int direction)
{
    if (direction > 0) {
        const auto *next = std::ranges::upper_bound(usualSpeeds, speed());
        setSpeed(next == usualSpeeds.end() ? fastest : *next);
    } else {
        const auto *next = std::ranges::lower_bound(usualSpeeds, speed());
        setSpeed(next == usualSpeeds.begin() ? slowest : *(next - 1));
    }
}
