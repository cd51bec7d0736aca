#pragma once

#include <QProcess>
#include <QString>

/// Makes a process, not yet started, end with this one, even if this one is killed.
void endWithThisProcess(QProcess &process);

/// The MIDI system for the tests: ALSA's sequencer if there is one, otherwise a private JACK server
/// without hardware, which runs for the lifetime of this object.
class MidiServer
{
public:
    MidiServer();
    ~MidiServer();
    MidiServer(const MidiServer &) = delete;
    MidiServer &operator=(const MidiServer &) = delete;

    /// Why there is no MIDI system; empty if there is one.
    QString problem;
    /// "alsa" or "jack".
    QString api;

private:
    QString m_name;
    QProcess m_jackd;
};

/// A separate process that acts as a MIDI device.
class MidiSender
{
public:
    MidiSender(const MidiServer &server, const QString &name);
    ~MidiSender();
    MidiSender(const MidiSender &) = delete;
    MidiSender &operator=(const MidiSender &) = delete;

    /// Whether its port exists.
    bool isReady() const { return m_ready; }
    /// Sends a message such as "B2 07 64". Returns true once it has been sent.
    bool send(const QByteArray &hexBytes);
    /// Removes the device, as pulling its cable would.
    void kill();

private:
    bool answers(const QByteArray &expected);

    QProcess m_process;
    bool m_ready = false;
};
