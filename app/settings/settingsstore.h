#pragma once

#include "settingswriter.h"

#include <memory>

/// The settings in memory. Reading and changing them never waits for the disk; a SettingsWriter
/// brings changes to the file. GUI thread.
class SettingsStore
{
public:
    /// Settings whose changes are lost at the end.
    explicit SettingsStore(IniValues values);
    /// Settings of a file that `replace` writes.
    SettingsStore(IniValues values, SettingsWriter::Replace replace,
        std::chrono::milliseconds rest = SettingsWriter::usualRest);

    /// Returns the value of a key, or `fallback` if there is none. Like QSettings on Windows, finds
    /// a key that is spelled in another case.
    QVariant value(const QString &key, const QVariant &fallback = {}) const;
    /// Changes a value, and the file soon afterwards.
    void setValue(const QString &key, const QVariant &value);
    const IniValues &values() const { return m_values; }

    /// Begins to write pending changes, without waiting.
    void startWriting();
    /// Writes pending changes and waits for that; false if the disk takes longer than `longest`.
    bool flush(std::chrono::milliseconds longest = std::chrono::seconds(30));

private:
    IniValues::const_iterator find(const QString &key) const;

    IniValues m_values;
    std::unique_ptr<SettingsWriter> m_writer;
};
