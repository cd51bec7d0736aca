#include "showkeeper.h"

#include "host.h"

ShowKeeper::ShowKeeper(Host &host, QObject *parent)
    : QObject(parent)
    , m_host(&host)
{
    connect(&host, &Host::happened, this, qOverload<const Event &>(&ShowKeeper::keep));
    connect(&host, &Host::frameReceived, this, qOverload<int, const Frame &>(&ShowKeeper::keep));
    connect(&host, &Host::received, this, [this] { m_recorder.flush(); });
}

bool ShowKeeper::startRecording(const QString &path)
{
    if (!m_recorder.open(path))
        return false;
    const SharedTime started = m_host->startTime();
    if (started == 0)
        return true; // all that is to be recorded is still to come
    const SharedTime now = sharedNow();
    m_recorder.begin(started);
    if (m_session)
        m_recorder.write(Event{Event::SessionOpened, now, m_session->process});
    for (int zone = 0; zone < maxZones; ++zone) {
        if (const auto &frame = m_shown.at(std::size_t(zone)))
            m_recorder.write(zone, {.missed = 0, .sentAt = now, .points = frame->points});
    }
    if (m_host->isOutputOn())
        m_recorder.write(Event{Event::OutputEnabled, now});
    return true;
}

bool ShowKeeper::stopRecording()
{
    return m_recorder.finish();
}

void ShowKeeper::keep(const Event &event)
{
    if (event.kind == Event::HostStarted) {
        m_log = ShowLog(event.at);
        m_recorder.begin(event.at);
    }
    if (event.kind == Event::SessionOpened)
        m_session = event;
    else if (event.kind == Event::SessionClosed || event.kind == Event::GameGone)
        m_session.reset();
    m_log.note(event);
    m_recorder.write(event);
}

void ShowKeeper::keep(int zone, const Frame &frame)
{
    m_log.note(zone, frame);
    m_recorder.write(zone, frame);
    m_shown.at(std::size_t(zone)) = frame;
}
