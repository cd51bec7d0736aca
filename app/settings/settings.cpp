#include "settings.h"

#include "typedvalues.h"

#include <QDebug>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryFile>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView fileName(".pong");
constexpr QLatin1StringView copyName(".pong.damaged");

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Replaces a file atomically, or returns false and leaves it unchanged.
bool replaceFile(const QString &name, const QByteArray &content)
{
    QSaveFile file(name);
    // Flushed explicitly: commit() does not notice if a full disk truncates the last bytes.
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush()
        && file.commit();
}

bool keepCopy(const QByteArray &content)
{
    if (!replaceFile(copyName, content))
        return false;
    qDebug() << "The settings file is damaged; it is kept as" << copyName;
    return true;
}

/// A store with the settings of an INI text, backed by no writable file.
std::unique_ptr<QSettings> inMemory(const QByteArray &iniText)
{
    qDebug("The settings file is damaged and cannot be copied; changes will not be kept");
    // QSettings needs a file name. This one is a program resource, which is read-only.
    auto store = std::make_unique<QSettings>(u":/.pong"_s, QSettings::IniFormat);
    QTemporaryFile file;
    if (file.open() && file.write(iniText) == iniText.size() && file.flush()) {
        const QSettings source(file.fileName(), QSettings::IniFormat);
        for (const QString &key : source.allKeys())
            store->setValue(key, source.value(key));
    }
    return store;
}

template <class Number>
Number readNumber(const QSettings &store, const Setting<Number> &setting,
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

std::unique_ptr<QSettings> open()
{
    const QByteArray content = contentOf(fileName);
    const QByteArray plain = withoutTypedValues(content);
    const bool isTyped = plain != content;
    if (isTyped && !(keepCopy(content) && replaceFile(fileName, plain)))
        return inMemory(plain);
    auto store = std::make_unique<QSettings>(QString(fileName), QSettings::IniFormat);
    store->allKeys(); // only this parses the lines and detects malformed ones
    if (!isTyped && store->status() == QSettings::FormatError && !keepCopy(content))
        return inMemory(plain);
    return store;
}

int read(const QSettings &store, const Setting<int> &setting)
{
    return readNumber(store, setting, &QVariant::toInt);
}

uint read(const QSettings &store, const Setting<uint> &setting)
{
    return readNumber(store, setting, &QVariant::toUInt);
}

QString read(const QSettings &store, const Setting<QLatin1StringView> &setting)
{
    return store.value(setting.key, QString(setting.fallback)).toString();
}

} // namespace settings
