#include "foundfile.h"

#include "settingsfile.h"
#include "typedvalues.h"

#include <QFile>

namespace {

/// Thirty times what the program writes. A longer file would hold up the start and each change.
constexpr qsizetype largestFile = 65'536;

} // namespace

FoundFile::FoundFile(QIODevice &file)
    : m_beginning(file.isOpen() ? file.read(largestFile + 1) : QByteArray())
    , m_isTooLong(m_beginning.size() > largestFile)
{
    if (m_isTooLong)
        m_beginning.truncate(m_beginning.lastIndexOf('\n') + 1);
    m_safeText = withoutTypedValues(m_beginning);
}

bool FoundFile::makeSafe()
{
    if (!m_isTooLong && m_safeText == m_beginning)
        return true;
    if (!keep())
        return false;
    if (settingsfile::replace(name, m_safeText).isEmpty())
        return true;
    if (m_isTooLong)
        QFile::rename(copyName, name);
    return false;
}

bool FoundFile::keep()
{
    if (m_isKept)
        return true;
    if (m_isTooLong) { // too long to be copied
        QFile::remove(copyName);
        m_isKept = QFile::rename(name, copyName);
    } else {
        m_isKept = settingsfile::replace(copyName, m_beginning).isEmpty();
    }
    return m_isKept;
}
