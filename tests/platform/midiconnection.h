#pragma once

#include "mididevices.h"
#include "midiserver.h"

#include <QList>
#include <QObject>

#include <array>
#include <functional>

/// Collects, on the test's thread, the messages that a device emits on a system thread: each as
/// side, status and two data bytes.
class MidiInbox : public QObject
{
public:
    explicit MidiInbox(const MidiDevIn &device);

    QList<std::array<int, 4>> messages;
};

/// The number of the input device whose name contains `name`, or -1.
int inputNamed(const QString &name);

/// Sends with `send` until `hasArrived` reports a message: a new connection takes a moment to work.
/// No message is in transit when it returns.
bool isConnected(const std::function<void(unsigned char status)> &send,
    const std::function<bool(unsigned char status)> &hasArrived);

/// The same for a sender and an open, started device.
bool isConnected(MidiSender &sender, MidiDevIn &device);
