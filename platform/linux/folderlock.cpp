#include "folderlock.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

// The folder itself is locked, which takes no file and no right to write.
FolderLock::FolderLock(const QString &folder)
    : handle(open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    taken = handle >= 0 && flock(int(handle), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

FolderLock::~FolderLock()
{
    if (handle >= 0)
        close(int(handle));
}
