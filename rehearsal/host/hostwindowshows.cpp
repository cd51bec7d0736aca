// The shows of the window: the live one, which can be recorded, and a recording in its place.

#include "host.h"
#include "hostwindow.h"
#include "playbackbar.h"
#include "showkeeper.h"
#include "showplayer.h"

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr SharedTime second = 1'000'000'000;

/// Puts the last second of each zone before the present moment into a reception.
void addLastSecond(Recording &recording, const Playback &playback, Reception &to)
{
    for (int zone = 0; zone < maxZones; ++zone) {
        const std::vector<qsizetype> &frames = recording.framesOf(zone);
        const auto end = std::ranges::lower_bound(frames, playback.passed());
        auto first = end;
        // And the one before, which the zone showed in the meantime.
        while (first != frames.begin()
            && (first == end || recording.entry(*first).at > playback.position() - second))
            --first;
        for (; first != end; ++first) {
            const Frame &frame = recording.frame(*first);
            to.add(zone, frame, std::min(frame.sentAt, playback.position()));
        }
    }
}

/// The zones of a recording that have frames, from 0.
QList<int> zonesOf(const Recording &recording)
{
    QList<int> zones;
    for (int zone = 0; zone < maxZones; ++zone) {
        if (!recording.framesOf(zone).empty())
            zones.append(zone);
    }
    return zones;
}

} // namespace

void HostWindow::connectShows()
{
    m_refreshing.setTimerType(Qt::PreciseTimer);
    m_refreshing.setInterval(16ms);
    connect(&m_refreshing, &QTimer::timeout, this, &HostWindow::refresh);
    connect(m_actions.record, &QAction::triggered, this, &HostWindow::record);
    connect(m_actions.openRecording, &QAction::triggered, this, &HostWindow::chooseRecording);
    connect(m_actions.exportIlda, &QAction::triggered, this, &HostWindow::chooseExport);
    connect(m_actions.backToLive, &QAction::triggered, this, &HostWindow::backToLive);
    connect(m_actions.play, &QAction::triggered, this, &HostWindow::playOrPause);
    connect(m_actions.nextFrame, &QAction::triggered, this, [this] { stepFrame(1); });
    connect(m_actions.previousFrame, &QAction::triggered, this, [this] { stepFrame(-1); });
    connect(m_actions.laterMoment, &QAction::triggered, this, [this] { leap(10 * second); });
    connect(m_actions.earlierMoment, &QAction::triggered, this, [this] { leap(-10 * second); });
    connect(m_actions.faster, &QAction::triggered, this, [this] { m_playback->changeSpeed(1); });
    connect(m_actions.slower, &QAction::triggered, this, [this] { m_playback->changeSpeed(-1); });
    connect(m_playback, &PlaybackBar::moved, this, [this](SharedTime sinceStart) {
        if (m_player)
            m_player->seek(m_player->playback()->start() + sinceStart);
    });
    connect(m_playback, &PlaybackBar::speedChanged, this, [this](double speed) {
        if (m_player)
            m_player->setSpeed(speed);
    });
    connect(&m_export, &IldaExport::finished, this,
        [this](const QStringList &files, const QString &problem) {
            m_actions.exportIlda->setEnabled(m_player != nullptr);
            if (files.isEmpty())
                warn(problem);
        });
}

bool HostWindow::openRecording(const QString &path)
{
    auto player = std::make_unique<ShowPlayer>();
    if (!player->open(path))
        warn(player->problem());
    if (player->recording().size() == 0)
        return false;
    m_actions.hold->setChecked(false);
    m_player = std::move(player);
    m_recordingName = QFileInfo(path).fileName();
    connect(m_player.get(), &ShowPlayer::frameReceived, this, &HostWindow::takePlayed);
    connect(m_player.get(), &ShowPlayer::outputSwitched, this, [this](bool on) {
        m_played.outputSince = m_player->playback()->position();
        showOutput(on);
    });
    connect(m_player.get(), &ShowPlayer::leapt, this, &HostWindow::showMoment);
    connect(m_player.get(), &ShowPlayer::received, this, &HostWindow::showPlayback);
    m_playback->setSpeed(1);
    showSource();
    showOutput(m_player->playback()->isOutputOn());
    m_player->seek(m_player->playback()->start());
    m_refreshing.start();
    return true;
}

void HostWindow::backToLive()
{
    m_actions.hold->setChecked(false);
    m_refreshing.stop();
    m_player.reset();
    showSource();
    showOutput(m_host.isOutputOn());
    for (int zone = 0; zone < maxZones; ++zone) {
        const Frame *frame = m_keeper.shown(zone);
        m_zones[std::size_t(zone)]->takeFrame(
            frame ? frame->points : std::vector<LdbPoint>(), sharedNow());
    }
}

/// A frame that has passed, at the moment on the screen that belongs to its time in the show.
void HostWindow::takePlayed(int zone, const Frame &frame)
{
    const Playback &playback = *m_player->playback();
    const SharedTime sentAt = std::clamp(frame.sentAt, playback.start(), playback.position());
    m_played.add(zone, frame, sentAt);
    constexpr double longestAgo = 0.1 * second;
    const double ago = playback.isPaused()
        ? 0
        : std::min(double(playback.position() - sentAt) / playback.speed(), longestAgo);
    m_zones[std::size_t(zone)]->takeFrame(frame.points, sharedNow() - static_cast<SharedTime>(ago));
}

/// Figures as if the show had been played up to this moment.
void HostWindow::showMoment()
{
    m_played = {};
    m_played.outputSince = m_player->playback()->position();
    addLastSecond(m_player->recording(), *m_player->playback(), m_played);
}

void HostWindow::showPlayback()
{
    m_actions.play->setChecked(!m_player->playback()->isPaused());
    m_playback->follow(*m_player->playback());
}

/// Which show it is that the window shows.
void HostWindow::showSource()
{
    const bool isPlayback = m_player != nullptr;
    for (QAction *action : m_actions.ofPlayback())
        action->setEnabled(isPlayback);
    m_actions.exportIlda->setEnabled(isPlayback && !m_export.isRunning());
    m_actions.backToLive->setEnabled(isPlayback && m_host.isRunning());
    m_playback->setVisible(isPlayback);
    showHost();
    showRecording();
}

int HostWindow::zoneCount() const
{
    if (!m_player)
        return m_host.info().zoneCount;
    const QList<int> zones = zonesOf(m_player->recording());
    return zones.isEmpty() ? 1 : zones.last() + 1;
}

void HostWindow::playOrPause(bool play)
{
    m_actions.hold->setChecked(false);
    if (play)
        m_player->play();
    else
        m_player->pause();
}

void HostWindow::stepFrame(int direction)
{
    m_actions.hold->setChecked(false);
    m_player->step(direction);
}

void HostWindow::leap(SharedTime way)
{
    m_player->seek(m_player->playback()->position() + way);
}

void HostWindow::chooseRecording()
{
    const QString file = QFileDialog::getOpenFileName(
        this, tr("Open Recording"), {}, tr("Recordings (*.rec);;All files (*)"));
    if (!file.isEmpty())
        openRecording(file);
}

void HostWindow::record(bool on)
{
    if (on) {
        const QString file = QFileDialog::getSaveFileName(
            this, tr("Record"), QStringLiteral("rehearsal.rec"), tr("Recordings (*.rec)"));
        if (!file.isEmpty()) {
            if (m_keeper.startRecording(file))
                m_sinceRecording.start();
            else
                warn(tr("Cannot record in \"%1\": %2").arg(file, m_keeper.errorString()));
        }
    } else if (!m_keeper.stopRecording()) {
        warn(tr("The recording \"%1\" is not complete: %2")
                 .arg(m_keeper.recordingFile(), m_keeper.errorString()));
    }
    showRecording();
}

/// On a full disk, say; what is in the file until then can be played.
void HostWindow::noticeFailedRecording()
{
    if (m_keeper.isRecording() && m_keeper.hasFailed())
        record(false);
}

/// Whether it records: on the button, with the time, and in the title for when it is hidden.
void HostWindow::showRecording()
{
    const bool records = m_keeper.isRecording();
    if (records && !m_sinceRecording.isValid())
        m_sinceRecording.start(); // since the program's start
    else if (!records)
        m_sinceRecording.invalidate();
    m_actions.record->setChecked(records);
    const qint64 seconds = records ? m_sinceRecording.elapsed() / 1000 : 0;
    m_actions.record->setIconText(records
            ? tr("Recording %1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'))
            : tr("Record"));
    const QString show =
        m_player ? tr("%1 – Rehearsal host").arg(m_recordingName) : tr("Rehearsal host");
    setWindowTitle(records ? tr("\u25cf %1").arg(show) : show);
}

void HostWindow::chooseExport()
{
    const QList<int> zones = zonesOf(m_player->recording());
    if (zones.isEmpty()) {
        warn(tr("The recording has no frames."));
        return;
    }
    int zone = zones.first();
    if (zones.size() > 1) {
        QStringList names;
        for (const int number : zones)
            names.append(tr("Zone %1").arg(number + 1));
        bool chosen = false;
        const QString name = QInputDialog::getItem(this, tr("Export ILDA"), tr("Zone:"), names,
            static_cast<int>(std::max(zones.indexOf(m_chosen), qsizetype(0))), false, &chosen);
        if (!chosen)
            return;
        zone = zones.at(names.indexOf(name));
    }
    const QString file = QFileDialog::getSaveFileName(
        this, tr("Export ILDA"), QStringLiteral("rehearsal.ild"), tr("ILDA files (*.ild)"));
    if (file.isEmpty())
        return;
    m_actions.exportIlda->setEnabled(false);
    m_export.start(m_player->recording(), zone,
        m_actions.swappedColors->isChecked() ? ColorOrder::BlueGreenRed : ColorOrder::RedGreenBlue,
        file);
}

void HostWindow::warn(const QString &text)
{
    auto *box =
        new QMessageBox(QMessageBox::Warning, tr("Rehearsal host"), text, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}
