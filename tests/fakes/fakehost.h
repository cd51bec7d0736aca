#pragma once

#include "ldb.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <atomic>
#include <functional>
#include <mutex>

/// A laser host in this process that replaces the system's functions for loading libraries. It
/// answers as scripted and records every call in order. Members may be used from any thread.
class FakeHost
{
public:
    struct Frame
    {
        qint32 zone;
        QList<LdbPoint> points;
    };

    /// Is the host of this process until destroyed. One at a time.
    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost &) = delete;
    FakeHost &operator=(const FakeHost &) = delete;

    // The script.
    bool installed = true; ///< whether the library can be loaded at all
    QByteArray missingEntryPoint; ///< name of a function that the library lacks
    std::atomic<qint32> ready = 1; ///< the answer of ldbBeyondExeReady
    std::function<void()> onReady; ///< runs inside ldbBeyondExeReady, before it answers
    std::atomic<qint32> build = 1700;
    std::atomic<qint32> zones = 1;
    std::function<void()> onZoneCount; ///< runs inside ldbGetZoneCount, before it answers
    std::atomic<qint32> outputAnswer = 1; ///< the answer of the output switch
    std::function<void()> onOutput; ///< runs inside the output switch, before it answers
    std::function<void()> onSendFrame; ///< runs inside ldbSendFrame, to stall it for example

    // The record.
    /// If false, frames are only counted, without allocating.
    std::atomic<bool> recording = true;
    /// Every call since the last take: "LoadLibrary BEYONDIOx64.dll", "ldbCreate",
    /// "ldbSendFrame 2 0 0 SingleZone 175 points null 100 -1", "FreeLibrary".
    QStringList takeCalls();
    /// The frames sent since the last take.
    QList<Frame> takeFrames();
    /// The resolved names, in order.
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
