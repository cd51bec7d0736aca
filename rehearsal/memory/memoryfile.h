#pragma once

#include "layout.h"

#include <QFile>
#include <QString>

/// The environment variable that names the rehearsal, so that several can run at once.
inline constexpr char rehearsalVariable[] = "RALLYVANE_REHEARSAL";

/// Path of the shared memory file of the rehearsal that the environment names. Empty if the name
/// has characters other than letters, digits, '.', '-' and '_'.
///
/// The file is in the user's runtime folder if the system has one (in memory, removed with the
/// session), otherwise in the folder for temporary files. Either way other users cannot access it.
QString memoryFilePath();

/// Maps the shared memory into this process for the lifetime of this object. The file is not
/// removed, so that a side that is killed and restarted finds the other one again.
class MemoryFile
{
public:
    /// Creates or resizes the file and maps it. Its blocks are allocated up front, so that later
    /// writes cannot fail. By the host.
    bool create(const QString &path);
    /// Maps an existing file of full size that only this user can access. By the game.
    bool attach(const QString &path);
    /// Why the last create or attach failed.
    QString errorString() const { return m_refusal.isEmpty() ? m_file.errorString() : m_refusal; }

    /// Null until create or attach has returned true.
    SharedMemory *memory() const { return m_memory; }

private:
    bool fill();
    bool map();

    QFile m_file;
    QString m_refusal; ///< why the file could not be opened
    SharedMemory *m_memory = nullptr;
};
