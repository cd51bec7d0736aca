#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

class QSettings;

/// Reads and replaces files as a whole. Any thread.
namespace settingsfile {

/// The content of a file; empty if it cannot be read.
QByteArray contentOf(const QString &name);

/// Replaces a file atomically, keeping its permissions, and returns an empty text, or leaves it
/// unchanged and returns the reason. Syncs the disk.
QString replace(const QString &name, const QByteArray &content);

/// Replaces a settings file by these values, as replace() does. Lists and texts, and what converts
/// to text.
QString write(const QString &name, const QVariantMap &values);

/// All values of a store, without keys that cannot be looked up because a part has no name.
QVariantMap valuesOf(const QSettings &store);

} // namespace settingsfile
