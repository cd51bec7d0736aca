#include "memoryfile.h"

#include "privatefile.h"

#include <QByteArray>
#include <QDir>

#include <algorithm>

namespace {

constexpr qint64 memorySize = sizeof(SharedMemory);

bool isPlain(QChar character)
{
    return (character.unicode() < 0x80 && character.isLetterOrNumber()) || character == u'.'
        || character == u'-' || character == u'_';
}

} // namespace

QString memoryFilePath()
{
    const QString name = qEnvironmentVariable(rehearsalVariable, QStringLiteral("default"));
    if (name.isEmpty() || !std::all_of(name.cbegin(), name.cend(), isPlain))
        return {};
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR", QDir::tempPath());
    return QDir(folder).filePath(QStringLiteral("rallyvane-rehearsal-") + name);
}

bool MemoryFile::create(const QString &path)
{
    m_file.close();
    m_refusal = privatefile::create(m_file, path);
    return m_refusal.isEmpty() && fill() && map();
}

bool MemoryFile::attach(const QString &path)
{
    if (path.isEmpty())
        return false;
    m_file.close();
    m_refusal = privatefile::open(m_file, path);
    return m_refusal.isEmpty() && m_file.size() >= memorySize && map();
}

bool MemoryFile::fill()
{
    const QByteArray zeros(1 << 20, '\0');
    if (!m_file.seek(m_file.size()))
        return false;
    for (qint64 missing = memorySize - m_file.size(); missing > 0;) {
        const qint64 written = m_file.write(zeros.constData(), std::min(missing, zeros.size()));
        if (written <= 0)
            return false;
        missing -= written;
    }
    return true;
}

bool MemoryFile::map()
{
    m_memory = reinterpret_cast<SharedMemory *>(m_file.map(0, memorySize));
    return m_memory != nullptr;
}
