#pragma once

#include "colororder.h"
#include "recording.h"

class QIODevice;

/// The maximum number of frames in an ILDA file, which has a 16-bit frame count.
inline constexpr qsizetype mostIldaFrames = 65'535;

/// Header fields of a frame in an ILDA Image Data Transfer Format file.
struct IldaFrame
{
    int number; ///< from 0
    int total; ///< frames in the file
    int projector; ///< 0 ... 255
};

/// A section of format 5 (2D, true colour). Dark points keep their colour and get the blanking bit,
/// which overrides it. An empty frame becomes one blanked point, because an empty section ends the
/// file. Coordinates are rounded and clamped to 16 bits; a point with a non-finite coordinate is
/// blanked at the position of the one before.
QByteArray ildaSection(
    const std::vector<LdbPoint> &points, const IldaFrame &frame, ColorOrder order);
/// The empty section that ends a file.
QByteArray ildaEnd();

/// Writes the frames of a zone, as the game sent them, to one or more files: "show.ild",
/// "show-2.ild" and so on, all full except the last. The format has no timestamps. The projector
/// number is the zone. Returns the files; none, with the reason in `problem`, if one cannot be
/// written or the zone has no frames.
QStringList exportIlda(Recording &recording, int zone, ColorOrder order, const QString &path,
    QString &problem, qsizetype framesPerFile = mostIldaFrames);
