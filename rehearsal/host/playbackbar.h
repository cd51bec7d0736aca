#pragma once

#include "hoststate.h"

#include <QWidget>

class Playback;
class QDoubleSpinBox;
class QLabel;
class QSlider;
struct HostActions;

/// Plays a recording: buttons to play, pause and step, the position in the show, and the speed.
class PlaybackBar : public QWidget
{
    Q_OBJECT

public:
    static constexpr double slowest = 0.1;
    static constexpr double fastest = 4;

    explicit PlaybackBar(const HostActions &actions, QWidget *parent = nullptr);

    /// Shows where a playback is.
    void follow(const Playback &playback);
    /// The speed that the person asks for, 1 as the show was.
    double speed() const;
    void setSpeed(double speed);
    /// To the next of the usual speeds, or with -1 to the one before.
    void changeSpeed(int direction);

signals:
    /// The person asks for a position: nanoseconds from the start of the show.
    void moved(SharedTime sinceStart);
    void speedChanged(double speed);

private:
    QSlider *m_slider; ///< milliseconds from the start of the show
    QLabel *m_time;
    QDoubleSpinBox *m_speed;
};
