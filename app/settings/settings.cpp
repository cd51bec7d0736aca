#include "settings.h"

#include "typedvalues.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSettings>
#include <QTemporaryFile>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView fileName(".pong");
constexpr QLatin1StringView copyName(".pong.damaged");

/// Replaces a file atomically, or leaves it unchanged and returns the reason. Syncs the disk.
QString replaceFile(const QString &name, const QByteArray &content)
{
    QSaveFile file(name);
    // Flushed explicitly: commit() does not notice if a full disk truncates the last bytes.
    const bool replaced = file.open(QIODevice::WriteOnly) && file.write(content) == content.size()
        && file.flush() && file.commit();
    return replaced ? QString() : file.errorString();
}

bool keepCopy(const QByteArray &content)
{
    if (!replaceFile(copyName, content).isEmpty())
        return false;
    qDebug() << "The settings file is damaged; it is kept as" << copyName;
    return true;
}

/// The values of a file, without keys that have no name, which cannot be looked up, or no value.
IniValues valuesOf(const QSettings &file)
{
    IniValues values;
    for (const QString &key : file.allKeys()) {
        const bool named = !key.isEmpty() && !key.startsWith(u'/') && !key.endsWith(u'/')
            && !key.contains("//"_L1);
        const QVariant value = named ? file.value(key) : QVariant();
        if (value.isValid())
            values.insert(key, value);
    }
    return values;
}

/// A store with the settings of a damaged INI text, backed by no file.
std::unique_ptr<SettingsStore> inMemory(const QByteArray &iniText)
{
    qDebug("The settings file is damaged and cannot be copied; changes will not be kept");
    QTemporaryFile file;
    if (!file.open() || file.write(iniText) != iniText.size() || !file.flush())
        return std::make_unique<SettingsStore>(IniValues());
    const QSettings source(file.fileName(), QSettings::IniFormat);
    return std::make_unique<SettingsStore>(valuesOf(source));
}

template <class Number>
Number readNumber(const SettingsStore &store, const Setting<Number> &setting,
    Number (QVariant::*toNumber)(bool *) const)
{
    const QVariant value = store.value(setting.key, setting.fallback);
    bool isNumber = false;
    const Number number = (value.*toNumber)(&isNumber);
    if (!isNumber)
        qDebug() << "Setting" << setting.key << "is not a number:" << value.toString();
    return number;
}

} // namespace

namespace settings {

std::unique_ptr<SettingsStore> open()
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly) && file.exists()) {
        qDebug() << "The settings file cannot be read; changes will not be kept:"
                 << file.errorString();
        return std::make_unique<SettingsStore>(IniValues());
    }
    const QByteArray content = file.isOpen() ? file.readAll() : QByteArray();
    file.close();
    const QByteArray plain = withoutTypedValues(content);
    const bool isTyped = plain != content;
    if (isTyped && !(keepCopy(content) && replaceFile(fileName, plain).isEmpty()))
        return inMemory(plain);
    const QSettings source(fileName, QSettings::IniFormat);
    const IniValues values = valuesOf(source);
    if (!isTyped && source.status() == QSettings::FormatError && !keepCopy(content))
        return inMemory(plain);
    // The full path, because the working directory may have changed by the time of a write.
    return std::make_unique<SettingsStore>(
        values, [path = QFileInfo(file).absoluteFilePath()](const QByteArray &text) {
            return replaceFile(path, text);
        });
}

int read(const SettingsStore &store, const Setting<int> &setting)
{
    return readNumber(store, setting, &QVariant::toInt);
}

uint read(const SettingsStore &store, const Setting<uint> &setting)
{
    return readNumber(store, setting, &QVariant::toUInt);
}

QString read(const SettingsStore &store, const Setting<QLatin1StringView> &setting)
{
    return store.value(setting.key, QString(setting.fallback)).toString();
}

} // namespace settings
