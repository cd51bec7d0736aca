#include "midiserver.h"

#include <jack/jack.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 10000; // milliseconds

bool serverAnswers()
{
    const auto silence = [](const char *) {};
    jack_set_error_function(silence);
    jack_set_info_function(silence);
    jack_client_t *client = jack_client_open("Are you there?", JackNoStartServer, nullptr);
    if (client)
        jack_client_close(client);
    return client != nullptr;
}

} // namespace

MidiServer::MidiServer()
{
    const QFileInfo sequencer(u"/dev/snd/seq"_s);
    if (sequencer.isReadable() && sequencer.isWritable()) {
        api = u"alsa"_s;
        return;
    }
    api = u"jack"_s;
    const QString jackd = QStandardPaths::findExecutable(u"jackd"_s);
    if (jackd.isEmpty()) {
        problem = u"There is neither an ALSA sequencer nor jackd (package jackd2)."_s;
        return;
    }
    const QString name = u"rallyvane-%1"_s.arg(QCoreApplication::applicationPid());
    qputenv("JACK_DEFAULT_SERVER", name.toLatin1());
    m_jackd.setProcessChannelMode(QProcess::MergedChannels);
    m_jackd.start(jackd, {u"-r"_s, u"-n"_s, name, u"-d"_s, u"dummy"_s, u"-p"_s, u"128"_s});
    m_jackd.waitForStarted();
    const QDeadlineTimer deadline(patience);
    while (m_jackd.state() == QProcess::Running && !deadline.hasExpired()) {
        if (serverAnswers())
            return;
        m_jackd.waitForFinished(20);
    }
    problem = u"jackd does not run: "_s + QString::fromLocal8Bit(m_jackd.readAll());
}

MidiServer::~MidiServer()
{
    m_jackd.terminate();
    if (!m_jackd.waitForFinished(patience))
        m_jackd.kill();
}

MidiSender::MidiSender(const MidiServer &server, const QString &name)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationDirPath() + u"/midisender"_s, {server.api, name});
    m_ready = answers("ready\n");
}

MidiSender::~MidiSender()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(patience))
        kill();
}

bool MidiSender::send(const QByteArray &hexBytes)
{
    m_process.write(hexBytes + '\n');
    return answers("sent\n");
}

void MidiSender::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

bool MidiSender::answers(const QByteArray &expected)
{
    const QDeadlineTimer deadline(patience);
    while (!m_process.canReadLine() && !deadline.hasExpired()
        && m_process.state() != QProcess::NotRunning)
        m_process.waitForReadyRead(100);
    return m_process.readLine() == expected;
}
