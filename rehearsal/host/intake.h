#pragma once

#include "events.h"
#include "frames.h"
#include "gamecalls.h"
#include "processwatch.h"

#include <QThread>

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

/// One arrival from the game: a frame of a zone, or an event.
struct Arrival
{
    SharedTime at;
    int zone; ///< of a frame, from 0; -1 for an event
    Frame frame;
    Event event;
};

/// Takes what the game leaves in the shared memory, on a thread of its own: a hidden game sends a
/// frame every 3 ms, and a window that paints would come too late for some. Notices also when the
/// game's process ends in the middle of its session.
///
/// All functions are for one thread, the one that hands the arrivals on.
class Intake
{
public:
    /// Starts behind what is in the memory, which must outlive it. If more than `mostWaiting` bytes
    /// of frames wait to be handed over, because the window hangs for minutes, frames are dropped
    /// and counted as missed.
    explicit Intake(SharedMemory &memory, std::size_t mostWaiting = std::size_t(256) << 20U);
    ~Intake();

    void start();
    /// Ends the thread and takes what is left.
    void stop();
    /// Replaces `arrivals` by what has come since the last time, in the order of the times.
    void handOver(std::vector<Arrival> &arrivals);

private:
    struct Zone
    {
        FrameReader reader;
        std::uint64_t dropped = 0;
    };

    void run();
    void pass();
    void takeCalls();
    void takeFrames(int zone, SharedTime now);
    void addEvent(Event::Kind kind, SharedTime at, std::uint64_t process = 0);
    void switchOutput(bool on, SharedTime at);
    void noticeEndedGame(SharedTime at);

    SharedMemory *m_memory;
    CallReader m_calls;
    std::vector<Zone> m_zones;
    ProcessWatch m_game;
    std::uint64_t m_process = 0; ///< of the open session
    bool m_outputOn = false;
    Frame m_frame;
    std::vector<Arrival> m_taken; ///< in one pass

    std::mutex m_handing;
    std::vector<Arrival> m_waiting;
    std::size_t m_waitingBytes = 0;
    const std::size_t m_mostWaiting;

    std::atomic<bool> m_running = false;
    std::unique_ptr<QThread> m_thread;
};
