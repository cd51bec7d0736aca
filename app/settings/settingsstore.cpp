#include "settingsstore.h"

#include <algorithm>
#include <utility>

SettingsStore::SettingsStore(IniValues values)
    : m_values(std::move(values))
{
}

SettingsStore::SettingsStore(
    IniValues values, SettingsWriter::Replace replace, std::chrono::milliseconds rest)
    : m_values(std::move(values))
    , m_writer(std::make_unique<SettingsWriter>(m_values, std::move(replace), rest))
{
}

IniValues::const_iterator SettingsStore::find(const QString &key) const
{
    const auto exact = m_values.constFind(key);
    if (exact != m_values.cend())
        return exact;
    const auto keys = m_values.keyBegin();
    const auto similar = std::find_if(keys, m_values.keyEnd(),
        [&key](const QString &other) { return other.compare(key, Qt::CaseInsensitive) == 0; });
    return similar.base();
}

QVariant SettingsStore::value(const QString &key, const QVariant &fallback) const
{
    const auto found = find(key);
    return found == m_values.cend() ? fallback : *found;
}

void SettingsStore::setValue(const QString &key, const QVariant &value)
{
    const auto found = find(key);
    const QString spelled = found == m_values.cend() ? key : found.key();
    m_values.insert(spelled, value);
    if (m_writer)
        m_writer->put(spelled, value);
}

void SettingsStore::startWriting()
{
    if (m_writer)
        m_writer->startWriting();
}

bool SettingsStore::flush(std::chrono::milliseconds longest)
{
    return !m_writer || m_writer->flush(longest);
}
