#pragma once

#include "eye.h"
#include "hoststate.h"
#include "marks.h"

#include <QWidget>

/// One zone of the host: the light that its projector throws, marks over it, and a line with its
/// name and figures below it. A frame may be held, to walk through its points.
class ZoneView : public QWidget
{
    Q_OBJECT

public:
    explicit ZoneView(QString name, QWidget *parent = nullptr);

    /// Takes a frame, which is shown until the next one comes.
    void takeFrame(std::span<const LdbPoint> points, SharedTime sentAt);
    /// The frame that is shown: the one that is held, or else the last one that came.
    const std::vector<LdbPoint> &frame() const { return m_isHeld ? m_held : m_last; }
    /// With output disabled the view is dark, whatever its frame.
    void setOutputOn(bool on);
    void setScanner(const ScannerSettings &settings);
    void setPersistence(double seconds) { m_eye.setPersistence(seconds); }
    void setMarks(const Marks &marks);
    /// Whether there is a line below the picture. A zone that is alone needs none.
    void setLineShown(bool shown);
    /// Figures on the line below the picture.
    void setFigures(const QString &figures);
    /// Whether it is the one of several that the window's figures are about.
    void setChosen(bool chosen);

    /// Keeps the frame that is shown; frames that come meanwhile are not shown.
    void hold(bool on);
    bool isHeld() const { return m_isHeld; }
    /// Draws only the first points of a held frame, and marks the last of them.
    void setPointsShown(int count);
    /// The number of the point that is drawn next.
    int nextPoint() const { return static_cast<int>(m_projector.nextPoint()); }

    /// Draws on until a time, and repaints if anything is to be seen of it.
    void refresh(SharedTime now);

signals:
    void chosen();
    void doubleClicked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    QRect fieldRect() const;
    void paintLine(QPainter &painter, const QRect &field);

    QString m_name;
    QString m_figures;
    bool m_isLineShown = true;
    bool m_isChosen = false;
    Marks m_marks;
    std::vector<LdbPoint> m_last; ///< frame that came
    std::vector<LdbPoint> m_held;
    bool m_isHeld = false;
    int m_pointsShown = 0;
    bool m_outputOn = false;
    bool m_isSeen = true; ///< something was seen, which has to be painted over
    Projector m_projector;
    Eye m_eye;
};
