#pragma once

#include "picture.h"
#include "projector.h"

/// What the eye sees of a projector's light on a screen: it is slow to forget, and does not see the
/// order of what is drawn anew more often than it can follow.
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

    /// Makes the picture `side` pixels wide, and dark.
    void resize(int side);
    /// Seconds after which 1/e of the light is left, shortestPersistence ... longestPersistence.
    void setPersistence(double seconds) { m_persistence = seconds; }
    double persistence() const { return m_persistence; }
    /// Forgets all light at once.
    void clear();

    /// Looks until a time on the projector's clock and brings the picture up to it. Returns whether
    /// anything is seen or may be soon.
    bool look(double until);
    const QImage &picture() const { return m_picture.image(); }
    const Exposure &exposure() const { return m_exposure; }

private:
    double seenOf(const BeamPiece &piece, double spread) const;

    Projector *m_projector;
    Exposure m_exposure;
    Picture m_picture;
    double m_persistence = usualPersistence;
    double m_from = 0; ///< the time up to which it has looked before
    double m_until = 0;
    std::vector<BeamPiece> m_way; ///< of which not all has been seen
};
