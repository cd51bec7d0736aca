#pragma once

#include <QString>

/// This process's resources.
struct Resources
{
    long heap; ///< allocated bytes; 0 under a sanitizer
    long resident; ///< bytes
    int threads;
    int handles; ///< open files

    static Resources now();
    QString text() const;
};
