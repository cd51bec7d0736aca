#include "settings.h"

#include <QDebug>
#include <QFile>
#include <QVariant>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView fileName(".pong");

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
    auto store = std::make_unique<QSettings>(QString(fileName), QSettings::IniFormat);
    store->allKeys(); // only this reads the lines, and notices damage in them
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
