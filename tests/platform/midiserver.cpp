#include "midiserver.h"

#include <jack/jack.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <unistd.h>

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

void endWithThisProcess(QProcess &process)
{
    process.setChildProcessModifier([parent = getpid()] {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent) // the parent has exited in between
            _exit(EXIT_FAILURE);
    });
}

MidiServer::MidiServer()
{
    const QFileInfo sequencer(u"/dev/snd/seq"_s);
    if (sequencer.isReadable() && sequencer.isWritable()) {
        api = u"alsa"_s;
        return;
    }
    api = u"jack"_s;
#ifdef __SANITIZE_THREAD__
    problem = u"The thread sanitizer ends processes that have used JACK."_s;
    return;
#endif
    const QString jackd = QStandardPaths::findExecutable(u"jackd"_s);
    if (jackd.isEmpty()) {
        problem = u"There is neither an ALSA sequencer nor jackd (package jackd2)."_s;
        return;
    }
    m_name = u"rallyvane-%1"_s.arg(QCoreApplication::applicationPid());
    qputenv("JACK_DEFAULT_SERVER", m_name.toLatin1());
    m_jackd.setProcessChannelMode(QProcess::MergedChannels);
    endWithThisProcess(m_jackd);
    // jackd waits up to half a second for late clients, so that a busy machine loses no message.
    m_jackd.start(jackd, {u"-r"_s, u"-S"_s, u"-n"_s, m_name, u"-d"_s, u"dummy"_s});
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
    if (m_jackd.state() == QProcess::NotRunning)
        return;
    m_jackd.terminate();
    if (!m_jackd.waitForFinished(patience))
        m_jackd.kill();
    // This process's clients outlive the server and would leave their semaphores behind.
    const QDir sharedMemory(u"/dev/shm"_s);
    for (const QString &file :
        sharedMemory.entryList({u"jack*"_s + m_name + u'*'}, QDir::System | QDir::Files))
        QFile::remove(sharedMemory.filePath(file));
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
