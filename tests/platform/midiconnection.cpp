#include "midiconnection.h"

#include <QDeadlineTimer>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

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
    QSignalSpy spy(&device, &MidiDevIn::midiReceived);
    return isConnected([&](unsigned char status) { sender.send(QByteArray::number(status, 16)); },
        [&](unsigned char status) {
            return std::any_of(spy.begin(), spy.end(),
                [&](const auto &signal) { return signal[1].toInt() == status; });
        });
}
