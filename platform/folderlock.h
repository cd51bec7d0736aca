#pragma once

#include <QString>

#include <cstdint>

/// Makes sure that only one instance runs in a folder. The lock is the operating system's own: it
/// ends with the process however that ends, and leaves nothing in the folder. Any thread.
class FolderLock
{
public:
    /// Tries to take the lock of a folder; never waits.
    explicit FolderLock(const QString &folder);
    ~FolderLock();
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

    /// Whether another holds the lock. False also where no lock can be had, as in a folder that
    /// may not be opened or written: better two instances than none.
    bool isTaken() const { return taken; }

private:
    bool taken = false;
    std::intptr_t handle = -1; ///< the system's; -1 is none
};
