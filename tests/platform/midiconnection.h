#pragma once

#include "mididevices.h"
#include "midiserver.h"

#include <QList>
#include <QObject>

#include <array>
#include <functional>

/// Collects, on the test's thread, the messages of a device, which come on a thread of the system:
/// each as its side, its status and its two data bytes.
class MidiInbox : public QObject
{
public:
    explicit MidiInbox(const MidiDevIn &device);

    QList<std::array<int, 4>> messages;
};

/// The number of the input device with this name in its own, or -1.
int inputNamed(const QString &name);

/// Whether what `send` sends arrives where `hasArrived` looks: a connection that is made takes a
/// moment to carry anything. Nothing is under way when it returns.
bool isConnected(const std::function<void(unsigned char status)> &send,
    const std::function<bool(unsigned char status)> &hasArrived);

/// Whether what a sender sends arrives at a device that is open and started.
bool isConnected(MidiSender &sender, MidiDevIn &device);
