#include "hostactions.h"

#include "hoststate.h"

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

} // namespace

HostActions::HostActions(QMainWindow &window)
{
    file = window.menuBar()->addMenu(tr("&File"));
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
    leaveFullScreen = new QAction(&window);
    leaveFullScreen->setShortcut(Qt::Key_Escape);
    window.addAction(leaveFullScreen);

    QMenu *frame = window.menuBar()->addMenu(tr("F&rame"));
    hold = addSwitch(window, frame, "hold", tr("&Hold"), QKeySequence(Qt::Key_Space));
    nextPoint = add(window, frame, tr("&Next Point"), QKeySequence(Qt::Key_Right));
    previousPoint = add(window, frame, tr("&Previous Point"), QKeySequence(Qt::Key_Left));
    frame->addSeparator();
    pace = new QActionGroup(&window);
    addChoice(window, frame, pace, tr("&Real Pace"), QKeySequence(Qt::Key_0), 1.0);
    addChoice(window, frame, pace, tr("Slow Motion 1 : 10"), QKeySequence(Qt::Key_1), 0.1);
    addChoice(window, frame, pace, tr("Slow Motion 1 : 100"), QKeySequence(Qt::Key_2), 0.01);
    addChoice(window, frame, pace, tr("Slow Motion 1 : 1,000"), QKeySequence(Qt::Key_3), 0.001);
    pace->actions().constFirst()->setChecked(true);

    QMenu *host = window.menuBar()->addMenu(tr("&Host"));
    busy =
        addSwitch(window, host, "busy", tr("&Busy: Not Ready"), QKeySequence(Qt::CTRL | Qt::Key_B));
    tooOld = addSwitch(
        window, host, "tooOld", tr("Too &Old: Build 1613"), QKeySequence(Qt::CTRL | Qt::Key_O));
    gone = addSwitch(window, host, "gone", tr("&Gone"), QKeySequence(Qt::CTRL | Qt::Key_G));
    host->addSeparator();
    QMenu *zoneMenu = host->addMenu(tr("&Zones"));
    zones = new QActionGroup(&window);
    for (int count = 0; count <= maxZones; ++count) {
        addChoice(window, zoneMenu, zones, QStringLiteral("&%1").arg(count),
            QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + count)), count);
    }
}

QList<QAction *> HostActions::remembered() const
{
    return {asDrawn, swappedColors, points, travel, order, strip, doctor};
}
