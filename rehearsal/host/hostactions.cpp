#include "hostactions.h"

#include "glyphicon.h"
#include "hoststate.h"
#include "palette.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QMainWindow>
#include <QMenuBar>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("HostActions", text);
}

/// Adds to a menu; the window takes the keys, so that they work while the menu bar is hidden.
QAction *add(QMainWindow &window, QMenu *menu, const QString &text, const QKeySequence &key)
{
    auto *action = new QAction(text, &window);
    action->setShortcut(key);
    menu->addAction(action);
    window.addAction(action);
    return action;
}

QAction *addSwitch(QMainWindow &window, QMenu *menu, const char *name, const QString &text,
    const QKeySequence &key, bool on = false)
{
    QAction *action = add(window, menu, text, key);
    action->setObjectName(QLatin1StringView(name));
    action->setCheckable(true);
    action->setChecked(on);
    return action;
}

void addChoice(QMainWindow &window, QMenu *menu, QActionGroup *group, const QString &text,
    const QKeySequence &key, const QVariant &data)
{
    QAction *action = add(window, menu, text, key);
    action->setCheckable(true);
    action->setData(data);
    group->addAction(action);
}

/// A tool tip with the key in it.
void explain(QAction *action, const QString &text)
{
    action->setToolTip(
        tr("%1 (%2)").arg(text, action->shortcut().toString(QKeySequence::NativeText)));
}

} // namespace

HostActions::HostActions(QMainWindow &window)
    : leaveFullScreen(new QAction(&window))
    , pace(new QActionGroup(&window))
    , zones(new QActionGroup(&window))
{
    file = window.menuBar()->addMenu(tr("&File"));
    addShow(window);
    savePicture = add(window, file, tr("&Save Picture…"), QKeySequence::Save);
    file->addSeparator();
    quit = add(window, file, tr("&Quit"), QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setMenuRole(QAction::QuitRole);

    QMenu *view = window.menuBar()->addMenu(tr("&View"));
    asDrawn = addSwitch(
        window, view, "asDrawn", tr("As the Scanner &Draws It"), QKeySequence(Qt::Key_M), true);
    swappedColors = addSwitch(
        window, view, "swappedColors", tr("&Colours as 0xBBGGRR"), QKeySequence(Qt::Key_C));
    view->addSeparator();
    points = addSwitch(window, view, "points", tr("&Points as Dots"), QKeySequence(Qt::Key_P));
    travel =
        addSwitch(window, view, "travel", tr("&Blanked Travel as Dashes"), QKeySequence(Qt::Key_B));
    order = addSwitch(window, view, "order", tr("&Order as Colour"), QKeySequence(Qt::Key_O));
    view->addSeparator();
    strip =
        addSwitch(window, view, "strip", tr("&Technician's Strip"), QKeySequence(Qt::Key_T), true);
    doctor = addSwitch(window, view, "doctor", tr("&Frame Doctor"), QKeySequence(Qt::Key_D), true);
    view->addSeparator();
    large = addSwitch(window, view, "large", tr("One &Zone Large"), QKeySequence(Qt::Key_L));
    fullScreen =
        addSwitch(window, view, "fullScreen", tr("F&ull Screen"), QKeySequence(Qt::Key_F11));
    leaveFullScreen->setShortcut(Qt::Key_Escape);
    window.addAction(leaveFullScreen);

    QMenu *frame = window.menuBar()->addMenu(tr("F&rame"));
    hold = addSwitch(window, frame, "hold", tr("&Hold"), QKeySequence(Qt::Key_Space));
    nextPoint = add(window, frame, tr("&Next Point"), QKeySequence(Qt::Key_Right));
    previousPoint = add(window, frame, tr("&Previous Point"), QKeySequence(Qt::Key_Left));
    frame->addSeparator();
    addChoice(window, frame, pace, tr("&Real Pace"), QKeySequence(Qt::Key_0), 1.0);
    addChoice(window, frame, pace, tr("Slow Motion 1 : 10"), QKeySequence(Qt::Key_1), 0.1);
    addChoice(window, frame, pace, tr("Slow Motion 1 : 100"), QKeySequence(Qt::Key_2), 0.01);
    addChoice(window, frame, pace, tr("Slow Motion 1 : 1,000"), QKeySequence(Qt::Key_3), 0.001);
    pace->actions().constFirst()->setChecked(true);

    addPlayback(window);

    QMenu *host = window.menuBar()->addMenu(tr("&Host"));
    busy =
        addSwitch(window, host, "busy", tr("&Busy: Not Ready"), QKeySequence(Qt::CTRL | Qt::Key_B));
    tooOld = addSwitch(
        window, host, "tooOld", tr("Too &Old: Build 1613"), QKeySequence(Qt::CTRL | Qt::Key_O));
    gone = addSwitch(window, host, "gone", tr("&Gone"), QKeySequence(Qt::CTRL | Qt::Key_G));
    host->addSeparator();
    QMenu *zoneMenu = host->addMenu(tr("&Zones"));
    for (int count = 0; count <= maxZones; ++count) {
        addChoice(window, zoneMenu, zones, QStringLiteral("&%1").arg(count),
            QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + count)), count);
    }
}

void HostActions::addShow(QMainWindow &window)
{
    record = addSwitch(window, file, "record", tr("&Record…"), QKeySequence(Qt::CTRL | Qt::Key_R));
    record->setIcon(switchIcon(Glyph::Record, palette::quiet, Glyph::Record, palette::lit));
    explain(record, tr("Record every frame of the host, and what else happens, in a file"));
    openRecording =
        add(window, file, tr("&Open Recording…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O));
    exportIlda = add(window, file, tr("&Export ILDA…"), QKeySequence(Qt::CTRL | Qt::Key_E));
    file->addSeparator();
}

void HostActions::addPlayback(QMainWindow &window)
{
    QMenu *playback = window.menuBar()->addMenu(tr("&Playback"));
    play = addSwitch(window, playback, "play", tr("&Play"), QKeySequence(Qt::Key_K));
    play->setIcon(switchIcon(Glyph::Play, palette::text, Glyph::Pause, palette::text));
    explain(play, tr("Play or pause"));
    nextFrame = add(window, playback, tr("&Next Frame"), QKeySequence(Qt::Key_Period));
    nextFrame->setIcon(glyphIcon(Glyph::Forward, palette::text));
    explain(nextFrame, tr("Pause at the next frame"));
    previousFrame = add(window, playback, tr("Pre&vious Frame"), QKeySequence(Qt::Key_Comma));
    previousFrame->setIcon(glyphIcon(Glyph::Back, palette::text));
    explain(previousFrame, tr("Pause at the frame before"));
    laterMoment =
        add(window, playback, tr("10 Seconds On"), QKeySequence(Qt::CTRL | Qt::Key_Right));
    earlierMoment =
        add(window, playback, tr("10 Seconds Back"), QKeySequence(Qt::CTRL | Qt::Key_Left));
    playback->addSeparator();
    faster = add(window, playback, tr("&Faster"), QKeySequence(Qt::Key_Plus));
    slower = add(window, playback, tr("&Slower"), QKeySequence(Qt::Key_Minus));
    playback->addSeparator();
    backToLive =
        add(window, playback, tr("&Back to the Live Show"), QKeySequence(Qt::CTRL | Qt::Key_L));
    backToLive->setIconText(tr("Back to the live show"));
    explain(backToLive, tr("Close the recording"));
}

QList<QAction *> HostActions::ofHost() const
{
    return QList<QAction *>{record, busy, tooOld, gone} + zones->actions();
}

QList<QAction *> HostActions::ofPlayback() const
{
    return {exportIlda, play, nextFrame, previousFrame, laterMoment, earlierMoment, faster, slower};
}

QList<QAction *> HostActions::remembered() const
{
    return {asDrawn, swappedColors, points, travel, order, strip, doctor};
}
