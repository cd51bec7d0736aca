#include "debuglog.h"

#include <QDateTime>
#include <QFile>
#include <QObject>

#include <atomic>

using namespace Qt::StringLiterals;

/// Owns the file. Lives on the log thread.
class DebugLogWriter : public QObject
{
public:
    DebugLogWriter(const QString &fileName, qint64 maxSize)
        : m_file(fileName)
        , m_maxSize(maxSize)
    {
    }

    void write(const QByteArray &line)
    {
        if (!m_file.isOpen())
            m_file.open(QIODevice::Append);
        if (m_file.isOpen() && m_file.size() > 0 && m_file.size() + line.size() > m_maxSize)
            turnOver();
        if (!m_file.isOpen()) // writing would make Qt warn once per line
            return;
        m_file.write(line);
        m_file.flush();
    }

private:
    void turnOver()
    {
        m_file.close();
        const QString name = m_file.fileName();
        const QString older = name + ".1"_L1;
        QFile::remove(older);
        QFile::rename(name, older);
        // If the rename failed, truncate: the log must not grow without bound.
        m_file.open(QIODevice::WriteOnly);
    }

    QFile m_file;
    qint64 m_maxSize;
};

namespace {

std::atomic<DebugLogWriter *> currentWriter = nullptr;
QtMessageHandler previousHandler = nullptr;

QString threadName()
{
    const QThread *thread = QThread::currentThread();
    const QString name = thread->objectName();
    return name.isEmpty() ? QString::number(quintptr(QThread::currentThreadId()), 16) : name;
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    DebugLogWriter *writer = currentWriter;
    if (!writer || writer->thread() == QThread::currentThread()) {
        previousHandler(type, context, message);
        return;
    }
    const QString line = u"%1 [%2] %3\n"_s.arg(
        QDateTime::currentDateTime().toString(Qt::ISODateWithMs), threadName(), message);
    QMetaObject::invokeMethod(writer, [writer, type, message, text = line.toUtf8()] {
        previousHandler(type, QMessageLogContext(), message);
        writer->write(text);
    });
    if (type == QtFatalMsg) // the process ends when this returns
        DebugLog::flush();
}

} // namespace

DebugLog::DebugLog(const QString &fileName, qint64 maxSize)
    : m_writer(std::make_unique<DebugLogWriter>(fileName, maxSize))
{
    m_thread.setObjectName("log");
    m_writer->moveToThread(&m_thread);
    m_thread.start();
    if (QThread::currentThread()->objectName().isEmpty())
        QThread::currentThread()->setObjectName("main");
    previousHandler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(previousHandler);
    currentWriter = m_writer.get();
    qInstallMessageHandler(handleMessage);
}

DebugLog::~DebugLog()
{
    qInstallMessageHandler(previousHandler);
    flush();
    currentWriter = nullptr;
    m_thread.quit();
    m_thread.wait();
}

void DebugLog::flush()
{
    if (DebugLogWriter *writer = currentWriter)
        QMetaObject::invokeMethod(
            writer, [] {}, Qt::BlockingQueuedConnection);
}
