#pragma once

#include "framehistory.h"
#include "hostactions.h"
#include "zoneview.h"

#include <QElapsedTimer>
#include <QMainWindow>

class Host;
class ScrubBar;
class SidePanel;
class StatusLine;
class ViewGrid;
struct Conditions;
struct Frame;

/// The host's window: a view for each zone, the technician's column beside them, the scrubber and
/// the line of the host's state below, and menus for all that can be switched.
class HostWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// The host must outlive the window.
    explicit HostWindow(Host &host);

    /// A picture of the views.
    QImage snapshot();
    /// What came, as one line of text.
    QString summary() const;
    /// Keeps place and switches for the next start.
    void remember() const;

protected:
    void changeEvent(QEvent *event) override;

private:
    struct Zone
    {
        ZoneView *view;
        FrameHistory history;
    };

    void layOut();
    void connectHost();
    void connectView();
    void connectFrame();
    void connectHostSwitches();

    void takeFrame(int zone, const Frame &frame);
    void switchOutput(bool on);
    void refresh();
    void refreshFigures();
    Conditions conditions() const;
    void showHost();
    void applySettings();
    void choose(int zone);
    void setLarge(bool large);
    void setFullScreen(bool full);
    void hold(bool on);
    void setPace(double speed);
    void savePicture();

    Host &m_host;
    HostActions m_actions;
    ViewGrid *m_views;
    SidePanel *m_panel;
    ScrubBar *m_scrub;
    StatusLine *m_status;
    QWidget *m_below;
    std::vector<Zone> m_zones; ///< as many as a host may have
    int m_chosen = 0;
    double m_speed = 1; ///< of a held frame
    FrameHistory m_total;
    SharedTime m_outputSince = 0;
    QElapsedTimer m_sinceFigures;
};
