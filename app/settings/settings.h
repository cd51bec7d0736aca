#pragma once

#include "settingswriter.h"
#include "side.h"

#include <QLatin1StringView>
#include <QSettings>
#include <QString>
#include <QVariant>

#include <memory>
#include <type_traits>

// Everything kept between runs, in an INI file in the working directory. GUI thread.

/// One setting: its key in the file, and its value if the file has none.
template <class T>
struct Setting
{
    QLatin1StringView key;
    T fallback;
};

/// The same setting of both players.
template <class T>
using SettingOfSides = PerSide<Setting<T>>;

namespace settings {

// Every key of the file.

inline constexpr Setting<int> ballSpeed = {QLatin1StringView("BallSpeed"), 20};

template <class T>
constexpr SettingOfSides<T> ofSides(
    const char *left, const char *right, std::type_identity_t<T> fallback)
{
    return {{{{QLatin1StringView(left), fallback}, {QLatin1StringView(right), fallback}}}};
}

inline constexpr auto sensitivity = ofSides<int>("SensL", "SensR", 512);
inline constexpr auto controlMode =
    ofSides<QLatin1StringView>("ControlModeLeft", "ControlModeRight", QLatin1StringView("XBOX"));
inline constexpr auto xStart =
    ofSides<int>("XStartL", "XStartR", 0); // a CXBOXController::buttonList
inline constexpr auto xMove =
    ofSides<int>("XMoveL", "XMoveR", 0); // a CXBOXController::controllerList
inline constexpr auto moveStatus = ofSides<uint>("CC_00", "CC_10", 0); // 0 is not learnt, as below
inline constexpr auto moveNumber = ofSides<uint>("CC_01", "CC_11", 0);
inline constexpr auto startStatus = ofSides<uint>("Start_00", "Start_10", 0);
inline constexpr auto startNumber = ofSides<uint>("Start_01", "Start_11", 0);
inline constexpr auto upKey = ofSides<uint>("KeyboardUpL", "KeyboardUpR", 0); // a Qt::Key, as below
inline constexpr auto downKey = ofSides<uint>("KeyboardDownL", "KeyboardDownR", 0);
inline constexpr auto startKey = ofSides<uint>("KeyboardStartL", "KeyboardStartR", 0);

/// Deletes a store of open(), which writes its file. See SettingsStore::close().
struct Close
{
    void operator()(QSettings *store) const;
};
using Store = std::unique_ptr<QSettings, Close>;

/// From a change to its writing. Tests prolong it: they read the file as a second QSettings, which
/// shares its values with the store, and an older file that replaces it just then would undo
/// changes.
inline std::chrono::milliseconds restBeforeWriting = SettingsWriter::usualRest;

/// Opens ".pong" in the working directory. It is read once: edits that others make to it meanwhile
/// are replaced by the next write. A write keeps every value of the file but no comments, no order,
/// and no lines that QSettings cannot parse; and QSettings instantiates values of any type. So a
/// file with malformed lines or typed values is first copied to ".pong.damaged", and typed values
/// become plain text. If the copy cannot be written, or the file cannot be read, it is left alone
/// and changes are kept in memory only.
Store open();

/// Asks the store for a sync, as QSettings asks itself.
void requestSync(QSettings &store);

/// Returns the stored value as QVariant converts it, or the fallback if there is none. Values that
/// are not numbers read as 0 and are logged; nothing else is checked.
int read(const QSettings &store, const Setting<int> &setting);
uint read(const QSettings &store, const Setting<uint> &setting);
QString read(const QSettings &store, const Setting<QLatin1StringView> &setting);

/// Puts a value into the store, which writes the file soon afterwards. Writing an unchanged value
/// does nothing.
template <class T>
void write(QSettings &store, const Setting<T> &setting, const std::type_identity_t<T> &value)
{
    QVariant wanted;
    if constexpr (std::is_same_v<T, QLatin1StringView>)
        wanted = QString(value);
    else
        wanted = value;
    const QVariant stored = store.value(setting.key);
    if (!stored.isValid() || stored.toString() != wanted.toString()) {
        store.setValue(setting.key, wanted);
        requestSync(store);
    }
}

} // namespace settings
