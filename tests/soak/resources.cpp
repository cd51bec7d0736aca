#include "resources.h"

#include <QDir>
#include <QFile>

#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

int entriesOf(const QString &folder)
{
    return int(
        QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
}

long residentPages(const QString &folder)
{
    QFile file(folder + u"statm"_s);
    return !isSanitized && file.open(QIODevice::ReadOnly)
        ? file.readAll().split(' ').value(1).toLong()
        : 0;
}

} // namespace

Resources Resources::now()
{
    Resources resources = of(getpid());
    resources.heap = isSanitized ? 0 : long(mallinfo2().uordblks);
    return resources;
}

Resources Resources::of(qint64 process)
{
    const QString folder = u"/proc/%1/"_s.arg(process);
    return {
        .heap = 0,
        .resident = residentPages(folder) * sysconf(_SC_PAGESIZE),
        .threads = entriesOf(folder + u"task"_s),
        .handles = entriesOf(folder + u"fd"_s),
    };
}

QString Resources::text() const
{
    return u"%1 KiB allocated, %2 KiB resident, %3 threads, %4 handles"_s.arg(heap / 1024)
        .arg(resident / 1024)
        .arg(threads)
        .arg(handles);
}
