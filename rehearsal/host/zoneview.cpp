#include "zoneview.h"

#include "palette.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cstring>
#include <utility>

ZoneView::ZoneView(QString name, QWidget *parent)
    : QWidget(parent)
    , m_name(std::move(name))
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(160, 160);
}

void ZoneView::setFrame(const std::vector<LdbPoint> &points)
{
    const bool same = points.size() == m_points.size()
        && (points.empty()
            || std::memcmp(points.data(), m_points.data(), points.size() * sizeof(LdbPoint)) == 0);
    if (same)
        return;
    m_points = points;
    m_changed = m_changed || m_outputOn;
}

void ZoneView::setOutputOn(bool on)
{
    if (on == m_outputOn)
        return;
    m_outputOn = on;
    m_changed = true;
    m_phosphor.clear();
}

void ZoneView::setFigures(const QString &figures)
{
    if (figures == m_figures)
        return;
    m_figures = figures;
    update(0, fieldRect().bottom() + 1, width(), height());
}

void ZoneView::refresh()
{
    if (m_changed || m_fading)
        update(fieldRect());
}

void ZoneView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const QRect field = fieldRect();
    if (!field.contains(event->rect())) {
        painter.fillRect(rect(), palette::window);
        painter.setPen(palette::frame);
        painter.drawRect(field.adjusted(-1, -1, 0, 0));
        const QRect line(
            field.left(), field.bottom() + 2, field.width(), height() - field.bottom());
        const QRect text = line.adjusted(2, 4, -2, 0);
        painter.setPen(palette::text);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignTop, m_name);
        painter.setPen(palette::quiet);
        painter.drawText(text, Qt::AlignRight | Qt::AlignTop, m_figures);
    }
    if (field.intersects(event->rect())) {
        develop();
        painter.drawImage(field, m_phosphor.picture());
    }
}

/// The largest square that leaves room for the frame and the line below.
QRect ZoneView::fieldRect() const
{
    const int lineHeight = m_name.isEmpty() ? 0 : fontMetrics().height() + 8;
    const int side = std::max(std::min(width() - 2, height() - 2 - lineHeight), 1);
    return {(width() - side) / 2, (height() - lineHeight - side) / 2, side, side};
}

/// Brings the picture up to this moment.
void ZoneView::develop()
{
    const int side = qRound(fieldRect().width() * devicePixelRatioF());
    if (side != m_exposure.side()) {
        m_exposure.resize(side);
        m_phosphor.resize(side);
        m_changed = true;
    }
    if (m_changed) {
        m_exposure.expose(m_outputOn ? m_points : std::vector<LdbPoint>());
        m_changed = false;
    }
    const std::chrono::nanoseconds elapsed(
        m_sinceDeveloped.isValid() ? m_sinceDeveloped.nsecsElapsed() : 0);
    m_sinceDeveloped.start();
    m_fading = m_phosphor.show(m_exposure, elapsed);
}
