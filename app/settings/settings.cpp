#include "settings.h"

#include <QDebug>
#include <QFile>
#include <QVariant>

#include <type_traits>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView fileName(".pong");

void noteNumber(const QVariant &value, QLatin1StringView key, bool isNumber)
{
    if (!isNumber)
        qDebug() << "Setting" << key << "is no number:" << value.toString();
}

} // namespace

namespace settings {

std::unique_ptr<QSettings> open()
{
    auto store = std::make_unique<QSettings>(QString(fileName), QSettings::IniFormat);
    if (store->status() == QSettings::FormatError) {
        const QString copy = QString(fileName) + ".damaged"_L1;
        QFile::remove(copy);
        QFile::copy(fileName, copy);
        qDebug() << "The settings file is damaged; it is kept as" << copy;
    }
    return store;
}

int read(const QSettings &store, const Setting<int> &setting)
{
    const QVariant value = store.value(setting.key, setting.fallback);
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    noteNumber(value, setting.key, isNumber);
    return number;
}

uint read(const QSettings &store, const Setting<uint> &setting)
{
    const QVariant value = store.value(setting.key, setting.fallback);
    bool isNumber = false;
    const uint number = value.toUInt(&isNumber);
    noteNumber(value, setting.key, isNumber);
    return number;
}

QString read(const QSettings &store, const Setting<QLatin1StringView> &setting)
{
    return store.value(setting.key, QString(setting.fallback)).toString();
}

} // namespace settings
