#pragma once

#include "memoryfile.h"

#include <QFile>
#include <QRandomGenerator>

/// A rehearsal with a unique name, so that tests and users do not interfere; its files are removed
/// at the end.
class RehearsalName
{
public:
    RehearsalName()
    {
        // No process id: Wine leaves the file of an earlier test and gives its id out again.
        qputenv(rehearsalVariable,
            "test-" + QByteArray::number(QRandomGenerator::system()->generate64(), 36));
        m_path = memoryFilePath();
    }
    ~RehearsalName()
    {
        QFile::remove(m_path);
        QFile::remove(m_path + QStringLiteral(".lock"));
        qunsetenv(rehearsalVariable);
    }
    RehearsalName(const RehearsalName &) = delete;
    RehearsalName &operator=(const RehearsalName &) = delete;

    QString path() const { return m_path; }

private:
    QString m_path;
};
