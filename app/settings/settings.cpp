#include "settings.h"

#include <QDebug>
#include <QFile>
#include <QVariant>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView fileName(".pong");

void keepDamagedFile()
{
    const QString copy = fileName + ".damaged"_L1;
    QFile::remove(copy);
    QFile::copy(fileName, copy);
    qDebug() << "The settings file is damaged; it is kept as" << copy;
}

/// Takes the lines out of the file with which Qt would build a value of any type and any size, up
/// to one that no memory holds. Such a value begins with "@", plain or behind a backslash; what
/// the program writes has neither. Returns whether there were any.
bool dropTypedValues()
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QByteArrayList lines = file.readAll().split('\n');
    file.close();
    const auto isTyped = [](const QByteArray &line) {
        return line.contains('@') || line.contains('\\');
    };
    if (lines.removeIf(isTyped) == 0)
        return false;
    keepDamagedFile();
    if (file.open(QIODevice::WriteOnly))
        file.write(lines.join('\n'));
    return true;
}

template <class Number>
Number readNumber(const QSettings &store, const Setting<Number> &setting)
{
    const QVariant value = store.value(setting.key, setting.fallback);
    bool isNumber = false;
    const qlonglong number = value.toLongLong(&isNumber);
    if (isNumber && std::in_range<Number>(number))
        return static_cast<Number>(number);
    qDebug() << "Setting" << setting.key << "is no number:" << value.toString();
    return 0;
}

} // namespace

namespace settings {

std::unique_ptr<QSettings> open()
{
    const bool isKept = dropTypedValues();
    auto store = std::make_unique<QSettings>(QString(fileName), QSettings::IniFormat);
    store->allKeys(); // only this reads the lines, and notices damage in them
    if (!isKept && store->status() == QSettings::FormatError)
        keepDamagedFile();
    return store;
}

int read(const QSettings &store, const Setting<int> &setting)
{
    return readNumber(store, setting);
}

uint read(const QSettings &store, const Setting<uint> &setting)
{
    return readNumber(store, setting);
}

QString read(const QSettings &store, const Setting<QLatin1StringView> &setting)
{
    return store.value(setting.key, QString(setting.fallback)).toString();
}

} // namespace settings
