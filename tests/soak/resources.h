#pragma once

#include <QString>

/// A process's resources. Under a sanitizer, which keeps freed memory, both memory figures are 0.
struct Resources
{
    long heap; ///< allocated bytes; 0 for another process
    long resident; ///< bytes
    int threads;
    int handles; ///< open files

    /// Those of this process.
    static Resources now();
    static Resources of(qint64 process);
    QString text() const;
};
