#pragma once

#include <QList>
#include <QWidget>

/// Widgets of one size in rows, as many in a row as makes them largest when each is a square; or
/// one of them alone.
class ViewGrid : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Shows a widget after those that are there, and owns it.
    void add(QWidget *view);
    /// Shows one of its widgets alone, or all of them again.
    void setAlone(QWidget *view);
    QWidget *alone() const { return m_alone; }
    /// Shows the first `count` widgets.
    void setCount(int count);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    QList<QWidget *> m_views;
    int m_count = 0;
    QWidget *m_alone = nullptr;
};

/// The number of columns in which `count` squares fill an area best; at least 1.
int bestColumns(int count, QSize area);
