#pragma once

#include "memoryfile.h"

#include <QCoreApplication>
#include <QFile>

/// A rehearsal with a unique name, so that tests and users do not interfere; its files are removed
/// at the end.
class RehearsalName
{
public:
    RehearsalName()
    {
        static int count = 0;
        qputenv(rehearsalVariable,
            "test-" + QByteArray::number(QCoreApplication::applicationPid()) + '-'
                + QByteArray::number(++count));
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
