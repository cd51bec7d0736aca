#pragma once

#include <QList>
#include <QWidget>

/// Widgets of one size in rows, as many in a row as makes them largest when each is a square.
class ViewGrid : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Shows a widget after those that are there, and owns it.
    void add(QWidget *view);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QList<QWidget *> m_views;
};

/// The number of columns in which `count` squares fill an area best; at least 1.
int bestColumns(int count, QSize area);
