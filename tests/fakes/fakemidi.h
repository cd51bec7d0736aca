#pragma once

#include "windowsapi.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <mutex>

/// Replaces the MIDI system of this process: it has the scripted devices, answers as scripted and
/// records every call in order. Without a FakeMidi there are no devices.
///
/// To be used from the test's thread; only takeCalls may be called from any thread.
class FakeMidi
{
public:
    struct Device
    {
        QString name;
        MMRESULT openResult = MMSYSERR_NOERROR;
        MMRESULT startResult = MMSYSERR_NOERROR;
        MMRESULT capsResult = MMSYSERR_NOERROR; ///< on failure the returned name is garbage
    };

    /// Is the MIDI system of this process until destroyed. One at a time. Handles of earlier ones
    /// are invalid.
    explicit FakeMidi(const QStringList &inputNames = {}, const QStringList &outputNames = {});
    ~FakeMidi();
    FakeMidi(const FakeMidi &) = delete;
    FakeMidi &operator=(const FakeMidi &) = delete;

    // The script.
    /// In system order. Names may be any text; they are cut to 31 bytes.
    QList<Device> inputs;
    QList<Device> outputs;
    /// If set, the next midiInOpen returns this instead of a new handle: a system may reuse one.
    HMIDIIN nextInputHandle = nullptr;
    /// Unplugs input device `index`: later devices move up, and its open handles get no more
    /// messages and MMSYSERR_NODRIVER from every call.
    void unplugInput(int index);
    /// Runs inside each call, after it is recorded and before it is answered, with its entry in
    /// takeCalls(). May change the script.
    std::function<void(const QString &call)> onCall;

    // The events.
    enum class Thread { Foreign, Caller };
    /// Delivers a short message with a time stamp to every handle that has input device `index`
    /// started, by default from a separate thread. Returns the number of handles.
    int send(int index, DWORD word, Thread thread = Thread::Foreign);
    /// Calls the callback of every handle that has input device `index` open, started or not, with
    /// an arbitrary message.
    int callBack(int index, UINT message, DWORD_PTR parameter1, Thread thread = Thread::Foreign);

    // The record.
    /// Every call since the last take: "midiInGetNumDevs", "midiInGetDevCapsA 0", "midiInOpen 0",
    /// "midiInStart 0", "midiInStop 0", "midiInClose 0", "midiOutShortMsg 0 6407b2". Handles are
    /// shown as the number of their device when it was opened, invalid ones as "invalid".
    QStringList takeCalls();
    /// The same without queries: only calls that change the state of a device.
    QStringList takeDeviceCalls();
    /// The instance values passed to midiInOpen, in order.
    QList<DWORD_PTR> instances;

    // For the functions of the system.
    struct Input
    {
        HMIDIIN handle;
        UINT openedAs; ///< the device's number when it was opened
        int device; ///< its current number, -1 if unplugged
        DWORD_PTR callback;
        DWORD_PTR instance;
        bool started;
    };
    struct Output
    {
        HMIDIOUT handle;
        UINT openedAs;
    };
    void record(const QString &call);
    QList<Input> openInputs;
    QList<Output> openOutputs;

private:
    int deliver(int index, UINT message, DWORD_PTR parameter1, Thread thread,
        bool (*receives)(const Input &));

    std::mutex m_mutex;
    QStringList m_calls;
};
