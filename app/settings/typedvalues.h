#pragma once

#include <QByteArray>

/// Makes the values of an INI text that QSettings would turn into other types, such as
/// "@Variant(...)", plain text to it by doubling the "@". QSettings reads a group as a whole, and
/// all groups before it writes, so that such a value under any key would be built, of any type and
/// up to any size. Every other byte is returned as it is. Any thread.
QByteArray withoutTypedValues(const QByteArray &iniText);
