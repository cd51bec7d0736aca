#include "midiconnection.h"

#include <QDeadlineTimer>
#include <QTest>

#include <algorithm>

MidiInbox::MidiInbox(const MidiDevIn &device)
{
    connect(&device, &MidiDevIn::midiReceived, this,
        [this](int play, unsigned char data1, unsigned char data2, unsigned char data3) {
            messages.append({play, data1, data2, data3});
        });
}

int inputNamed(const QString &name)
{
    for (int index = 0; index < int(MidiDevIn::deviceCount()); ++index) {
        if (MidiDevIn::deviceNameAt(index).contains(name))
            return index;
    }
    return -1;
}

bool isConnected(const std::function<void(unsigned char status)> &send,
    const std::function<bool(unsigned char status)> &hasArrived)
{
    constexpr unsigned char clock = 0xF8;
    constexpr unsigned char last = 0xFB;
    const QDeadlineTimer deadline(10000);
    do
        send(clock);
    while (!QTest::qWaitFor([&] { return hasArrived(clock); }, 100) && !deadline.hasExpired());
    send(last);
    return QTest::qWaitFor([&] { return hasArrived(last); });
}

bool isConnected(MidiSender &sender, MidiDevIn &device)
{
    const MidiInbox inbox(device);
    return isConnected([&](unsigned char status) { sender.send(QByteArray::number(status, 16)); },
        [&](unsigned char status) {
            return std::any_of(inbox.messages.begin(), inbox.messages.end(),
                [&](const auto &message) { return message[1] == status; });
        });
}
