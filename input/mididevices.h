#pragma once

#include "atomicvalue.h"
#include "midimessage.h"
#include "windowsapi.h"

#include <QObject>
#include <QString>

#include <array>
#include <memory>

class QThread;

/// What MIDI input and output devices have in common: to be one. GUI thread.
class midi : public QObject
{
    Q_OBJECT

public:
    midi();
};

/// A MIDI input device of the system. It lives on the GUI thread, which opens and closes it; its
/// messages come on a thread of the system and leave as the signal midiReceived, which queued
/// connections carry on.
///
/// A device that is opened while another one is open overwrites the other's handle: the other
/// stays open and is silent.
class MidiDevIn : public midi
{
    Q_OBJECT

public:
    MidiDevIn();
    /// Ends the worker thread, if there is one. Does not close the device.
    ~MidiDevIn() override;

    /// The number of input devices.
    static unsigned deviceCount();
    /// The product name of device `index`, or an empty string when there is none or the system
    /// fails to tell it.
    static QString deviceNameAt(int index);

    /// Opens device `index`; its messages flow from start() on. `instance` goes to the callback,
    /// which has no use for it. Returns the system's result; a failure changes nothing.
    MMRESULT open(unsigned index, void *instance);
    /// Opens the first device of that exact name. Returns 0 without opening anything when there is
    /// none, so that only getDeviceIndex tells.
    MMRESULT open(const QString &name, void *instance);
    /// Lets messages flow. Returns the system's result.
    MMRESULT start();
    /// Holds messages back. Harmless without an open device.
    void stop();
    /// Closes the device and returns the system's result. getHandle keeps its value.
    MMRESULT close();

    /// The handle of the device opened last, open or not; null before the first. Any thread.
    HMIDIIN getHandle() const;
    /// The number of the open device, -1 when none is.
    int getDeviceIndex() const;
    /// The product name of the open device, empty when none is.
    QString getDeviceName() const;

    /// One of three spare bytes; an `i` beyond them means the last.
    unsigned char byteAt(unsigned i) const;
    /// Writes one of the three spare bytes; an `i` beyond them means the last.
    void setByteAt(unsigned i, unsigned char v);

    /// Moves this object to a thread of its own, once. Messages come without it too.
    void startThread();

signals:
    /// A short message of any kind came: `play` is the side of the player whose device sent it,
    /// 0 left, 1 right; `data1` the status byte with its channel, `data2` and `data3` the data
    /// bytes. Emitted on the system's callback thread.
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
    /// The product name of device `index`, or an empty string when there is none or the system
    /// fails to tell it.
    static QString deviceNameAt(int index);

    /// Opens device `index`. Returns the system's result; a failure changes nothing.
    MMRESULT open(unsigned index);
    /// Opens the first device of that exact name. Returns 0 without opening anything when there is
    /// none, so that only getDeviceIndex tells.
    MMRESULT open(const QString &name);
    /// Closes the device and returns the system's result. getHandle keeps its value.
    MMRESULT close();
    /// Sends three bytes and returns the system's result.
    MMRESULT sendShortMessage(unsigned char status, unsigned char data1, unsigned char data2);

    HMIDIOUT getHandle() const;
    /// The number of the open device, -1 when none is.
    int getDeviceIndex() const;
    /// The product name of the open device, empty when none is.
    QString getDeviceName() const;

private:
    HMIDIOUT handle = nullptr;
    qint32 deviceIndex = -1;
    QString deviceName;
};

/// The devices of the two players. They exist before main and outlive everything in it.
extern MidiDevIn midiInLeft;
extern MidiDevIn midiInRight;

/// What the system calls with the messages of an open device, on a thread of its choice. Passes
/// short messages on and leaves everything else.
void CALLBACK midiInCallback(
    HMIDIIN handle, UINT message, DWORD_PTR instance, DWORD_PTR parameter1, DWORD_PTR parameter2);
/// Emits midiReceived on the device that holds `handle`, the left one first; drops the message
/// when none does. On the callback's thread.
void dispatchMidiMessage(HMIDIIN handle, const MidiMessage &message);
