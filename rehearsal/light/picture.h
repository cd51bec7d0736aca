#pragma once

#include "exposure.h"
#include "glow.h"
#include "tone.h"

#include <QImage>

#include <span>

/// Renders an exposure as seen in a dark room: a hot core that saturates toward white, a glow
/// around it, black elsewhere.
class Picture
{
public:
    /// Renders an exposure in which a resting white beam has an energy of 1. Tiles whose light has
    /// faded to black are cleared in the exposure too. Returns whether anything is lit.
    bool develop(Exposure &exposure);

    const QImage &image() const { return m_image; }

private:
    void resize(const Exposure &exposure);
    bool developTile(const Exposure &exposure, int tileX, int tileY);
    QRgb developRow(const Exposure &exposure, int tileX, int y, std::span<QRgb> shown);

    QImage m_image;
    Glow m_glow;
    Tone m_tone;
    float m_gain = 1; ///< scales exposure energy so that 1 is well lit
    std::vector<std::uint8_t> m_shown; ///< by tile: it is not black
};
