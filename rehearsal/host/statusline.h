#pragma once

#include <QWidget>

class Host;
class QAction;
class QLabel;

/// One line under the views: who the host is, how it is, and what else is to be told.
class StatusLine : public QWidget
{
    Q_OBJECT

public:
    /// The button that records is in it too.
    StatusLine(const Host &host, QAction *record, QWidget *parent = nullptr);

    void setOutputOn(bool on);
    /// Shows anew what the host tells about itself.
    void showHost(const Host &host);
    /// Text at the end of the line.
    void setFigures(const QString &figures);

private:
    QLabel *m_build;
    QLabel *m_state;
    QLabel *m_output;
    QLabel *m_figures;
};
