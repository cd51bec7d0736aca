#pragma once

#include "recorder.h"
#include "showlog.h"

#include <QObject>

#include <optional>

class Host;

/// Keeps what happens at a host: the list of events always, and everything in a recording when it
/// is asked to.
class ShowKeeper : public QObject
{
    Q_OBJECT

public:
    /// Made before the host starts, which must outlive it.
    explicit ShowKeeper(Host &host, QObject *parent = nullptr);

    /// Begins a recording with what the zones show now. False when the file cannot be written.
    bool startRecording(const QString &path);
    /// Completes the recording, if there is one. False when any of it could not be written.
    bool stopRecording();
    bool isRecording() const { return m_recorder.isOpen(); }
    /// Whether part of the recording could not be written, as on a full disk.
    bool hasFailed() const { return m_recorder.hasFailed(); }
    /// Why startRecording or stopRecording failed.
    QString errorString() const { return m_recorder.errorString(); }
    /// The file of the last recording.
    QString recordingFile() const { return m_recorder.path(); }
    /// The frame that a zone, counted from 0, shows now; null before its first.
    const Frame *shown(int zone) const
    {
        const auto &frame = m_shown.at(std::size_t(zone));
        return frame ? &*frame : nullptr;
    }

    /// The report of all events so far; see ShowLog.
    QByteArray report() const { return m_log.report(); }

private:
    void keep(const Event &event);
    void keep(int zone, const Frame &frame);

    const Host *m_host;
    ShowLog m_log;
    Recorder m_recorder;
    std::optional<Event> m_session; ///< how the open session began
    std::array<std::optional<Frame>, maxZones> m_shown; ///< the last frame of each zone
};
