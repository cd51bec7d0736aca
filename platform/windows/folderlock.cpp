#include "folderlock.h"

#include "windowsapi.h"

#include <QDir>

// A file that only one process may have open for writing, and that Windows deletes when that
// process closes it or ends. Others may read and delete it, so that a virus scanner that looks at
// one left by a power failure is not taken for an instance.
FolderLock::FolderLock(const QString &folder)
{
    const QString name = QDir::toNativeSeparators(QDir(folder).filePath(".rallyvane.lock"));
    HANDLE file = CreateFileW(reinterpret_cast<LPCWSTR>(name.utf16()), GENERIC_WRITE | DELETE,
        FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
        FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        taken = GetLastError() == ERROR_SHARING_VIOLATION;
    else
        handle = reinterpret_cast<std::intptr_t>(file);
}

FolderLock::~FolderLock()
{
    if (handle != -1)
        CloseHandle(reinterpret_cast<HANDLE>(handle)); // NOLINT(performance-no-int-to-ptr)
}
