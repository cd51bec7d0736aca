#include "windowmemory.h"

#include "hostactions.h"
#include "sidepanel.h"

#include <QAction>
#include <QSettings>
#include <QStyle>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QSettings settings()
{
    return {QStringLiteral(".rehearsal"), QSettings::IniFormat};
}

constexpr auto geometryKey = "geometry"_L1;
constexpr auto pointRateKey = "pointRate"_L1;
constexpr auto colorDelayKey = "colorDelayMicroseconds"_L1;
constexpr auto persistenceKey = "persistenceMilliseconds"_L1;
constexpr auto longestStandKey = "standLimitMilliseconds"_L1;

/// With the frame that a desktop puts around it.
constexpr QSize gameSize(950, 430);
constexpr QSize wantedSize(900, 720);

} // namespace

bool recallWindow(QWidget &window, const HostActions &actions, SidePanel &panel)
{
    const QSettings store = settings();
    for (QAction *action : actions.remembered()) {
        if (store.contains(action->objectName()))
            action->setChecked(store.value(action->objectName()).toBool());
    }
    // The panel's fields keep numbers in their ranges.
    const auto recall = [&store](const QString &key, const auto &set) {
        bool isNumber = false;
        const double value = store.value(key).toDouble(&isNumber);
        if (isNumber && std::abs(value) < 1e6)
            set(value);
    };
    recall(pointRateKey, [&](double value) { panel.setPointRate(qRound(value)); });
    recall(colorDelayKey, [&](double value) { panel.setColorDelay(value * 1e-6); });
    recall(persistenceKey, [&](double value) { panel.setPersistence(value * 1e-3); });
    recall(longestStandKey, [&](double value) { panel.setLongestStand(value * 1e-3); });
    return window.restoreGeometry(store.value(geometryKey).toByteArray());
}

void rememberWindow(const QWidget &window, const HostActions &actions, const SidePanel &panel)
{
    QSettings store = settings();
    for (const QAction *action : actions.remembered())
        store.setValue(action->objectName(), action->isChecked());
    store.setValue(pointRateKey, panel.pointRate());
    store.setValue(colorDelayKey, qRound(panel.colorDelay() * 1e6));
    store.setValue(persistenceKey, qRound(panel.persistence() * 1e3));
    store.setValue(longestStandKey, panel.longestStand() * 1e3);
    if (!window.isFullScreen())
        store.setValue(geometryKey, window.saveGeometry());
}

QRect placeBesideGame(const QRect &screen, const QSize &smallest)
{
    struct Place
    {
        QRect room;
        Qt::Alignment corner; ///< away from the game
    };
    const Place beside = {
        screen.adjusted(gameSize.width(), 0, 0, 0), Qt::AlignRight | Qt::AlignTop};
    const Place below = {
        screen.adjusted(0, gameSize.height(), 0, 0), Qt::AlignRight | Qt::AlignBottom};
    const auto sizeIn = [&smallest](const QRect &room) {
        return room.size().boundedTo(wantedSize).expandedTo(smallest);
    };
    // How much larger than at its smallest the picture gets there; negative if there is no room.
    const auto gain = [&smallest](const QRect &room) {
        const QSize more = room.size().boundedTo(wantedSize) - smallest;
        return std::min(more.width(), more.height());
    };
    const Place &better = gain(beside.room) > gain(below.room) ? beside : below;
    if (gain(better.room) < 0)
        return QStyle::alignedRect(Qt::LeftToRight, below.corner, smallest, screen);
    return QStyle::alignedRect(Qt::LeftToRight, better.corner, sizeIn(better.room), better.room);
}
