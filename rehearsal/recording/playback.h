#pragma once

#include "recording.h"

#include <chrono>

/// A position in a recording and the state of the host's zones at that time. It has no clock of its
/// own: the caller advances it.
class Playback
{
public:
    static constexpr double slowest = 0.01;
    static constexpr double fastest = 64;

    /// At the beginning, paused. The recording must outlive it.
    explicit Playback(Recording &recording);

    void setPaused(bool paused) { m_paused = paused; }
    bool isPaused() const { return m_paused; }
    /// Playback speed, 1 for real time; clamped to slowest ... fastest.
    void setSpeed(double speed);
    double speed() const { return m_speed; }

    /// Advances by `elapsed` real time. Pauses at the end.
    void advance(std::chrono::nanoseconds elapsed);
    /// Goes to the next frame of any zone, or with -1 to the previous one, and pauses. False if
    /// there is none.
    bool step(int direction);
    /// Goes to a time, clamped to the show.
    void seek(SharedTime time);

    /// Times of the first and the last record; 0 for an empty recording.
    SharedTime start() const;
    SharedTime end() const;
    /// The current time.
    SharedTime position() const { return m_position; }
    bool atEnd() const { return m_next == m_recording->size(); }
    bool isOutputOn() const { return m_outputOn; }
    /// The frame that a zone shows at the current time; null if it has had none yet.
    const Frame *frame(int zone);
    /// The number of records up to the current time. The records between two of its values are
    /// those played in between.
    qsizetype passed() const { return m_next; }

private:
    void goTo(qsizetype next);
    qsizetype nextAfter(SharedTime time) const;

    Recording *m_recording;
    std::vector<SharedTime> m_times; ///< of each record, never decreasing
    std::vector<qsizetype> m_switches; ///< indexes of the events that switch the output
    qsizetype m_next = 0; ///< index of the first record after the current position
    SharedTime m_position;
    double m_speed = 1;
    bool m_paused = true;
    bool m_outputOn = false;
};
