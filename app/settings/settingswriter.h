#pragma once

#include <QString>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <memory>

class QThread;

/// Writes changed settings to their file on a thread of its own, so that no other thread waits for
/// the disk. Changes are held back for a short rest, so that a drag of a slider does not write at
/// each step. A failed write is logged once, and tried again with the next change and at the end.
/// One thread.
class SettingsWriter
{
public:
    /// Makes these values the content of the file and returns an empty text, or leaves it unchanged
    /// and returns the reason. Called on the writer's thread.
    using Write = std::function<QString(const QVariantMap &values)>;

    /// From the first change to the write: short enough that a crash hardly costs a setting.
    static constexpr std::chrono::milliseconds usualRest{200};
    /// The longest time that end() waits for the disk, because the laser is still lit then.
    static constexpr std::chrono::milliseconds longestEnd{300};

    explicit SettingsWriter(Write write, std::chrono::milliseconds rest = usualRest);
    /// Ends the thread, unless end() was called before.
    ~SettingsWriter();
    SettingsWriter(const SettingsWriter &) = delete;
    SettingsWriter &operator=(const SettingsWriter &) = delete;

    /// Writes all values of the file, after the rest that the first pending change began.
    void put(const QVariantMap &values);
    /// Writes at once what is pending or has failed and then calls `lastly` on the writer's thread,
    /// which ends, with whether all is written. If this takes longer than `longestEnd`, the
    /// application's destructor waits for the rest. Call it once.
    void end(std::function<void(bool isWritten)> lastly = {});

private:
    class Work;
    std::shared_ptr<Work> m_work; ///< shared with the thread, which a hanging disk may hold
    std::unique_ptr<QThread> m_thread;
};
