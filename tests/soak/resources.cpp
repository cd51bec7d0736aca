#include "resources.h"

#include <QDir>
#include <QFile>

#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

int entriesOf(const QString &folder)
{
    return int(
        QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
}

long residentPages()
{
    QFile file(u"/proc/self/statm"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLong() : 0;
}

} // namespace

Resources Resources::now()
{
    return {
        .heap = long(mallinfo2().uordblks),
        .resident = residentPages() * sysconf(_SC_PAGESIZE),
        .threads = entriesOf(u"/proc/self/task"_s),
        .handles = entriesOf(u"/proc/self/fd"_s),
    };
}

QString Resources::text() const
{
    return u"%1 KiB allocated, %2 KiB resident, %3 threads, %4 handles"_s.arg(heap / 1024)
        .arg(resident / 1024)
        .arg(threads)
        .arg(handles);
}
