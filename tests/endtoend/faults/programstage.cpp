#include "programstage.h"

#include <QSettings>
#include <QTest>

#include <algorithm>
#include <linux/capability.h>
#include <new>
#include <sys/prctl.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString fileName = u".pong"_s;

QMap<QString, QString> settingsAtStart()
{
    return {{u"ControlModeLeft"_s, u"KEYBOARD"_s}, {u"ControlModeRight"_s, u"KEYBOARD"_s},
        {u"KeyboardStartL"_s, u"68"_s}, {u"KeyboardUpL"_s, u"87"_s}, {u"KeyboardStartR"_s, u"76"_s},
        {u"BallSpeed"_s, u"12"_s}, {u"SensL"_s, u"600"_s}, {u"CC_00"_s, u"176"_s},
        {u"CC_01"_s, u"7"_s}, {u"CC_10"_s, u"176"_s}, {u"CC_11"_s, u"7"_s},
        {u"SomethingElse"_s, u"kept"_s}};
}

QByteArray iniText(const QMap<QString, QString> &settings)
{
    QByteArray text = "[General]\n";
    for (auto setting = settings.begin(); setting != settings.end(); ++setting)
        text += setting.key().toUtf8() + '=' + setting.value().toUtf8() + '\n';
    return text;
}

} // namespace

ProgramStage::ProgramStage(QString programs)
    : settings(settingsAtStart())
    , environment(QProcessEnvironment::systemEnvironment())
    , m_programs(std::move(programs))
    , m_seamsFile(path(u"seams"_s))
{
    if (!m_seamsFile.open(QIODevice::ReadWrite) || !m_seamsFile.resize(sizeof(Seams)))
        qFatal("There is no room for the test.");
    seams = new (m_seamsFile.map(0, sizeof(Seams))) Seams;
    seams->ready = 1;
    seams->build = 1700;
    seams->zones = 3;
    write(fileName, iniText(settings));
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.path());
    environment.insert(u"RALLYVANE_REHEARSAL"_s, u"faults"_s);
    environment.insert(u"ENDING_SERVER"_s, u"updates.example"_s);
    environment.insert(QString::fromLatin1(seamsVariable), m_seamsFile.fileName());
    m_process.setWorkingDirectory(m_folder.path());
    // Without this right, a superuser is refused what every other user is.
    m_process.setChildProcessModifier([] { prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0); });
    m_process.setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process,
        [this] { m_output += m_process.readAllStandardOutput(); });
}

ProgramStage::~ProgramStage()
{
    kill();
}

void ProgramStage::start(Library library)
{
    m_output.clear();
    m_process.setProcessEnvironment(environment);
    m_process.start(m_programs + (library == Recording ? "/recording"_L1 : "/rehearsal"_L1)
            + "/endingprogram"_L1,
        QStringList());
    ask(u"text statusLabel"_s);
}

void ProgramStage::play(Library library)
{
    start(library);
    serve();
    if (library == Recording)
        waitForFrames();
}

void ProgramStage::serve()
{
    QVERIFY(QTest::qWaitFor([this] { return hasHost(); }, patience));
    ask(u"click enableButton"_s);
    ask(u"click showButton"_s);
    ask(u"key 68"_s); // leaves the score display
    ask(u"key 68"_s);
}

QString ProgramStage::ask(const QString &command)
{
    m_output.clear();
    tell(command);
    const auto answer = [this] { return m_output.indexOf("= "); };
    const auto isAnswered = [&] { return answer() >= 0 && m_output.endsWith('\n'); };
    (void)QTest::qWaitFor([&] { return isAnswered() || !isRunning(); }, patience);
    if (!isAnswered()) {
        QTest::qFail(qPrintable("No answer: "_L1 + command), __FILE__, __LINE__);
        return {};
    }
    return QString::fromUtf8(m_output.mid(answer() + 2)).trimmed();
}

void ProgramStage::tell(const QString &command)
{
    if (m_process.state() == QProcess::Starting)
        m_process.waitForStarted();
    m_process.write(command.toUtf8() + '\n');
}

void ProgramStage::changeSpeed(int speed)
{
    settings[u"BallSpeed"_s] = QString::number(speed);
    ask("set speedSlider "_L1 + QString::number(speed));
}

bool ProgramStage::hasHost()
{
    return ask(u"text statusLabel"_s).endsWith(" Started"_L1);
}

void ProgramStage::waitForFrames(int count)
{
    const int enough = seams->framesSent + count;
    QVERIFY2(QTest::qWaitFor([&] { return seams->framesSent >= enough; }, patience),
        "The frames have stopped.");
}

void ProgramStage::end()
{
    QVERIFY(isRunning());
    tell(u"close"_s);
    (void)QTest::qWaitFor([this] { return !isRunning(); }, patience);
    QVERIFY2(!isRunning(), "The program did not end.");
    QCOMPARE(m_process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_process.exitCode(), 0);
}

void ProgramStage::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

bool ProgramStage::isDark() const
{
    const auto isEmpty = [](const std::atomic<std::int32_t> &points) { return points == 0; };
    return !seams->outputOn || std::all_of(seams->points.begin(), seams->points.end(), isEmpty);
}

QStringList ProgramStage::lostSettings() const
{
    QStringList lost;
    const QSettings file(path(fileName), QSettings::IniFormat);
    for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
        const QString value = file.value(setting.key()).toString();
        if (value != setting.value())
            lost.append(setting.key() + u'=' + setting.value() + " is "_L1 + value);
    }
    return lost;
}

QByteArray ProgramStage::contentOf(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void ProgramStage::write(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}
