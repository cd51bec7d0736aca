#pragma once

#include "playerstage.h"

#include <QKeyEvent>
#include <QTest>

/// The keys of a player.
struct Keys
{
    Qt::Key up;
    Qt::Key down;
    Qt::Key start;
};
/// By side.
inline constexpr std::array<Keys, 2> keysOf = {
    {{Qt::Key_W, Qt::Key_S, Qt::Key_D}, {Qt::Key_I, Qt::Key_K, Qt::Key_L}}};

/// A paddle's step at the default sensitivity.
inline constexpr int fullUp = 63;
inline constexpr int fullDown = -64;

/// A stage with both players on the keyboard and all keys learnt.
class KeyboardStage : public PlayerStage
{
public:
    /// `settings` are added to the defaults or replace them.
    explicit KeyboardStage(
        const Settings &others = {}, const QStringList &midiDevices = {}, Surface surface = Form)
        : PlayerStage(midiDevices, 0, settingsWith(others), surface)
    {
        open();
        QVERIFY(QTest::qWaitForWindowActive(widget()));
    }

    void press(Qt::Key key) const { QTest::keyPress(widget()->windowHandle(), key); }
    void release(Qt::Key key) const { QTest::keyRelease(widget()->windowHandle(), key); }
    /// For auto-repeated keys and keys without a code, which QTest does not support.
    void send(QEvent::Type type, int key, bool autoRepeat = false) const
    {
        QKeyEvent event(type, key, {}, {}, autoRepeat);
        QCoreApplication::sendEvent(widget()->focusWidget(), &event);
    }

private:
    static Settings settingsWith(const Settings &others)
    {
        Settings settings = {{QStringLiteral("ControlModeLeft"), QStringLiteral("KEYBOARD")},
            {QStringLiteral("ControlModeRight"), QStringLiteral("KEYBOARD")}};
        for (const int side : {0, 1}) {
            const Keys &keys = keysOf[std::size_t(side)];
            const QChar letter = side == 0 ? u'L' : u'R';
            settings.insert(QStringLiteral("KeyboardUp") + letter, QString::number(keys.up));
            settings.insert(QStringLiteral("KeyboardDown") + letter, QString::number(keys.down));
            settings.insert(QStringLiteral("KeyboardStart") + letter, QString::number(keys.start));
        }
        settings.insert(others);
        return settings;
    }
};
