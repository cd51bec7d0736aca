#include "scrubbar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

ScrubBar::ScrubBar(QWidget *parent)
    : QWidget(parent)
    , m_slider(new QSlider(Qt::Horizontal))
    , m_text(new QLabel)
{
    m_slider->setFocusPolicy(Qt::NoFocus);
    m_slider->setAccessibleName(tr("Point of the held frame"));
    m_text->setAccessibleName(tr("The point that the beam has reached"));
    // As wide as its longest text, so that the slider does not move under the hand.
    m_text->setMinimumWidth(m_text->fontMetrics().horizontalAdvance(
        QStringLiteral("8888 of 8888: -32768, -32768 FFFFFF flags 255")));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_slider, 1);
    layout->addWidget(m_text);
    connect(m_slider, &QSlider::valueChanged, this, [this](int value) {
        describe();
        emit moved(value);
    });
}

void ScrubBar::setFrame(std::span<const LdbPoint> points)
{
    m_points = points;
    const QSignalBlocker quiet(m_slider);
    const int count = static_cast<int>(points.size());
    m_slider->setRange(count > 0 ? 1 : 0, count);
    m_slider->setValue(count);
    describe();
}

int ScrubBar::pointsShown() const
{
    return m_slider->value();
}

void ScrubBar::follow(int point)
{
    const QSignalBlocker quiet(m_slider);
    m_slider->setValue(point);
    describe();
}

void ScrubBar::step(int points)
{
    m_slider->setValue(m_slider->value() + points);
}

void ScrubBar::describe()
{
    const int number = m_slider->value();
    if (number < 1 || number > static_cast<int>(m_points.size())) {
        m_text->setText(tr("No points"));
        return;
    }
    const LdbPoint &point = m_points[std::size_t(number) - 1];
    m_text->setText(
        tr("%1 of %2: %3, %4 %5 flags %6")
            .arg(QString::number(number), QString::number(m_points.size()),
                QString::number(double(point.x), 'g', 6), QString::number(double(point.y), 'g', 6),
                QStringLiteral("%1")
                    .arg(static_cast<quint32>(point.color) & 0xffffff, 6, 16, QLatin1Char('0'))
                    .toUpper(),
                QString::number(point.flags)));
}
