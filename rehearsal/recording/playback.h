#pragma once

#include "recording.h"

#include <chrono>

/// Plays a recording: what the host's zones showed at a moment, and how that goes on. It has no
/// clock of its own; whoever shows it tells how much time has passed.
class Playback
{
public:
    static constexpr double slowest = 0.01;
    static constexpr double fastest = 64;

    /// At the beginning, paused. The recording must outlive it.
    explicit Playback(Recording &recording);

    void setPaused(bool paused) { m_paused = paused; }
    bool isPaused() const { return m_paused; }
    /// How fast the show goes by, 1 as it was; bounded to slowest ... fastest.
    void setSpeed(double speed);
    double speed() const { return m_speed; }

    /// Lets real time pass. Pauses at the end.
    void advance(std::chrono::nanoseconds elapsed);
    /// Goes to the next frame of any zone, or with -1 to the one before, and pauses. False when
    /// there is none.
    bool step(int direction);
    /// Goes to a time, bounded to the show.
    void seek(SharedTime time);

    /// Of the first and the last record, 0 for an empty recording.
    SharedTime start() const;
    SharedTime end() const;
    /// The moment that is shown.
    SharedTime position() const { return m_position; }
    bool atEnd() const { return m_next == m_recording->size(); }
    bool isOutputOn() const { return m_outputOn; }
    /// The frame that a zone repeats at this moment; null when there was none yet.
    const Frame *frame(int zone);
    /// How many records have happened up to this moment. The records between two values of it are
    /// those that have passed.
    qsizetype passed() const { return m_next; }

private:
    void goTo(qsizetype next);
    qsizetype nextAfter(SharedTime time) const;

    Recording *m_recording;
    std::vector<SharedTime> m_times; ///< of each record, never going back
    std::vector<qsizetype> m_switches; ///< indexes of the events that switch the output
    qsizetype m_next = 0; ///< index of the first record that is still to come
    SharedTime m_position;
    double m_speed = 1;
    bool m_paused = true;
    bool m_outputOn = false;
};
