#pragma once

#include <QProcess>
#include <QString>

/// Lets a process that is yet to be started end when this one does, killed or not.
void endWithThisProcess(QProcess &process);

/// The MIDI system that the tests play through: ALSA's sequencer where there is one, else a JACK
/// server of their own without hardware, started here and ended with this object.
class MidiServer
{
public:
    MidiServer();
    ~MidiServer();
    MidiServer(const MidiServer &) = delete;
    MidiServer &operator=(const MidiServer &) = delete;

    /// Why there is none; empty when there is.
    QString problem;
    /// "alsa" or "jack".
    QString api;

private:
    QString m_name;
    QProcess m_jackd;
};

/// A process of its own that is a MIDI device to this one.
class MidiSender
{
public:
    MidiSender(const MidiServer &server, const QString &name);
    ~MidiSender();
    MidiSender(const MidiSender &) = delete;
    MidiSender &operator=(const MidiSender &) = delete;

    /// Whether its port is there.
    bool isReady() const { return m_ready; }
    /// Sends a message, "B2 07 64"; true when it has left.
    bool send(const QByteArray &hexBytes);
    /// Ends it as a cable that is pulled would.
    void kill();

private:
    bool answers(const QByteArray &expected);

    QProcess m_process;
    bool m_ready = false;
};
