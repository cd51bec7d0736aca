#pragma once

#include "layout.h"

#include <QFile>
#include <QString>

/// The environment variable that names the rehearsal, so that several can run side by side.
inline constexpr char rehearsalVariable[] = "RALLYVANE_REHEARSAL";

/// The file behind the shared memory of the rehearsal that the environment names; empty when the
/// name has other characters than letters, digits, '.', '-' and '_'.
///
/// It lies in the user's runtime folder where the system has one (in memory, gone with the
/// session) and else in the folder for temporary files.
QString memoryFilePath();

/// The shared memory in this process, for as long as this object lives. The file stays: whoever
/// is killed and comes back finds the other side where it was.
class MemoryFile
{
public:
    /// Makes the file, or a file of something else, one of ours in size, and maps it. The room is
    /// really taken, so that writing to it later cannot fail. By the host.
    bool create(const QString &path);
    /// Maps a file that is there already in its full size. By the game.
    bool attach(const QString &path);
    /// Why the last create or attach failed.
    QString errorString() const { return m_file.errorString(); }

    /// Null until create or attach has returned true.
    SharedMemory *memory() const { return m_memory; }

private:
    bool fill();
    bool map();

    QFile m_file;
    SharedMemory *m_memory = nullptr;
};
