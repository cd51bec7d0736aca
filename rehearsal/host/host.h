#pragma once

#include "intake.h"
#include "memoryfile.h"

#include <QLockFile>
#include <QObject>
#include <QTimer>

#include <memory>

/// The host itself: holds the shared memory, gives its signs of life, and gives out what the game
/// does. It runs in the GUI thread on purpose: if that hangs, the host counts as gone. The frames
/// are taken on a thread of their own meanwhile, and none is lost.
class Host : public QObject
{
    Q_OBJECT

public:
    explicit Host(const HostInfo &info, QObject *parent = nullptr);
    ~Host() override;

    /// Becomes the one host of this rehearsal, which the game does not see yet. False when it
    /// cannot; errorString then says why.
    bool open();
    QString errorString() const { return m_error; }
    /// Shows itself to the game, with output disabled and no frames, and begins to receive. Called
    /// once, after open, when all that could keep it from giving signs of life is done.
    void start();
    /// Gives out what has still come and takes its leave, which the game sees at once.
    void close();

    /// What it tells the game about itself.
    const HostInfo &info() const { return m_info; }
    /// Tells the game something else from now on.
    void setInfo(const HostInfo &info);
    /// Plays a host that has ended, and one that is started anew, with output disabled.
    void setGone(bool gone);
    bool isGone() const { return m_startTime != 0 && !m_heartbeat.isActive(); }
    bool isOutputOn() const { return m_outputOn; }
    /// Whether it was started and not closed yet.
    bool isRunning() const { return m_receiving.isActive(); }
    /// When it showed itself to the game; 0 before.
    SharedTime startTime() const { return m_startTime; }

signals:
    /// A frame of a zone, counted from 0; every one in order.
    void frameReceived(int zone, const Frame &frame);
    /// An event other than a frame, in order with the frames. The first is the start, the last the
    /// end of the host.
    void happened(const Event &event);
    void outputSwitched(bool on);
    /// It has started, tells something else about itself, or has gone or come back.
    void changed();
    /// All that had come has been given out; about 60 times a second.
    void received();

private:
    void receive();
    void giveOut(const Event &event);
    void switchOutput(bool on);

    HostInfo m_info;
    QString m_error;
    std::unique_ptr<QLockFile> m_lock;
    MemoryFile m_file;
    std::unique_ptr<Intake> m_intake;
    std::vector<Arrival> m_arrivals;
    bool m_outputOn = false;
    SharedTime m_startTime = 0;
    SharedTime m_opened = 0; ///< when it last showed itself to the game
    QTimer m_heartbeat;
    QTimer m_receiving;
};
