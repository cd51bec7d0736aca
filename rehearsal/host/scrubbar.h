#pragma once

#include "ldb.h"

#include <QWidget>

#include <span>

class QLabel;
class QSlider;

/// Walks through the points of a held frame.
class ScrubBar : public QWidget
{
    Q_OBJECT

public:
    explicit ScrubBar(QWidget *parent = nullptr);

    /// Begins with a frame, at its last point. The frame must outlive its use.
    void setFrame(std::span<const LdbPoint> points);
    /// How many points of the frame are drawn.
    int pointsShown() const;
    /// Shows where the beam is, without asking for it.
    void follow(int point);
    /// By so many points forward, or back.
    void step(int points);

signals:
    /// The person asks for so many points.
    void moved(int pointsShown);

private:
    void describe();

    std::span<const LdbPoint> m_points;
    QSlider *m_slider;
    QLabel *m_text;
};
