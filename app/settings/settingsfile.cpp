#include "settingsfile.h"

#include <QFile>
#include <QSaveFile>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Whether QSettings has written a line for each value, and the end of the last one. It does not
/// notice if a full disk truncates the text.
bool isWhole(const QByteArray &text, qsizetype values)
{
    const QByteArrayList lines = text.split('\n');
    const auto isValue = [](const QByteArray &line) {
        return !line.trimmed().isEmpty() && !line.startsWith('['); // else the head of a group
    };
    return text.endsWith('\n') && std::count_if(lines.begin(), lines.end(), isValue) == values;
}

/// The INI text of the values, from a temporary file of QSettings in this folder, or empty.
QByteArray iniText(const QTemporaryDir &folder, const QVariantMap &values)
{
    const QString name = folder.filePath(u"text"_s);
    QSettings file(name, QSettings::IniFormat);
    for (auto entry = values.begin(); entry != values.end(); ++entry)
        file.setValue(entry.key(), entry.value());
    file.sync();
    const QByteArray text = settingsfile::contentOf(name);
    return isWhole(text, values.size()) ? text : QByteArray();
}

} // namespace

QByteArray settingsfile::contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString settingsfile::replace(const QString &name, const QByteArray &content)
{
    QSaveFile file(name);
    // Flushed explicitly: commit() does not notice if a full disk truncates the last bytes.
    const bool replaced = file.open(QIODevice::WriteOnly) && file.write(content) == content.size()
        && file.flush() && file.commit();
    return replaced ? QString() : file.errorString();
}

QString settingsfile::write(const QString &name, const QVariantMap &values)
{
    QByteArray text;
    {
        // Beside the file, so that nothing else than its own disk must have room.
        const QTemporaryDir folder(name + ".XXXXXX"_L1);
        if (!folder.isValid())
            return folder.errorString();
        text = iniText(folder, values);
    }
    return text.isEmpty() ? u"The temporary file is incomplete"_s : replace(name, text);
}

QVariantMap settingsfile::valuesOf(const QSettings &store)
{
    QVariantMap values;
    for (const QString &key : store.allKeys()) {
        const bool named = !key.isEmpty() && !key.startsWith(u'/') && !key.endsWith(u'/')
            && !key.contains("//"_L1);
        const QVariant value = named ? store.value(key) : QVariant();
        if (value.isValid())
            values.insert(key, value);
    }
    return values;
}
