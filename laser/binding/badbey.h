#pragma once

#include "atomicvalue.h"
#include "framepoint.h"

#include <QList>
#include <QObject>

/// The oldest host build with which the game plays.
inline constexpr qint32 oldestBeyondBuild = 1614;

/// The binding to the laser host: its session, its state, its output switch, and the frame under
/// composition. There is one per process, because the host's library is.
///
/// It lives on the game thread. The operations that say so may be called from the GUI thread too;
/// the host's library takes calls from both.
class BadBey : public QObject
{
    Q_OBJECT

public:
    /// Answers of ConnectBeyond that are no build number.
    enum ConnectResult { NotReady = -1, NotLoaded = -2 };

    /// Loads the host's library. A missing one shows at the first ConnectBeyond.
    explicit BadBey(QObject *parent = nullptr);
    /// Closes the session and gives the library back.
    ~BadBey() override;

    /// Opens the session anew, with the laser output switched off. Returns the host's build
    /// number, NotReady, or NotLoaded, in which case reqExit follows.
    int ConnectBeyond();
    /// Whether the host is running, ready and not too old.
    bool IsBeyondReady() const;
    /// Switches the host's laser output and returns the host's answer; 0 without the library.
    /// From the GUI thread.
    int SetLaserOutput(bool on) const;
    /// The number of the host's zones; 0 without the library. From the GUI thread.
    int GetZoneCount() const;
    /// Sends `points` to the selected zone, an empty list too, and empties the list. At most
    /// ldbMaxPoints are sent. A zone that is left gets nothing more and keeps its last picture.
    void SendFrame();
    /// Closes the session if it is open.
    void CloseSession();

    /// The frame under composition; keeps its storage from frame to frame.
    QList<FramePoint> points;
    /// The zone that frames go to, counted from 0; a negative one means that nothing is sent.
    /// Written by the GUI thread.
    Relaxed<qint32> zone = 0;
    /// The host's build number at the last connect, -5 before the first. Read by the GUI thread.
    Relaxed<qint32> beyondVersion = -5;

signals:
    /// The host's library is missing: the program cannot go on.
    void reqExit();

private:
    void sendTo(qint32 target) const;

    const bool dllLoaded;
    bool sessionCreated = false;
};
