#pragma once

#include <QByteArray>

/// Escapes the values of an INI text that QSettings would convert to other types, such as
/// "@Variant(...)", by doubling the "@", so that it reads them as plain text. QSettings reads whole
/// groups, and all groups before it writes, so such a value under any key would be instantiated,
/// whatever its type and size. All other bytes are returned unchanged. Any thread.
QByteArray withoutTypedValues(const QByteArray &iniText);
