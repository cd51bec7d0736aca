#pragma once

#include "ilda.h"

#include <QObject>
#include <QThread>

#include <memory>

/// Writes a recording as ILDA files on a thread of its own: the host gives signs of life
/// meanwhile. See exportIlda. All functions are for one thread.
class IldaExport : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    /// Waits until it is done.
    ~IldaExport() override;

    /// Called again only when it is not running.
    void start(const Recording &recording, int zone, ColorOrder order, const QString &path);
    bool isRunning() const { return m_thread != nullptr; }

signals:
    /// The files that were written, or why there are none.
    void finished(const QStringList &files, const QString &problem);

private:
    std::unique_ptr<QThread> m_thread;
    QStringList m_files;
    QString m_problem;
};
