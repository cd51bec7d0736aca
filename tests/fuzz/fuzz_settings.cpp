#include "settings.h"
#include "settingsfile.h"
#include "typedvalues.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

// An input is the content of the settings file.

namespace {

constexpr QLatin1StringView fileName(".pong");
constexpr QLatin1StringView copyName(".pong.damaged");

void require(bool holds)
{
    if (!holds)
        std::abort();
}

QByteArray contentOf(QLatin1StringView name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Requires that reading twice gives the same value.
template <class T>
void read(const QSettings &store, const Setting<T> &setting)
{
    require(settings::read(store, setting) == settings::read(store, setting));
}

template <class T>
void read(const QSettings &store, const SettingOfSides<T> &setting)
{
    read(store, setting[Side::Left]);
    read(store, setting[Side::Right]);
}

void readAll(const QSettings &store)
{
    read(store, settings::ballSpeed);
    read(store, settings::controlMode);
    for (const auto &setting : {settings::sensitivity, settings::xStart, settings::xMove})
        read(store, setting);
    for (const auto &setting : {settings::moveStatus, settings::moveNumber, settings::startStatus,
             settings::startNumber, settings::upKey, settings::downKey, settings::startKey})
        read(store, setting);
}

/// QSettings lists keys and groups without a name, but they have no value.
bool isTextOrNone(const QVariant &value)
{
    if (value.typeId() == QMetaType::QVariantList) {
        const QVariantList list = value.toList();
        return std::all_of(list.begin(), list.end(), isTextOrNone);
    }
    return !value.isValid() || value.typeId() == QMetaType::QString
        || value.typeId() == QMetaType::QStringList;
}

/// Requires that QSettings created no value of another type.
void requireText(const QSettings &store)
{
    for (const QString &key : store.allKeys())
        require(isTextOrNone(store.value(key)));
}

void play(const QByteArray &content)
{
    QFile file(fileName);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    const QByteArray plain = withoutTypedValues(content);
    require(withoutTypedValues(plain) == plain);
    {
        const auto store = settings::open();
        requireText(*store);
        readAll(*store);
        for (const int speed : {26, 25}) // at least one of them is a change
            settings::write(*store, settings::ballSpeed, speed);
        require(settings::read(*store, settings::ballSpeed) == 25);
        // Every text that QSettings makes of the values counts as whole.
        require(settingsfile::write(fileName, settingsfile::valuesOf(*store)).isEmpty());
    }
    const QByteArray copy = contentOf(copyName);
    require(copy.isEmpty() || copy == content);
    require(settings::read(*settings::open(), settings::ballSpeed) == 25);
}

void keepQuiet(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString & /*text*/)
{
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    qInstallMessageHandler(keepQuiet);
    // A new folder, because Qt treats a file with the same name, size and time as unchanged.
    const QString previousFolder = QDir::currentPath();
    {
        const QTemporaryDir folder;
        require(QDir::setCurrent(folder.path()));
        play(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
        require(QDir::setCurrent(previousFolder));
    }
    return 0;
}
