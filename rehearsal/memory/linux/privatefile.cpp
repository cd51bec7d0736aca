#include "privatefile.h"

#include <QCoreApplication>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// The folder for temporary files is shared: another user can create the file first, or a link to a
// file of ours. All checks use the open descriptor, because a path could be replaced in between.

namespace {

constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
constexpr mode_t others = S_IRWXG | S_IRWXO;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(privatefile)
};

int openFile(const QString &path, int flags)
{
    return ::open(
        QFile::encodeName(path).constData(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | flags, ownerOnly);
}

/// Why an opened file is not a private one of this user, or nothing. Of its own files, those that
/// others can access are closed to them with `close`, and refused without.
QString refusal(int descriptor, bool close)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
        return qt_error_string(errno);
    if (!S_ISREG(status.st_mode))
        return Texts::tr("It is not a file.");
    if (status.st_uid != geteuid())
        return Texts::tr("It belongs to another user.");
    if (close)
        return fchmod(descriptor, ownerOnly) == 0 ? QString() : qt_error_string(errno);
    return (status.st_mode & others) == 0 ? QString() : Texts::tr("Other users can access it.");
}

/// Takes over a descriptor, open or not.
QString take(QFile &file, int descriptor, bool close)
{
    if (descriptor < 0)
        return qt_error_string(errno);
    QString reason = refusal(descriptor, close);
    if (!reason.isEmpty()) {
        ::close(descriptor);
        return reason;
    }
    const bool opened = file.open(
        descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
    return opened ? QString() : file.errorString();
}

} // namespace

namespace privatefile {

QString create(QFile &file, const QString &path)
{
    return take(file, openFile(path, O_CREAT), true);
}

QString open(QFile &file, const QString &path)
{
    return take(file, openFile(path, 0), false);
}

} // namespace privatefile
