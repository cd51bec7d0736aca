#include "ildaexport.h"

IldaExport::~IldaExport()
{
    if (m_thread)
        m_thread->wait();
}

void IldaExport::start(const Recording &recording, int zone, ColorOrder order, const QString &path)
{
    m_problem.clear();
    m_thread.reset(QThread::create([this, copy = recording, zone, order, path]() mutable {
        m_files = exportIlda(copy, zone, order, path, m_problem);
    }));
    connect(m_thread.get(), &QThread::finished, this, [this] {
        m_thread->wait();
        m_thread.reset();
        emit finished(m_files, m_problem);
    });
    m_thread->start();
}
