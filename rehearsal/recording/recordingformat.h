#pragma once

#include <QByteArray>

#include <cstdint>

// What the writer and the reader of recordings have in common; Recorder describes the whole.

inline constexpr char recordingMagic[] = "RALLYREC"; // without its final zero
inline constexpr qsizetype magicSize = sizeof recordingMagic - 1;
/// Counts up whenever the format changes.
inline constexpr std::uint8_t recordingVersion = 1;

enum class RecordType : std::uint8_t {
    WholeFrame = 'W',
    ChangedFrame = 'C',
    Happening = 'H',
    End = 'E',
};

/// How many frames of a zone a reader may have to decode to get at one.
inline constexpr int wholeFrameInterval = 128;
/// Times beyond are no times of a show: about 35 years, in microseconds.
inline constexpr std::int64_t longestShow = std::int64_t(1) << 50;
/// More missed frames say nothing about frames.
inline constexpr std::uint64_t mostMissed = 1'000'000;
