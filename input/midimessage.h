#pragma once

#include <cstdint>

/// A short MIDI message: a status byte with its channel, and two data bytes, all as received.
struct MidiMessage
{
    unsigned char status = 0;
    unsigned char number = 0; ///< the first data byte: note or controller
    unsigned char value = 0; ///< the second data byte: velocity or controller value
};

/// Unpacks a short message from the system's word: status in the low byte, then the two data bytes;
/// the top byte is ignored. Any thread.
constexpr MidiMessage decodeMidiWord(std::uint32_t word)
{
    return {
        .status = static_cast<unsigned char>(word & 0xff),
        .number = static_cast<unsigned char>(word >> 8 & 0xff),
        .value = static_cast<unsigned char>(word >> 16 & 0xff),
    };
}

/// Packs three bytes into the word that decodeMidiWord unpacks. Any thread.
constexpr std::uint32_t encodeMidiWord(const MidiMessage &message)
{
    return message.status | static_cast<std::uint32_t>(message.number) << 8
        | static_cast<std::uint32_t>(message.value) << 16;
}
