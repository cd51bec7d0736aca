#pragma once

#include "initext.h"

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

/// Writes changed settings to their file on a thread of its own, so that no other thread waits for
/// the disk. Changes are held back for a short rest, so that a drag of a slider does not write at
/// each step. A failed write is logged once, and tried again with the next change and at the end.
/// One thread.
class SettingsWriter
{
public:
    /// Replaces the file's content as a whole and returns an empty text, or leaves it unchanged and
    /// returns the reason. Called on the writer's thread.
    using Replace = std::function<QString(const QByteArray &text)>;

    /// From the first change to the write: short enough that a crash hardly costs a setting.
    static constexpr std::chrono::milliseconds usualRest{200};
    /// The longest time that the destructor waits for the disk.
    static constexpr std::chrono::milliseconds longestEnd{300};

    /// `values` are those of the file.
    SettingsWriter(IniValues values, Replace replace, std::chrono::milliseconds rest = usualRest);
    /// Writes the pending changes now. A write that takes longer than `longestEnd` is left to
    /// finish by itself.
    ~SettingsWriter();
    SettingsWriter(const SettingsWriter &) = delete;
    SettingsWriter &operator=(const SettingsWriter &) = delete;

    /// Writes a changed value after the rest that the first pending change began.
    void put(const QString &key, const QVariant &value);
    /// Begins to write what is pending, or failed, without a rest and without waiting.
    void startWriting();
    /// The same, and waits for it. Returns false if it takes longer than that.
    bool flush(std::chrono::milliseconds longest);

private:
    class Work;
    std::shared_ptr<Work> m_work; ///< shared with the thread, which a hanging disk may hold
    std::thread m_thread;
};
