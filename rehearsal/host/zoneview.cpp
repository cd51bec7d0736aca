#include "zoneview.h"

#include "palette.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

double seconds(SharedTime time)
{
    return double(time) * 1e-9;
}

} // namespace

ZoneView::ZoneView(QString name, QWidget *parent)
    : QWidget(parent)
    , m_name(std::move(name))
    , m_eye(m_projector)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(160, 160);
    setAccessibleName(m_name);
    setAccessibleDescription(tr("The light of the zone's projector"));
}

void ZoneView::takeFrame(std::span<const LdbPoint> points, SharedTime sentAt)
{
    m_last.assign(points.begin(), points.end());
    if (!m_isHeld)
        m_projector.show(points, seconds(sentAt));
}

void ZoneView::setOutputOn(bool on)
{
    if (on == m_outputOn)
        return;
    m_outputOn = on;
    m_projector.setOutputOn(on);
    m_eye.clear();
    m_isSeen = true;
}

void ZoneView::setScanner(const ScannerSettings &settings)
{
    if (settings != m_projector.settings())
        m_projector.setSettings(settings);
}

void ZoneView::setMarks(const Marks &marks)
{
    m_marks = marks;
    update();
}

void ZoneView::setLineShown(bool shown)
{
    m_isLineShown = shown;
    update();
}

void ZoneView::setFigures(const QString &figures)
{
    if (figures == m_figures)
        return;
    m_figures = figures;
    update(0, fieldRect().bottom() + 1, width(), height());
}

void ZoneView::setChosen(bool chosen)
{
    if (chosen == m_isChosen)
        return;
    m_isChosen = chosen;
    update();
}

void ZoneView::hold(bool on)
{
    if (on == m_isHeld)
        return;
    m_held = m_last;
    m_isHeld = on;
    m_pointsShown = static_cast<int>(m_held.size());
    m_projector.showAtOnce(m_last);
    update();
}

void ZoneView::setPointsShown(int count)
{
    if (!m_isHeld)
        return;
    const auto shown =
        std::span(m_held).first(std::min(std::size_t(std::max(count, 0)), m_held.size()));
    if (m_pointsShown == static_cast<int>(shown.size()))
        return;
    m_pointsShown = static_cast<int>(shown.size());
    m_projector.showAtOnce(shown);
    update();
}

void ZoneView::refresh(SharedTime now)
{
    const QRect field = fieldRect();
    m_eye.resize(qRound(field.width() * devicePixelRatioF()));
    const bool seesNow = m_eye.look(seconds(now));
    if (seesNow || m_isSeen || m_marks.any())
        update(field);
    m_isSeen = seesNow;
}

void ZoneView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const QRect field = fieldRect();
    if (!field.contains(event->rect())) {
        painter.fillRect(rect(), palette::window);
        painter.setPen(m_isChosen ? palette::chosen : palette::frame);
        painter.drawRect(field.adjusted(-1, -1, 0, 0));
        if (m_isLineShown)
            paintLine(painter, field);
    }
    if (!field.intersects(event->rect()))
        return;
    if (m_eye.picture().isNull())
        painter.fillRect(field, Qt::black);
    else
        painter.drawImage(field, m_eye.picture());
    painter.setClipRect(field);
    painter.translate(field.topLeft());
    const FieldSquare square{double(field.width())};
    if (m_marks.any())
        paintMarks(painter, square, frame(), m_marks);
    if (m_isHeld && m_pointsShown > 0)
        paintRing(painter, square, m_held[std::size_t(m_pointsShown) - 1]);
}

void ZoneView::paintLine(QPainter &painter, const QRect &field)
{
    const QRect line(field.left(), field.bottom() + 2, field.width(), height() - field.bottom());
    const QRect text = line.adjusted(2, 4, -2, 0);
    painter.setPen(palette::text);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignTop, m_name);
    const int room = text.width() - fontMetrics().horizontalAdvance(m_name + QStringLiteral("   "));
    painter.setPen(palette::quiet);
    painter.drawText(text, Qt::AlignRight | Qt::AlignTop,
        fontMetrics().elidedText(m_figures, Qt::ElideRight, room));
}

void ZoneView::mousePressEvent(QMouseEvent * /*event*/)
{
    emit chosen();
}

void ZoneView::mouseDoubleClickEvent(QMouseEvent * /*event*/)
{
    emit doubleClicked();
}

/// The largest square that leaves room for the frame and the line below.
QRect ZoneView::fieldRect() const
{
    const int lineHeight = !m_isLineShown ? 0 : fontMetrics().height() + 8;
    const int side = std::max(std::min(width() - 2, height() - 2 - lineHeight), 1);
    return {(width() - side) / 2, (height() - lineHeight - side) / 2, side, side};
}
