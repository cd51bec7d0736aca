#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

/// The values of a settings file by key; a key in a group is "group/key".
using IniValues = QMap<QString, QVariant>;

/// The INI text from which QSettings reads these values, sorted by key. Numbers, texts and lists of
/// texts only, which is all that a file without typed values holds. Any thread.
QByteArray iniText(const IniValues &values);
