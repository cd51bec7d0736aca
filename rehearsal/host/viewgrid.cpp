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
}

void ViewGrid::resizeEvent(QResizeEvent * /*event*/)
{
    const int count = static_cast<int>(m_views.size());
    const int columns = bestColumns(count, size());
    const int rows = std::max(rowsFor(count, columns), 1);
    const int cellWidth = (width() - (columns - 1) * gap) / columns;
    const int cellHeight = (height() - (rows - 1) * gap) / rows;
    for (int i = 0; i < count; ++i) {
        m_views[i]->setGeometry((i % columns) * (cellWidth + gap),
            (i / columns) * (cellHeight + gap), cellWidth, cellHeight);
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
