#pragma once

#include "ldb.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <atomic>
#include <functional>
#include <mutex>

/// A laser host in this process, in place of the system's loading of libraries: it answers as
/// scripted and records every call in order. Its members may be used from any thread.
class FakeHost
{
public:
    struct Frame
    {
        qint32 zone;
        QList<LdbPoint> points;
    };

    /// Becomes the host of this process until it is destroyed. One at a time.
    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost &) = delete;
    FakeHost &operator=(const FakeHost &) = delete;

    // The script.
    bool installed = true; ///< whether the library can be loaded at all
    QByteArray missingEntryPoint; ///< the name of a function that the library lacks
    std::atomic<qint32> ready = 1; ///< the answer of ldbBeyondExeReady
    std::function<void()> onReady; ///< runs inside ldbBeyondExeReady, before it answers
    std::atomic<qint32> build = 1700;
    std::atomic<qint32> zones = 1;
    std::function<void()> onZoneCount; ///< runs inside ldbGetZoneCount, before it answers
    std::atomic<qint32> outputAnswer = 1; ///< the answer of the output switch
    std::function<void()> onOutput; ///< runs inside the output switch, before it answers
    std::function<void()> onSendFrame; ///< runs inside ldbSendFrame, to stall it for example

    // The record.
    /// Without it frames are only counted, and then a frame allocates nothing.
    std::atomic<bool> recording = true;
    /// Every call since the last take: "LoadLibrary BEYONDIOx64.dll", "ldbCreate",
    /// "ldbSendFrame 2 0 0 SingleZone 175 points null 100 -1", "FreeLibrary".
    QStringList takeCalls();
    /// The frames sent since the last take.
    QList<Frame> takeFrames();
    /// The names of the functions asked for, in order.
    QStringList takeResolved();
    std::atomic<int> framesSent = 0;
    std::atomic<bool> loaded = false;
    std::atomic<bool> outputOn = false;

    void record(const QString &call);
    void recordFrame(const Frame &frame);
    void recordResolved(const char *name);

private:
    std::mutex m_mutex;
    QStringList m_calls;
    QStringList m_resolved;
    QList<Frame> m_frames;
};
