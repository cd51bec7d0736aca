// The running program under every fault that we could think of. After each, the program still runs,
// ends cleanly when its window is closed, leaves the laser dark and has lost no setting.
//
// FAULTS_LONG runs the long forms; see tests/endtoend/faults/run.

#include "faults.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_Faults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void the_program_survives_data();
    void the_program_survives();

private:
    QTemporaryDir m_programs;
};

bool isLong()
{
    return qEnvironmentVariableIsSet("FAULTS_LONG");
}

void tst_Faults::initTestCase()
{
    // The libraries are found beside the program.
    const QDir bin(QCoreApplication::applicationDirPath());
    const QDir scripted(bin.filePath(u"scripted"_s));
    const QMap<QString, QString> hosts = {{u"recording"_s, scripted.filePath(u"BEYONDIOx64.so"_s)},
        {u"rehearsal"_s, bin.filePath(u"BEYONDIOx64.so"_s)}};
    for (auto host = hosts.begin(); host != hosts.end(); ++host) {
        const QDir folder(m_programs.filePath(host.key()));
        QVERIFY(folder.mkpath(u"."_s));
        for (const QString &file : {bin.filePath(u"endingprogram"_s), host.value(),
                 scripted.filePath(u"winmm.so"_s), scripted.filePath(u"xinput9_1_0.so"_s)})
            QVERIFY2(
                QFile::copy(file, folder.filePath(QFileInfo(file).fileName())), qPrintable(file));
    }
}

void tst_Faults::the_program_survives_data()
{
    QTest::addColumn<Fault>("fault");
    for (const auto &faults : {hostFaults(), deviceFaults(), settingsFaults(), systemFaults()}) {
        for (const Fault &fault : faults)
            QTest::addRow("%s", fault.name) << fault;
    }
}

void tst_Faults::the_program_survives()
{
    QFETCH(Fault, fault);
    ProgramStage stage(m_programs.path());
    fault.happens(stage);
    if (QTest::currentTestFailed())
        return;
    stage.end();
    QCOMPARE(stage.seams->badFrames.load(), 0);
    QVERIFY2(stage.isDark(), "A zone was left lit.");
    QCOMPARE(stage.lostSettings(), QStringList());
}

QTEST_GUILESS_MAIN(tst_Faults)
#include "tst_faults.moc"
