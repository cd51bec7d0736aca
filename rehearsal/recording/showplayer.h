#pragma once

#include "playback.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>

/// Shows a recording as time passes, with the signals of a host: whoever shows one shows the other.
class ShowPlayer : public QObject
{
    Q_OBJECT

public:
    explicit ShowPlayer(QObject *parent = nullptr);

    /// Opens a recording at its beginning, paused. False when it is damaged or none, `problem` says
    /// why; what can be read of it is opened all the same.
    bool open(const QString &path);
    QString problem() const { return m_recording.problem(); }
    /// Where it is; null until something was opened.
    const Playback *playback() const { return m_playback.get(); }
    Recording &recording() { return m_recording; }

    void play();
    void pause();
    void setSpeed(double speed);
    /// To the next frame of any zone, or with -1 to the one before.
    void step(int direction);
    void seek(SharedTime time);
    /// Lets real time pass, which a timer does while it plays.
    void advance(std::chrono::nanoseconds elapsed);

signals:
    /// A frame that has passed, or, after a step back or a leap, the one that a zone shows now; an
    /// empty one if there was none yet.
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
