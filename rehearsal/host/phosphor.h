#pragma once

#include "exposure.h"

#include <QImage>

#include <chrono>

/// The picture of a frame together with what is left of earlier ones, as the eye keeps it.
class Phosphor
{
public:
    /// Makes the picture `side` pixels wide, and dark.
    void resize(int side);
    void clear();
    /// Lets `elapsed` pass for the picture and lays the light of a frame, of the same size, over
    /// it. Returns whether something older still shows, so that it has more to fade.
    bool show(const Exposure &exposure, std::chrono::duration<double> elapsed);

    const QImage &picture() const { return m_picture; }

private:
    QImage m_picture;
};
