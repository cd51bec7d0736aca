#pragma once

#include "windowsapi.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <mutex>

/// The MIDI system of this process, in place of the real one: it has the devices of the script,
/// answers as scripted, and records every call in order. Without one there are no devices.
///
/// Script it and call it from the test's thread; only takeCalls may come from any.
class FakeMidi
{
public:
    struct Device
    {
        QString name;
        MMRESULT openResult = MMSYSERR_NOERROR;
        MMRESULT startResult = MMSYSERR_NOERROR;
        MMRESULT capsResult = MMSYSERR_NOERROR; ///< a failure leaves a name of no device
    };

    /// Becomes the MIDI system of this process until it is destroyed. One at a time. Handles of
    /// earlier ones stay invalid.
    explicit FakeMidi(const QStringList &inputNames = {}, const QStringList &outputNames = {});
    ~FakeMidi();
    FakeMidi(const FakeMidi &) = delete;
    FakeMidi &operator=(const FakeMidi &) = delete;

    // The script.
    /// In the order of the system. The name may be anything; 31 bytes of it fit.
    QList<Device> inputs;
    QList<Device> outputs;
    /// What the next midiInOpen gives in place of a new handle: a system may give one again.
    HMIDIIN nextInputHandle = nullptr;
    /// Unplugs input device `index`: those behind it move up, and whoever has it open gets
    /// MMSYSERR_NODRIVER from now on and no more messages.
    void unplugInput(int index);
    /// Runs inside each call, once it is recorded and before it is answered, with what takeCalls()
    /// has of it. May change the script.
    std::function<void(const QString &call)> onCall;

    // The events.
    enum class Thread { Foreign, Caller };
    /// Delivers a short message of every handle that has input device `index` started, with a
    /// time stamp, from a thread of the system's own unless told otherwise. Returns how many
    /// handles there were.
    int send(int index, DWORD word, Thread thread = Thread::Foreign);
    /// Calls the callback of every handle that has input device `index` open, started or not,
    /// with any message.
    int callBack(int index, UINT message, DWORD_PTR parameter1, Thread thread = Thread::Foreign);

    // The record.
    /// Every call since the last take: "midiInGetNumDevs", "midiInGetDevCapsA 0", "midiInOpen 0",
    /// "midiInStart 0", "midiInStop 0", "midiInClose 0", "midiOutShortMsg 0 6407b2"; handles show
    /// as the number that their device had when it was opened, invalid ones as "invalid".
    QStringList takeCalls();
    /// The same without the questions after devices: those that do something to one.
    QStringList takeDeviceCalls();
    /// The instance values that midiInOpen got, in order of the calls.
    QList<DWORD_PTR> instances;

    // For the functions of the system.
    struct Input
    {
        HMIDIIN handle;
        UINT openedAs; ///< the device's number when it was opened
        int device; ///< its number now, -1 when unplugged
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
