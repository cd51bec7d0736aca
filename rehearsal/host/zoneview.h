#pragma once

#include "exposure.h"
#include "phosphor.h"

#include <QElapsedTimer>
#include <QWidget>

/// One zone of the host: the light of its last frame, which stays until the next one comes, and a
/// line with its name and figures below it.
class ZoneView : public QWidget
{
    Q_OBJECT

public:
    /// Without a name there is no line below the picture.
    explicit ZoneView(QString name, QWidget *parent = nullptr);

    /// The frame that is shown from now on.
    void setFrame(const std::vector<LdbPoint> &points);
    /// With output disabled the view is dark, whatever its frame.
    void setOutputOn(bool on);
    /// Figures on the line below the picture.
    void setFigures(const QString &figures);
    /// Repaints if the picture has changed or still fades.
    void refresh();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRect fieldRect() const;
    void develop();

    QString m_name;
    QString m_figures;
    std::vector<LdbPoint> m_points;
    bool m_outputOn = false;
    bool m_changed = true; ///< what is shown is not what was exposed last
    bool m_fading = false;
    Exposure m_exposure;
    Phosphor m_phosphor;
    QElapsedTimer m_sinceDeveloped;
};
