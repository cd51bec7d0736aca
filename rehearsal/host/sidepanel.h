#pragma once

#include "figures.h"
#include "scanner.h"

#include <QWidget>

class QDoubleSpinBox;
class QLabel;
class QSpinBox;

/// The column beside the picture: how the scanner is set, the technician's strip of figures, and
/// what the frame doctor has found. Strip and doctor can be hidden.
class SidePanel : public QWidget
{
    Q_OBJECT

public:
    explicit SidePanel(QWidget *parent = nullptr);

    void setStripShown(bool shown);
    void setDoctorShown(bool shown);
    void setFigures(const QList<Figure> &figures);
    void setFindings(const QList<Finding> &findings);

    // As the person has set them. Seconds, but for the rate.
    int pointRate() const;
    double colorDelay() const;
    double persistence() const;
    double longestStand() const;
    void setPointRate(int rate);
    void setColorDelay(double seconds);
    void setPersistence(double seconds);
    void setLongestStand(double seconds);

signals:
    /// Anything was set.
    void changed();

private:
    QWidget *makeSettings();
    QWidget *makeStrip();
    QWidget *makeDoctor();

    QSpinBox *m_pointRate;
    QSpinBox *m_colorDelay; ///< microseconds
    QSpinBox *m_persistence; ///< milliseconds
    QDoubleSpinBox *m_longestStand; ///< milliseconds
    QList<QLabel *> m_values; ///< of the figures
    QLabel *m_findings = nullptr;
    QWidget *m_settings;
    QWidget *m_strip;
    QWidget *m_doctor;
};
