#pragma once

#include <QList>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;

/// Everything that can be done at the host's window: the actions in its menus, each with its key.
/// The window connects them. It owns them.
struct HostActions
{
    /// Fills the window's menu bar.
    explicit HostActions(QMainWindow &window);

    QMenu *file;
    QAction *record;
    QAction *openRecording;
    QAction *exportIlda;
    QAction *savePicture;
    QAction *quit;

    QAction *asDrawn;
    QAction *swappedColors;
    QAction *points;
    QAction *travel;
    QAction *order;
    QAction *strip;
    QAction *doctor;
    QAction *large;
    QAction *fullScreen;
    QAction *leaveFullScreen;

    QAction *hold;
    QAction *nextPoint;
    QAction *previousPoint;
    QActionGroup *pace; ///< the data of its actions is the speed, 1 for the real one

    QAction *play;
    QAction *nextFrame;
    QAction *previousFrame;
    QAction *laterMoment;
    QAction *earlierMoment;
    QAction *faster;
    QAction *slower;
    QAction *backToLive;

    QAction *busy;
    QAction *tooOld;
    QAction *gone;
    QActionGroup *zones; ///< the data of its actions is their number

    /// Those that are on or off and stay so from one start to the next, by their object names.
    QList<QAction *> remembered() const;
    /// Those that are about the host, which has to run.
    QList<QAction *> ofHost() const;
    /// Those that are about a recording, which has to be opened first.
    QList<QAction *> ofPlayback() const;

private:
    void addShow(QMainWindow &window);
    void addPlayback(QMainWindow &window);
};
