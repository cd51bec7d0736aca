#pragma once

#include "atomicvalue.h"
#include "framepoint.h"

#include <QList>
#include <QObject>

/// The oldest host build that the game supports.
inline constexpr qint32 oldestBeyondBuild = 1614;

/// The binding to the laser host: session, state, output switch, and the frame being composed. One
/// per process, like the host's library.
///
/// It lives on the game thread. Operations marked so may be called from the GUI thread too; the
/// host's library accepts calls from both.
class BadBey : public QObject
{
    Q_OBJECT

public:
    /// Results of ConnectBeyond that are not build numbers.
    enum ConnectResult { NotReady = -1, NotLoaded = -2 };

    /// Loads the host's library. If it is missing, the first ConnectBeyond reports it.
    explicit BadBey(QObject *parent = nullptr);
    /// Closes the session and unloads the library.
    ~BadBey() override;

    /// Reopens the session, with the laser output switched off. Returns the host's build
    /// number, NotReady, or NotLoaded, in which case reqExit follows.
    int ConnectBeyond();
    /// Whether the host is running, ready and not too old.
    bool IsBeyondReady() const;
    /// Switches the host's laser output and returns the host's answer; 0 without the library.
    /// From the GUI thread.
    int SetLaserOutput(bool on) const;
    /// The number of the host's zones; 0 without the library. From the GUI thread.
    int GetZoneCount() const;
    /// Sends `points` to the selected zone, even if empty, and clears the list. At most
    /// ldbMaxPoints are sent. A deselected zone receives nothing more and keeps its last picture.
    void SendFrame();
    /// Closes the session if it is open.
    void CloseSession();

    /// The frame being composed; its storage is reused for every frame.
    QList<FramePoint> points;
    /// The zone that receives frames, counted from 0; if negative, nothing is sent.
    /// Written by the GUI thread.
    Relaxed<qint32> zone = 0;
    /// The host's build number at the last connect, -5 before the first. Read by the GUI thread.
    Relaxed<qint32> beyondVersion = -5;

signals:
    /// The host's library is missing; the program must end.
    void reqExit();

private:
    void sendTo(qint32 target) const;

    const bool dllLoaded;
    bool sessionCreated = false;
};
