#include "viewgrid.h"

#include <algorithm>

namespace {

constexpr int gap = 12;

int rowsFor(int count, int columns)
{
    return (count + columns - 1) / columns;
}

} // namespace

void ViewGrid::add(QWidget *view)
{
    view->setParent(this);
    m_views.append(view);
    setCount(static_cast<int>(m_views.size()));
}

void ViewGrid::setAlone(QWidget *view)
{
    m_alone = view;
    arrange();
}

void ViewGrid::setCount(int count)
{
    m_count = std::clamp(count, 0, static_cast<int>(m_views.size()));
    if (m_alone && m_views.indexOf(m_alone) >= m_count)
        m_alone = nullptr;
    arrange();
}

void ViewGrid::resizeEvent(QResizeEvent * /*event*/)
{
    arrange();
}

void ViewGrid::arrange()
{
    const int count = m_alone ? 1 : m_count;
    const int columns = bestColumns(count, size());
    const int rows = std::max(rowsFor(count, columns), 1);
    const int cellWidth = (width() - (columns - 1) * gap) / columns;
    const int cellHeight = (height() - (rows - 1) * gap) / rows;
    int place = 0;
    for (int i = 0; i < m_views.size(); ++i) {
        QWidget *view = m_views[i];
        const bool isShown = m_alone ? view == m_alone : i < m_count;
        if (isShown) {
            view->setGeometry((place % columns) * (cellWidth + gap),
                (place / columns) * (cellHeight + gap), cellWidth, cellHeight);
            ++place;
        }
        view->setVisible(isShown);
    }
}

int bestColumns(int count, QSize area)
{
    int best = 1;
    double bestSide = 0;
    for (int columns = 1; columns <= count; ++columns) {
        const double side = std::min(
            double(area.width()) / columns, double(area.height()) / rowsFor(count, columns));
        if (side > bestSide) {
            best = columns;
            bestSide = side;
        }
    }
    return best;
}
