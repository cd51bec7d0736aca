#pragma once

#include "hostactions.h"
#include "ildaexport.h"
#include "reception.h"
#include "zoneview.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>

#include <memory>

class Host;
class PlaybackBar;
class ScrubBar;
class ShowKeeper;
class ShowPlayer;
class SidePanel;
class StatusLine;
class ViewGrid;
struct Conditions;
struct Frame;

/// The host's window: a view for each zone, the technician's column beside them, the scrubber and
/// the line of the host's state below, and menus for all that can be switched. A recording can be
/// looked at in the place of the live show, which is received and recorded on meanwhile.
class HostWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Both must outlive the window.
    HostWindow(Host &host, ShowKeeper &keeper);
    ~HostWindow() override;

    /// Shows a recording at its beginning, paused, as far as it can be read. A box says what is
    /// wrong with it; false when nothing of it can be shown.
    bool openRecording(const QString &path);

    /// A picture of the views.
    QImage snapshot();
    /// The totals of the frames received, as one line of text.
    QString summary() const;
    /// Keeps place and switches for the next start.
    void remember() const;

protected:
    void changeEvent(QEvent *event) override;

private:
    void layOut();
    void connectHost();
    void connectView();
    void connectFrame();
    void connectHostSwitches();
    void connectShows();

    void takeLive(int zone, const Frame &frame);
    void takePlayed(int zone, const Frame &frame);
    void switchLiveOutput(bool on);
    void showOutput(bool on);
    void showMoment();
    void showPlayback();
    void showSource();
    void backToLive();
    void playOrPause(bool play);
    void stepFrame(int direction);
    void leap(SharedTime way);
    void record(bool on);
    void showRecording();
    void noticeFailedRecording();
    void chooseRecording();
    void chooseExport();
    void warn(const QString &text);
    int zoneCount() const;
    const Reception &reception() const { return m_player ? m_played : m_live; }

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
    ShowKeeper &m_keeper;
    HostActions m_actions;
    ViewGrid *m_views;
    SidePanel *m_panel;
    ScrubBar *m_scrub;
    PlaybackBar *m_playback;
    StatusLine *m_status;
    QWidget *m_below;
    std::vector<ZoneView *> m_zones; ///< as many as a host may have
    int m_chosen = 0;
    double m_speed = 1; ///< of a held frame
    Reception m_live;
    Reception m_played;
    std::unique_ptr<ShowPlayer> m_player; ///< null while the live show is shown
    QString m_recordingName; ///< of the recording that is shown
    QTimer m_refreshing; ///< while a recording is shown
    IldaExport m_export;
    QElapsedTimer m_sinceRecording;
    QElapsedTimer m_sinceFigures;
};
