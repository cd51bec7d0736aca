#pragma once

#include <QFile>
#include <QString>

// A file that other users of the machine can neither read nor write, and that they cannot have put
// there in the place of ours.

namespace privatefile {

/// Opens the file `path` for reading and writing without a buffer, and creates it if it is missing.
/// An existing file of this user is closed to others. Returns the reason of a failure, or nothing.
QString create(QFile &file, const QString &path);
/// Opens an existing file for reading and writing without a buffer. Fails if others can access it.
/// Returns the reason of a failure, or nothing.
QString open(QFile &file, const QString &path);

} // namespace privatefile
