#pragma once

#include "colororder.h"
#include "recording.h"

class QIODevice;

/// The most frames that an ILDA file can hold: it counts them in 16 bits.
inline constexpr qsizetype mostIldaFrames = 65'535;

/// One frame of an ILDA Image Data Transfer Format file: its header and its points.
struct IldaFrame
{
    int number; ///< from 0
    int total; ///< frames in the file
    int projector; ///< 0 ... 255
};

/// A section of format 5 (two dimensions, true colour). Points without light get the blanking bit,
/// which overrides their colour, and keep it. A frame without points becomes one blanked point,
/// because a section without any ends the file. Places are rounded and bounded to 16 bits; a point
/// that is nowhere (NaN, infinite) is blanked in the place of the one before.
QByteArray ildaSection(
    const std::vector<LdbPoint> &points, const IldaFrame &frame, ColorOrder order);
/// The section without points that ends a file.
QByteArray ildaEnd();

/// Writes the frames of a zone, as the game sent them, to one file or several: "show.ild",
/// "show-2.ild" and so on, each full but for the last. The format holds no times. The projector
/// number is the zone. Returns the files; none, and the reason in `problem`, when one cannot be
/// written or the zone has no frames.
QStringList exportIlda(Recording &recording, int zone, ColorOrder order, const QString &path,
    QString &problem, qsizetype framesPerFile = mostIldaFrames);
