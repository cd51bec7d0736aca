#pragma once

#include "statistics.h"
#include "zoneview.h"

#include <QElapsedTimer>
#include <QWidget>

class Host;
class StatusLine;
class ViewGrid;
struct Frame;

/// The host's window: a view for each zone and the line of the host's state.
class HostWindow : public QWidget
{
    Q_OBJECT

public:
    /// The host must outlive the window.
    explicit HostWindow(const Host &host);

    /// A picture of the views.
    QImage snapshot();
    /// What came, as one line of text.
    QString summary() const;

private:
    struct Zone
    {
        ZoneView *view;
        Statistics statistics;
    };

    void takeFrame(int zone, const Frame &frame);
    void refresh();
    void refreshFigures();

    ViewGrid *m_views;
    StatusLine *m_status;
    std::vector<Zone> m_zones;
    Statistics m_total;
    QElapsedTimer m_sinceFigures;
};
