#include "settings.h"

#include "foundfile.h"
#include "settingsfile.h"
#include "settingsstore.h"

#include <QCoreApplication>
#include <QDebug>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace {

/// A store that is backed by no writable file.
settings::Store inMemory()
{
    // QSettings needs a file name. This one is a program resource, which is read-only.
    return settings::Store(new QSettings(u":/.pong"_s, QSettings::IniFormat));
}

/// The same with the settings of a damaged INI text.
settings::Store inMemory(const QByteArray &iniText)
{
    qDebug("The settings file is damaged and cannot be copied; changes will not be kept");
    settings::Store store = inMemory();
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

void Close::operator()(QSettings *store) const
{
    if (auto *onDisk = dynamic_cast<SettingsStore *>(store))
        SettingsStore::close(onDisk);
    else
        delete store;
}

Store open()
{
    QFile file(FoundFile::name);
    if (!file.open(QIODevice::ReadOnly) && file.exists()) {
        qDebug() << "The settings file cannot be read; changes will not be kept:"
                 << file.errorString();
        return inMemory();
    }
    FoundFile found(file);
    file.close();
    if (!found.makeSafe())
        return inMemory(found.safeText());
    // The full path, because the working directory may have changed by the time of a write.
    const QString path = QFileInfo(file).absoluteFilePath();
    Store store(new SettingsStore(
        FoundFile::name,
        [path](const QVariantMap &values) { return settingsfile::write(path, values); },
        restBeforeWriting));
    if (store->status() == QSettings::FormatError) {
        if (!found.keep())
            return inMemory(found.safeText());
        // Else the next start would find damage again and keep what is left instead of the whole.
        settingsfile::write(path, settingsfile::valuesOf(*store));
    }
    if (found.isKept())
        qDebug() << "The settings file is damaged; it is kept as" << FoundFile::copyName;
    return store;
}

void requestSync(QSettings &store)
{
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(&store, &request);
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
