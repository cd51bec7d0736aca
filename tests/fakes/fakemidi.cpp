#include "fakemidi.h"

#include <QByteArray>

#include <algorithm>
#include <thread>
#include <utility>

namespace {

FakeMidi *midiSystem = nullptr;
std::uintptr_t lastHandle = 0; // handles are never reused, not even by another FakeMidi

using MidiInCallback = void(CALLBACK *)(HMIDIIN, UINT, DWORD_PTR, DWORD_PTR, DWORD_PTR);

template <class Handle>
Handle newHandle()
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle is a number, never dereferenced
    return reinterpret_cast<Handle>(++lastHandle);
}

void record(const char *function)
{
    if (midiSystem)
        midiSystem->record(QString::fromLatin1(function));
}

template <class Number>
void record(const char *function, Number device)
{
    if (midiSystem)
        midiSystem->record(QStringLiteral("%1 %2").arg(QLatin1StringView(function)).arg(device));
}

/// Finds the open port of a handle and records the call on it.
template <class Port, class Handle>
Port *open(QList<Port> FakeMidi::*ports, Handle handle, const char *function,
    const QString &argument = QString())
{
    if (!midiSystem)
        return nullptr;
    auto &open = midiSystem->*ports;
    const auto found = std::find_if(
        open.begin(), open.end(), [handle](const Port &port) { return port.handle == handle; });
    const QString number =
        found == open.end() ? QStringLiteral("invalid") : QString::number(found->openedAs);
    midiSystem->record(QLatin1StringView(function) + QLatin1Char(' ') + number + argument);
    return found == open.end() ? nullptr : &*found;
}

UINT deviceCount(QList<FakeMidi::Device> FakeMidi::*devices)
{
    return midiSystem ? static_cast<UINT>((midiSystem->*devices).size()) : 0;
}

template <class Caps>
MMRESULT getDevCaps(
    QList<FakeMidi::Device> FakeMidi::*devices, DWORD_PTR device, Caps *caps, UINT capsSize)
{
    if (device >= deviceCount(devices))
        return MMSYSERR_BADDEVICEID;
    if (capsSize != sizeof(Caps))
        return MMSYSERR_INVALPARAM;
    *caps = {};
    const FakeMidi::Device &asked = (midiSystem->*devices)[static_cast<qsizetype>(device)];
    const QByteArray name = asked.capsResult == MMSYSERR_NOERROR ? asked.name.toUtf8() : "garbage";
    std::copy_n(name.begin(), std::min<qsizetype>(name.size(), MAXPNAMELEN - 1), caps->szPname);
    return asked.capsResult;
}

/// Why a device cannot be opened, or 0.
MMRESULT openResult(QList<FakeMidi::Device> FakeMidi::*devices, UINT device)
{
    if (device >= deviceCount(devices))
        return MMSYSERR_BADDEVICEID;
    return (midiSystem->*devices)[static_cast<qsizetype>(device)].openResult;
}

} // namespace

FakeMidi::FakeMidi(const QStringList &inputNames, const QStringList &outputNames)
{
    for (const QString &name : inputNames)
        inputs.append({.name = name});
    for (const QString &name : outputNames)
        outputs.append({.name = name});
    midiSystem = this;
}

FakeMidi::~FakeMidi()
{
    midiSystem = nullptr;
}

void FakeMidi::unplugInput(int index)
{
    inputs.removeAt(index);
    for (Input &input : openInputs) {
        if (input.device == index)
            input.device = -1;
        else if (input.device > index)
            --input.device;
    }
}

int FakeMidi::send(int index, DWORD word, Thread thread)
{
    return deliver(index, MIM_DATA, word, thread, [](const Input &input) { return input.started; });
}

int FakeMidi::callBack(int index, UINT message, DWORD_PTR parameter1, Thread thread)
{
    return deliver(index, message, parameter1, thread, [](const Input &) { return true; });
}

int FakeMidi::deliver(
    int index, UINT message, DWORD_PTR parameter1, Thread thread, bool (*receives)(const Input &))
{
    constexpr DWORD_PTR timeStamp = 0x12345678;
    int handles = 0;
    for (const Input &input : std::as_const(openInputs)) {
        if (input.device != index || !receives(input))
            continue;
        const auto call = [&] {
            // NOLINTNEXTLINE(performance-no-int-to-ptr): how Windows passes callbacks
            reinterpret_cast<MidiInCallback>(input.callback)(
                input.handle, message, input.instance, parameter1, timeStamp);
        };
        if (thread == Thread::Foreign)
            std::thread(call).join();
        else
            call();
        ++handles;
    }
    return handles;
}

QStringList FakeMidi::takeCalls()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_calls, {});
}

QStringList FakeMidi::takeDeviceCalls()
{
    QStringList calls = takeCalls();
    calls.removeIf([](const QString &call) { return call.contains(QLatin1StringView("Get")); });
    return calls;
}

void FakeMidi::record(const QString &call)
{
    {
        const std::lock_guard lock(m_mutex);
        m_calls.append(call);
    }
    if (onCall)
        onCall(call);
}

UINT midiInGetNumDevs()
{
    record("midiInGetNumDevs");
    return deviceCount(&FakeMidi::inputs);
}

MMRESULT midiInGetDevCapsA(DWORD_PTR device, MIDIINCAPSA *caps, UINT capsSize)
{
    record("midiInGetDevCapsA", device);
    return getDevCaps(&FakeMidi::inputs, device, caps, capsSize);
}

MMRESULT midiInOpen(
    HMIDIIN *handle, UINT device, DWORD_PTR callback, DWORD_PTR instance, DWORD flags)
{
    record("midiInOpen", device);
    if (flags != CALLBACK_FUNCTION || callback == 0)
        return MMSYSERR_INVALPARAM;
    if (const MMRESULT result = openResult(&FakeMidi::inputs, device); result != MMSYSERR_NOERROR)
        return result;
    for (const FakeMidi::Input &input : std::as_const(midiSystem->openInputs)) {
        if (input.device == static_cast<int>(device))
            return MMSYSERR_ALLOCATED;
    }
    *handle = std::exchange(midiSystem->nextInputHandle, nullptr);
    if (!*handle)
        *handle = newHandle<HMIDIIN>();
    midiSystem->instances.append(instance);
    midiSystem->openInputs.append(
        {*handle, device, static_cast<int>(device), callback, instance, false});
    return MMSYSERR_NOERROR;
}

MMRESULT midiInStart(HMIDIIN handle)
{
    FakeMidi::Input *input = open(&FakeMidi::openInputs, handle, "midiInStart");
    if (!input)
        return MMSYSERR_INVALHANDLE;
    if (input->device < 0)
        return MMSYSERR_NODRIVER;
    const MMRESULT result = midiSystem->inputs.at(input->device).startResult;
    input->started = result == MMSYSERR_NOERROR;
    return result;
}

MMRESULT midiInStop(HMIDIIN handle)
{
    FakeMidi::Input *input = open(&FakeMidi::openInputs, handle, "midiInStop");
    if (!input)
        return MMSYSERR_INVALHANDLE;
    input->started = false;
    return input->device < 0 ? MMSYSERR_NODRIVER : MMSYSERR_NOERROR;
}

MMRESULT midiInClose(HMIDIIN handle)
{
    if (!open(&FakeMidi::openInputs, handle, "midiInClose"))
        return MMSYSERR_INVALHANDLE;
    bool unplugged = false;
    midiSystem->openInputs.removeIf([&](const FakeMidi::Input &input) {
        unplugged |= input.handle == handle && input.device < 0;
        return input.handle == handle;
    });
    return unplugged ? MMSYSERR_NODRIVER : MMSYSERR_NOERROR;
}

UINT midiOutGetNumDevs()
{
    record("midiOutGetNumDevs");
    return deviceCount(&FakeMidi::outputs);
}

MMRESULT midiOutGetDevCapsA(DWORD_PTR device, MIDIOUTCAPSA *caps, UINT capsSize)
{
    record("midiOutGetDevCapsA", device);
    return getDevCaps(&FakeMidi::outputs, device, caps, capsSize);
}

MMRESULT midiOutOpen(
    HMIDIOUT *handle, UINT device, DWORD_PTR callback, DWORD_PTR instance, DWORD flags)
{
    record("midiOutOpen", device);
    if (callback != 0 || instance != 0 || flags != CALLBACK_NULL)
        return MMSYSERR_INVALPARAM;
    if (const MMRESULT result = openResult(&FakeMidi::outputs, device); result != MMSYSERR_NOERROR)
        return result;
    *handle = newHandle<HMIDIOUT>();
    midiSystem->openOutputs.append({*handle, device});
    return MMSYSERR_NOERROR;
}

MMRESULT midiOutClose(HMIDIOUT handle)
{
    if (!open(&FakeMidi::openOutputs, handle, "midiOutClose"))
        return MMSYSERR_INVALHANDLE;
    midiSystem->openOutputs.removeIf(
        [handle](const FakeMidi::Output &output) { return output.handle == handle; });
    return MMSYSERR_NOERROR;
}

MMRESULT midiOutShortMsg(HMIDIOUT handle, DWORD message)
{
    const auto argument = QStringLiteral(" %1").arg(message, 0, 16);
    return open(&FakeMidi::openOutputs, handle, "midiOutShortMsg", argument) ? MMSYSERR_NOERROR
                                                                             : MMSYSERR_INVALHANDLE;
}
