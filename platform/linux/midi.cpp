#include "atomicvalue.h"
#include "windowsapi.h"

#include <jack/jack.h>
#include <rtmidi/RtMidi.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char *clientName = "Laser Rallyvane";

using MidiInCallback = void (*)(HMIDIIN, UINT, DWORD_PTR, DWORD_PTR, DWORD_PTR);

/// Milliseconds of a clock that never steps back.
std::int64_t milliseconds()
{
    using namespace std::chrono;
    return duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// The system's ports --------------------------------------------------------------------------

bool jackServerRuns()
{
    // The library would explain on standard error, at length, that there is no server.
    const auto silence = [](const char *) {};
    jack_set_error_function(silence);
    jack_set_info_function(silence);
    jack_client_t *client = jack_client_open(clientName, JackNoStartServer, nullptr);
    if (client)
        jack_client_close(client);
    return client != nullptr;
}

/// ALSA's sequencer if the system has one, else a running JACK server, else neither. Checked before
/// RtMidi is used, because RtMidi reports missing ones on standard error.
RtMidi::Api findApi()
{
    if (access("/dev/snd/seq", R_OK | W_OK) == 0)
        return RtMidi::LINUX_ALSA;
    return jackServerRuns() ? RtMidi::UNIX_JACK : RtMidi::UNSPECIFIED;
}

RtMidi::Api api()
{
    static const RtMidi::Api found = findApi();
    return found;
}

/// A new client of the MIDI system, or null if there is none. Failures are returned, never printed.
template <class Rt>
std::unique_ptr<Rt> makeClient()
{
    if (api() == RtMidi::UNSPECIFIED)
        return nullptr;
    try {
        auto client = std::make_unique<Rt>(api(), clientName);
        client->setErrorCallback([](RtMidiError::Type, const std::string &, void *) {});
        return client;
    } catch (const RtMidiError &) {
        return nullptr;
    }
}

/// The client that lists the ports, or null if the system has no MIDI.
template <class Rt>
Rt *directory()
{
    static const std::unique_ptr<Rt> client = makeClient<Rt>();
    return client.get();
}

template <class Rt>
UINT portCount()
{
    return directory<Rt>() ? directory<Rt>()->getPortCount() : 0;
}

/// "Client:Client Port" as "Client Port": a product name has no room for saying it twice.
std::string productName(const std::string &portName)
{
    const auto colon = portName.find(':');
    if (colon != std::string::npos && portName.compare(colon + 1, colon, portName, 0, colon) == 0)
        return portName.substr(colon + 1);
    return portName;
}

/// Fills the capabilities of a port: its name, cut between characters if need be.
template <class Rt, class Caps>
MMRESULT getDevCaps(DWORD_PTR device, Caps *caps, UINT capsSize)
{
    if (!caps)
        return MMSYSERR_INVALPARAM;
    if (device >= portCount<Rt>())
        return MMSYSERR_BADDEVICEID;
    const std::string name = productName(directory<Rt>()->getPortName(static_cast<UINT>(device)));
    Caps filled = {};
    std::size_t length = std::min(name.size(), sizeof filled.szPname - 1);
    const auto isContinuation = [](char c) { return (c & 0xC0) == 0x80; };
    while (length > 0 && length < name.size() && isContinuation(name[length]))
        --length;
    std::copy_n(name.begin(), length, filled.szPname);
    std::memcpy(caps, &filled, std::min<std::size_t>(capsSize, sizeof filled));
    return MMSYSERR_NOERROR;
}

// Open ports ----------------------------------------------------------------------------------

struct Input
{
    HMIDIIN handle = nullptr;
    MidiInCallback callback = nullptr;
    DWORD_PTR instance = 0;
    Relaxed<std::int64_t> startedAt = notStarted; ///< in milliseconds
    std::string portName;
    std::unique_ptr<RtMidiIn> client; ///< last, so that no message comes to half an input

    static constexpr std::int64_t notStarted = -1;
};

struct Output
{
    HMIDIOUT handle = nullptr;
    std::string portName;
    std::unique_ptr<RtMidiOut> client;
};

/// The open ports of one direction, by handle. Handles are never reused, so a closed one stays
/// invalid.
template <class Port>
class OpenPorts
{
public:
    using Handle = decltype(Port::handle);

    Port *find(Handle handle) const
    {
        const auto found = m_ports.find(handle);
        return found == m_ports.end() ? nullptr : found->second.get();
    }

    /// Makes a port for the system's port of that number, not yet connected.
    MMRESULT prepare(UINT device, std::unique_ptr<Port> &port)
    {
        using Rt = typename decltype(Port::client)::element_type;
        if (device >= portCount<Rt>())
            return MMSYSERR_BADDEVICEID;
        const std::string name = directory<Rt>()->getPortName(device);
        for (const auto &[handle, open] : m_ports) {
            if (open->portName == name)
                return MMSYSERR_ALLOCATED;
        }
        port = std::make_unique<Port>();
        port->portName = name;
        port->client = makeClient<Rt>();
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the handle is a number and never dereferenced
        port->handle = reinterpret_cast<Handle>(++m_lastHandle);
        return port->client ? MMSYSERR_NOERROR : MMSYSERR_NODRIVER;
    }

    /// Connects a prepared port and keeps it.
    MMRESULT connect(UINT device, std::unique_ptr<Port> port)
    {
        port->client->openPort(device, clientName);
        if (!port->client->isPortOpen())
            return MMSYSERR_NODRIVER;
        const Handle handle = port->handle;
        m_ports.emplace(handle, std::move(port));
        return MMSYSERR_NOERROR;
    }

    void remove(Handle handle) { m_ports.erase(handle); }

private:
    std::map<Handle, std::unique_ptr<Port>> m_ports;
    std::uintptr_t m_lastHandle = 0;
};

OpenPorts<Input> &inputs()
{
    static OpenPorts<Input> ports;
    return ports;
}

OpenPorts<Output> &outputs()
{
    static OpenPorts<Output> ports;
    return ports;
}

/// Passes a message on, on RtMidi's thread.
void receive(double /*sinceLast*/, std::vector<unsigned char> *bytes, void *userData)
{
    const Input &input = *static_cast<const Input *>(userData);
    const std::int64_t startedAt = input.startedAt;
    if (startedAt == Input::notStarted || bytes->empty() || bytes->size() > 3
        || bytes->front() < 0x80 || bytes->front() == 0xF0)
        return;
    DWORD_PTR word = 0;
    for (std::size_t i = 0; i < bytes->size(); ++i)
        word |= DWORD_PTR{(*bytes)[i]} << 8 * i;
    input.callback(input.handle, MIM_DATA, input.instance, word,
        static_cast<DWORD>(milliseconds() - startedAt));
}

/// The number of bytes of a short message by its status byte; 0 if it does not begin one.
std::size_t messageLength(unsigned char status)
{
    if (status < 0x80 || status == 0xF0)
        return 0;
    if (status < 0xF0)
        return (status & 0xE0) == 0xC0 ? 2 : 3;
    if (status == 0xF2)
        return 3;
    return status == 0xF1 || status == 0xF3 ? 2 : 1;
}

} // namespace

UINT midiInGetNumDevs()
{
    return portCount<RtMidiIn>();
}

MMRESULT midiInGetDevCapsA(DWORD_PTR device, MIDIINCAPSA *caps, UINT capsSize)
{
    return getDevCaps<RtMidiIn>(device, caps, capsSize);
}

MMRESULT midiInOpen(
    HMIDIIN *handle, UINT device, DWORD_PTR callback, DWORD_PTR instance, DWORD flags)
{
    if (!handle || callback == 0 || flags != CALLBACK_FUNCTION)
        return MMSYSERR_INVALPARAM;
    std::unique_ptr<Input> input;
    if (const MMRESULT result = inputs().prepare(device, input); result != MMSYSERR_NOERROR)
        return result;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes functions this way
    input->callback = reinterpret_cast<MidiInCallback>(callback);
    input->instance = instance;
    input->client->ignoreTypes(true, false, false);
    input->client->setCallback(&receive, input.get());
    const Input &opened = *input;
    if (const MMRESULT result = inputs().connect(device, std::move(input));
        result != MMSYSERR_NOERROR)
        return result;
    *handle = opened.handle;
    opened.callback(opened.handle, MIM_OPEN, instance, 0, 0);
    return MMSYSERR_NOERROR;
}

MMRESULT midiInStart(HMIDIIN handle)
{
    Input *input = inputs().find(handle);
    if (!input)
        return MMSYSERR_INVALHANDLE;
    input->startedAt = milliseconds();
    return MMSYSERR_NOERROR;
}

MMRESULT midiInStop(HMIDIIN handle)
{
    Input *input = inputs().find(handle);
    if (!input)
        return MMSYSERR_INVALHANDLE;
    input->startedAt = Input::notStarted;
    return MMSYSERR_NOERROR;
}

MMRESULT midiInClose(HMIDIIN handle)
{
    const Input *input = inputs().find(handle);
    if (!input)
        return MMSYSERR_INVALHANDLE;
    const MidiInCallback callback = input->callback;
    const DWORD_PTR instance = input->instance;
    inputs().remove(handle);
    callback(handle, MIM_CLOSE, instance, 0, 0);
    return MMSYSERR_NOERROR;
}

UINT midiOutGetNumDevs()
{
    return portCount<RtMidiOut>();
}

MMRESULT midiOutGetDevCapsA(DWORD_PTR device, MIDIOUTCAPSA *caps, UINT capsSize)
{
    return getDevCaps<RtMidiOut>(device, caps, capsSize);
}

MMRESULT midiOutOpen(
    HMIDIOUT *handle, UINT device, DWORD_PTR /*callback*/, DWORD_PTR /*instance*/, DWORD flags)
{
    if (!handle || flags != CALLBACK_NULL)
        return MMSYSERR_INVALPARAM;
    std::unique_ptr<Output> output;
    if (const MMRESULT result = outputs().prepare(device, output); result != MMSYSERR_NOERROR)
        return result;
    HMIDIOUT opened = output->handle;
    const MMRESULT result = outputs().connect(device, std::move(output));
    if (result == MMSYSERR_NOERROR)
        *handle = opened;
    return result;
}

MMRESULT midiOutClose(HMIDIOUT handle)
{
    if (!outputs().find(handle))
        return MMSYSERR_INVALHANDLE;
    outputs().remove(handle);
    return MMSYSERR_NOERROR;
}

MMRESULT midiOutShortMsg(HMIDIOUT handle, DWORD message)
{
    const Output *output = outputs().find(handle);
    if (!output)
        return MMSYSERR_INVALHANDLE;
    std::array<unsigned char, 3> bytes = {};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(message >> 8 * i & 0xff);
    const std::size_t length = messageLength(bytes[0]);
    if (length == 0)
        return MMSYSERR_INVALPARAM;
    output->client->sendMessage(bytes.data(), length);
    return MMSYSERR_NOERROR;
}
