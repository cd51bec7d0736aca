#pragma once

#include "playback.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>

/// Plays a recording in real time, with the same signals as a live host.
class ShowPlayer : public QObject
{
    Q_OBJECT

public:
    explicit ShowPlayer(QObject *parent = nullptr);

    /// Opens a recording at its beginning, paused. False if it is damaged or not a recording, with
    /// the reason in `problem`; its readable part is opened all the same.
    bool open(const QString &path);
    QString problem() const { return m_recording.problem(); }
    /// The current position; null until a recording was opened.
    const Playback *playback() const { return m_playback.get(); }
    Recording &recording() { return m_recording; }

    void play();
    void pause();
    void setSpeed(double speed);
    /// Goes to the next frame of any zone, or with -1 to the previous one.
    void step(int direction);
    void seek(SharedTime time);
    /// Advances by `elapsed` real time. A timer calls this during playback.
    void advance(std::chrono::nanoseconds elapsed);

signals:
    /// A frame that was played or, after a step back or a seek, the current frame of a zone (empty
    /// if it has had none yet).
    void frameReceived(int zone, const Frame &frame);
    void outputSwitched(bool on);
    /// After a step back or a leap, when frameReceived has given out the moment: the frames before
    /// it do not lead up to it.
    void leapt();
    /// The position or the state has changed, and all that belongs to it has been given out.
    void received();

private:
    void giveOut(qsizetype from);
    void giveOutMoment();
    void finish();
    void switchOutput(bool on);

    Recording m_recording;
    std::unique_ptr<Playback> m_playback;
    bool m_outputOn = false;
    QTimer m_timer;
    QElapsedTimer m_sinceAdvance;
};
