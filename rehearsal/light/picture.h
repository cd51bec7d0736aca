#pragma once

#include "exposure.h"
#include "glow.h"
#include "tone.h"

#include <QImage>

#include <span>

/// The light of an exposure as a person in a dark room sees it: a hot core that saturates toward
/// white, a glow around it, black elsewhere.
class Picture
{
public:
    /// Brings the picture up to date with an exposure, in which a white beam that rests has an
    /// energy of 1. Tiles on which the light has faded away are made dark in the exposure too.
    /// Returns whether anything is lit.
    bool develop(Exposure &exposure);

    const QImage &image() const { return m_image; }

private:
    void resize(const Exposure &exposure);
    bool developTile(const Exposure &exposure, int tileX, int tileY);
    QRgb developRow(const Exposure &exposure, int tileX, int y, std::span<QRgb> shown);

    QImage m_image;
    Glow m_glow;
    Tone m_tone;
    float m_gain = 1; ///< from an exposure's energy to light of which 1 is well lit
    std::vector<std::uint8_t> m_shown; ///< by tile: it is not black
};
