#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

/// An empty folder that is the working directory during its lifetime. GUI thread.
class WorkingFolder
{
public:
    WorkingFolder()
        : m_previous(QDir::currentPath())
    {
        QVERIFY(m_folder.isValid() && QDir::setCurrent(m_folder.path()));
    }
    ~WorkingFolder() { QDir::setCurrent(m_previous); }
    Q_DISABLE_COPY_MOVE(WorkingFolder)

    QString path() const { return m_folder.path(); }
    QString filePath(const QString &name) const { return m_folder.filePath(name); }

    /// The names of the files in the working directory, sorted.
    static QStringList files() { return QDir().entryList(QDir::Files | QDir::Hidden, QDir::Name); }

    static void write(const QString &name, const QByteArray &content)
    {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }

private:
    QTemporaryDir m_folder;
    QString m_previous;
};
