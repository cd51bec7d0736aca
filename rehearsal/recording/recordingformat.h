#pragma once

#include <QByteArray>

#include <cstdint>

// Constants shared by the writer and the reader of recordings; Recorder describes the format.

inline constexpr char recordingMagic[] = "RALLYREC"; // without its terminating NUL
inline constexpr qsizetype magicSize = sizeof recordingMagic - 1;
/// Incremented whenever the format changes.
inline constexpr std::uint8_t recordingVersion = 1;

enum class RecordType : std::uint8_t {
    WholeFrame = 'W',
    ChangedFrame = 'C',
    Happening = 'H',
    End = 'E',
};

/// The most frames of a zone that a reader has to decode to reach one of them.
inline constexpr int wholeFrameInterval = 128;
/// Longer times are invalid: about 35 years, in microseconds.
inline constexpr std::int64_t longestShow = std::int64_t(1) << 50;
/// A larger count of missed frames is invalid.
inline constexpr std::uint64_t mostMissed = 1'000'000;
