#include "privatefile.h"

// The folder for temporary files is part of the user's profile, which other users cannot access.
// Its permissions apply to the files in it.

namespace {

QString openFile(QFile &file, const QString &path, QIODevice::OpenMode mode)
{
    file.setFileName(path);
    const bool opened = file.open(QIODevice::ReadWrite | QIODevice::Unbuffered | mode);
    return opened ? QString() : file.errorString();
}

} // namespace

namespace privatefile {

QString create(QFile &file, const QString &path)
{
    return openFile(file, path, {});
}

QString open(QFile &file, const QString &path)
{
    return openFile(file, path, QIODevice::ExistingOnly);
}

} // namespace privatefile
