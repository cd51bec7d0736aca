#include "settingsstore.h"

#include "settingsfile.h"

#include <QEvent>

#include <atomic>
#include <utility>

namespace {

/// The last of the stores that must not be deleted.
constinit std::atomic<SettingsStore *> lastKept = nullptr;

} // namespace

SettingsStore::SettingsStore(
    const QString &fileName, SettingsWriter::Write write, std::chrono::milliseconds rest)
    : QSettings(fileName, QSettings::IniFormat)
    , m_given(settingsfile::valuesOf(*this))
    , m_writer(std::make_shared<SettingsWriter>(std::move(write), rest))
{
}

void SettingsStore::close(SettingsStore *store)
{
    store->giveToWriter();
    // The destructor of QSettings writes the changes once more, by itself. So it runs on the
    // writer's thread, because a disk that hangs would hold this one and leave the laser lit; and
    // not at all after a write that failed, because QSettings does not notice when a nearly full
    // disk truncates the file that replaces the old one.
    const std::shared_ptr<SettingsWriter> writer = store->m_writer;
    store->moveToThread(nullptr);
    writer->end([store](bool isWritten) {
        if (isWritten)
            delete store;
        else // in a list, so that no leak checker takes it for lost
            store->m_keptBefore = lastKept.exchange(store);
    });
}

bool SettingsStore::event(QEvent *event)
{
    if (event->type() != QEvent::UpdateRequest)
        return QSettings::event(event);
    giveToWriter();
    return true;
}

void SettingsStore::giveToWriter()
{
    const QVariantMap values = settingsfile::valuesOf(*this);
    if (values == m_given)
        return;
    m_given = values;
    m_writer->put(values);
}
