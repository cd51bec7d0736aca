#pragma once

#include "atomicvalue.h"
#include "midimessage.h"
#include "windowsapi.h"

#include <QObject>
#include <QString>

#include <array>
#include <memory>

class QThread;

/// Common base class of the MIDI devices. GUI thread.
class midi : public QObject
{
    Q_OBJECT

public:
    midi();
};

/// A MIDI input device of the system. It lives on the GUI thread, which opens and closes it;
/// messages arrive on a system thread and are emitted as midiReceived; connect with a queued
/// connection.
///
/// Opening a device while another one is open overwrites the other's handle: the other device stays
/// open but silent.
class MidiDevIn : public midi
{
    Q_OBJECT

public:
    MidiDevIn();
    /// Ends the worker thread, if there is one. Does not close the device.
    ~MidiDevIn() override;

    /// The number of input devices.
    static unsigned deviceCount();
    /// The product name of device `index`; empty if there is none or the system reports an error.
    static QString deviceNameAt(int index);

    /// Opens device `index`; messages flow after start(). `instance` is passed to the callback,
    /// which ignores it. Returns the system's result; a failure changes nothing.
    MMRESULT open(unsigned index, void *instance);
    /// Opens the first device of that exact name. If there is none, returns 0 and opens nothing;
    /// check getDeviceIndex.
    MMRESULT open(const QString &name, void *instance);
    /// Starts message input. Returns the system's result.
    MMRESULT start();
    /// Stops message input. Harmless without an open device.
    void stop();
    /// Closes the device and returns the system's result. getHandle keeps its value.
    MMRESULT close();

    /// The handle of the last opened device, open or not; null before the first. Any thread.
    HMIDIIN getHandle() const;
    /// The index of the open device, -1 if none is.
    int getDeviceIndex() const;
    /// The product name of the open device, empty if none is.
    QString getDeviceName() const;

    /// One of three spare bytes; a larger `i` means the last.
    unsigned char byteAt(unsigned i) const;
    /// Writes one of the three spare bytes; a larger `i` means the last.
    void setByteAt(unsigned i, unsigned char v);

    /// Moves this object to its own thread, once. Messages arrive without it too.
    void startThread();

signals:
    /// A short message of any kind arrived: `play` is the side of the player whose device sent it,
    /// 0 left, 1 right; `data1` is the status byte with its channel, `data2` and `data3` are the
    /// data bytes. Emitted on the system's callback thread.
    void midiReceived(int play, unsigned char data1, unsigned char data2, unsigned char data3);
    void startMonitoring();
    void killThread();

private:
    Relaxed<HMIDIIN> handle = nullptr; ///< read by the callback thread
    std::unique_ptr<QThread> thread;
    qint32 deviceIndex = -1;
    QString deviceName;
    std::array<unsigned char, 3> bytes = {};
};

/// A MIDI output device of the system. GUI thread.
class MidiDevOut : public midi
{
    Q_OBJECT

public:
    /// The number of output devices.
    static unsigned deviceCount();
    /// The product name of device `index`; empty if there is none or the system reports an error.
    static QString deviceNameAt(int index);

    /// Opens device `index`. Returns the system's result; a failure changes nothing.
    MMRESULT open(unsigned index);
    /// Opens the first device of that exact name. If there is none, returns 0 and opens nothing;
    /// check getDeviceIndex.
    MMRESULT open(const QString &name);
    /// Closes the device and returns the system's result. getHandle keeps its value.
    MMRESULT close();
    /// Sends three bytes and returns the system's result.
    MMRESULT sendShortMessage(unsigned char status, unsigned char data1, unsigned char data2);

    HMIDIOUT getHandle() const;
    /// The index of the open device, -1 if none is.
    int getDeviceIndex() const;
    /// The product name of the open device, empty if none is.
    QString getDeviceName() const;

private:
    HMIDIOUT handle = nullptr;
    qint32 deviceIndex = -1;
    QString deviceName;
};

/// The devices of the two players. Constructed before main, destroyed after it.
extern MidiDevIn midiInLeft;
extern MidiDevIn midiInRight;

/// Called by the system with the messages of an open device, on a thread of its choice. Handles
/// short messages and ignores everything else.
void CALLBACK midiInCallback(
    HMIDIIN handle, UINT message, DWORD_PTR instance, DWORD_PTR parameter1, DWORD_PTR parameter2);
/// Emits midiReceived on the device with that `handle`, checking the left one first; drops the
/// message if neither has it. Called on the callback's thread.
void dispatchMidiMessage(HMIDIIN handle, const MidiMessage &message);
