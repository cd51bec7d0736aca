#pragma once

#include "settingswriter.h"

#include <QSettings>

#include <memory>

/// A settings file whose changes are written by a SettingsWriter, where QSettings would write them
/// on this thread and wait for the disk. Each UpdateRequest, with which QSettings asks itself for a
/// sync, gives the writer the current values. QSettings sends one only for its first change,
/// because it waits for that sync; settings::write() sends one for every change. GUI thread.
class SettingsStore : public QSettings
{
public:
    /// Opens an INI file that `write` writes.
    SettingsStore(const QString &fileName, SettingsWriter::Write write,
        std::chrono::milliseconds rest = SettingsWriter::usualRest);

    /// Writes pending changes and deletes the store, on the writer's thread. Waits at most
    /// SettingsWriter::longestEnd for that. If the file cannot be written, the store is not
    /// deleted.
    static void close(SettingsStore *store);

protected:
    bool event(QEvent *event) override;

private:
    void giveToWriter();

    QVariantMap m_given; ///< to the writer, or read from the file
    std::shared_ptr<SettingsWriter> m_writer;
    SettingsStore *m_keptBefore = nullptr; ///< links the stores that are never deleted
};
