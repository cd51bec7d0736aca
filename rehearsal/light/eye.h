#pragma once

#include "picture.h"
#include "projector.h"

/// Models how the eye sees a projector's light on a screen: with persistence of vision, and with
/// flicker fusion, so that fast repetition looks steady.
class Eye
{
public:
    static constexpr double shortestPersistence = 0.005;
    static constexpr double longestPersistence = 1.0;
    static constexpr double usualPersistence = 0.02;

    explicit Eye(Projector &projector)
        : m_projector(&projector)
    {
    }

    /// Resizes the picture to `side` pixels and clears it.
    void resize(int side);
    /// Seconds until light decays to 1/e, shortestPersistence ... longestPersistence.
    void setPersistence(double seconds) { m_persistence = seconds; }
    double persistence() const { return m_persistence; }
    /// Removes all light at once.
    void clear();

    /// Advances the picture to a time on the projector's clock. Returns whether anything is visible
    /// or may be soon.
    bool look(double until);
    const QImage &picture() const { return m_picture.image(); }
    const Exposure &exposure() const { return m_exposure; }

private:
    double seenOf(const BeamPiece &piece, double spread) const;

    Projector *m_projector;
    Exposure m_exposure;
    Picture m_picture;
    double m_persistence = usualPersistence;
    double m_from = 0; ///< end of the previous look
    double m_until = 0;
    std::vector<BeamPiece> m_way; ///< not yet seen completely
};
