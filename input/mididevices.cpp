#include "mididevices.h"

#include <QThread>

#include <algorithm>
#include <iterator>
#include <span>

// Constructed in this order, before main.
MidiDevIn midiInLeft;
MidiDevIn midiInRight;

namespace {

/// The text of a field that is NUL-terminated unless full.
QString productName(std::span<const char> field)
{
    return QString::fromUtf8(
        field.data(), std::distance(field.begin(), std::find(field.begin(), field.end(), '\0')));
}

/// The index of the first device of that exact name, or -1.
template <class Device>
int deviceNamed(const QString &name)
{
    for (unsigned index = 0; index < Device::deviceCount(); ++index) {
        if (Device::deviceNameAt(static_cast<int>(index)) == name)
            return static_cast<int>(index);
    }
    return -1;
}

} // namespace

midi::midi()
    : QObject(nullptr)
{
}

MidiDevIn::MidiDevIn() = default;

MidiDevIn::~MidiDevIn()
{
    emit killThread();
    if (thread)
        thread->wait();
}

unsigned MidiDevIn::deviceCount()
{
    return midiInGetNumDevs();
}

QString MidiDevIn::deviceNameAt(int index)
{
    if (index < 0 || static_cast<unsigned>(index) >= deviceCount())
        return {};
    MIDIINCAPSA caps = {};
    if (midiInGetDevCapsA(static_cast<DWORD_PTR>(index), &caps, sizeof caps) != MMSYSERR_NOERROR)
        return {};
    return productName(caps.szPname);
}

MMRESULT MidiDevIn::open(unsigned index, void *instance)
{
    HMIDIIN opened = nullptr;
    const MMRESULT result = midiInOpen(&opened, index, reinterpret_cast<DWORD_PTR>(&midiInCallback),
        reinterpret_cast<DWORD_PTR>(instance), CALLBACK_FUNCTION);
    if (result != MMSYSERR_NOERROR)
        return result;
    handle = opened;
    deviceIndex = static_cast<qint32>(index);
    deviceName = deviceNameAt(deviceIndex);
    return result;
}

MMRESULT MidiDevIn::open(const QString &name, void *instance)
{
    const int index = deviceNamed<MidiDevIn>(name);
    return index < 0 ? MMSYSERR_NOERROR : open(static_cast<unsigned>(index), instance);
}

MMRESULT MidiDevIn::start()
{
    return midiInStart(handle);
}

void MidiDevIn::stop()
{
    midiInStop(handle);
}

MMRESULT MidiDevIn::close()
{
    deviceIndex = -1;
    deviceName.clear();
    return midiInClose(handle);
}

HMIDIIN MidiDevIn::getHandle() const
{
    return handle;
}

int MidiDevIn::getDeviceIndex() const
{
    return deviceIndex;
}

QString MidiDevIn::getDeviceName() const
{
    return deviceName;
}

unsigned char MidiDevIn::byteAt(unsigned i) const
{
    return bytes[std::min<std::size_t>(i, bytes.size() - 1)];
}

void MidiDevIn::setByteAt(unsigned i, unsigned char v)
{
    bytes[std::min<std::size_t>(i, bytes.size() - 1)] = v;
}

void MidiDevIn::startThread()
{
    if (thread)
        return;
    thread = std::make_unique<QThread>();
    connect(this, &MidiDevIn::killThread, thread.get(), &QThread::quit, Qt::DirectConnection);
    moveToThread(thread.get());
    thread->start(QThread::InheritPriority);
}

unsigned MidiDevOut::deviceCount()
{
    return midiOutGetNumDevs();
}

QString MidiDevOut::deviceNameAt(int index)
{
    if (index < 0 || static_cast<unsigned>(index) >= deviceCount())
        return {};
    MIDIOUTCAPSA caps = {};
    if (midiOutGetDevCapsA(static_cast<DWORD_PTR>(index), &caps, sizeof caps) != MMSYSERR_NOERROR)
        return {};
    return productName(caps.szPname);
}

MMRESULT MidiDevOut::open(unsigned index)
{
    HMIDIOUT opened = nullptr;
    const MMRESULT result = midiOutOpen(&opened, index, 0, 0, CALLBACK_NULL);
    if (result != MMSYSERR_NOERROR)
        return result;
    handle = opened;
    deviceIndex = static_cast<qint32>(index);
    deviceName = deviceNameAt(deviceIndex);
    return result;
}

MMRESULT MidiDevOut::open(const QString &name)
{
    const int index = deviceNamed<MidiDevOut>(name);
    return index < 0 ? MMSYSERR_NOERROR : open(static_cast<unsigned>(index));
}

MMRESULT MidiDevOut::close()
{
    deviceIndex = -1;
    deviceName.clear();
    return midiOutClose(handle);
}

MMRESULT MidiDevOut::sendShortMessage(
    unsigned char status, unsigned char data1, unsigned char data2)
{
    return midiOutShortMsg(handle, encodeMidiWord({status, data1, data2}));
}

HMIDIOUT MidiDevOut::getHandle() const
{
    return handle;
}

int MidiDevOut::getDeviceIndex() const
{
    return deviceIndex;
}

QString MidiDevOut::getDeviceName() const
{
    return deviceName;
}

void CALLBACK midiInCallback(HMIDIIN handle, UINT message, DWORD_PTR /*instance*/,
    DWORD_PTR parameter1, DWORD_PTR /*timeStamp*/)
{
    if (message == MIM_DATA)
        dispatchMidiMessage(handle, decodeMidiWord(static_cast<DWORD>(parameter1 & 0xffffffff)));
}

void dispatchMidiMessage(HMIDIIN handle, const MidiMessage &message)
{
    int play = 0;
    for (MidiDevIn *device : {&midiInLeft, &midiInRight}) {
        if (device->getHandle() == handle) {
            emit device->midiReceived(play, message.status, message.number, message.value);
            return;
        }
        ++play;
    }
}
