#include "debuglines.h"
#include "debuglog.h"
#include "workingfolder.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

namespace {

const QString logName = u"rallyvane.log"_s;
const QString olderName = u"rallyvane.log.1"_s;

QtMessageHandler installedHandler()
{
    const QtMessageHandler handler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(handler);
    return handler;
}

QStringList linesOf(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

/// The logged messages, without time and thread.
QStringList messagesOf(const QString &name)
{
    QStringList messages = linesOf(name);
    for (QString &line : messages)
        line = line.section(u"] "_s, 1);
    return messages;
}

void fill(const QString &name, qint64 size)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(QByteArray(size - 1, 'x') + '\n'), size);
}

} // namespace

class tst_DebugLog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void a_line_contains_its_time_and_thread();
    void a_thread_without_a_name_shows_its_number();
    void every_kind_of_message_is_logged();
    void the_previous_handler_still_receives_every_line();
    void a_line_from_the_logs_own_thread_reaches_only_the_previous_handler();
    void the_previous_handler_is_restored_when_the_log_is_destroyed();
    void flushing_waits_until_all_lines_are_written();
    void the_last_lines_are_written_when_the_log_is_destroyed();
    void a_fatal_message_is_written_before_the_process_ends();
    void a_new_run_appends_to_the_same_file();
    void the_log_is_in_the_working_directory_and_is_rotated_at_1_MiB_data();
    void the_log_is_in_the_working_directory_and_is_rotated_at_1_MiB();
    void one_older_file_is_kept();
    void a_line_longer_than_the_limit_has_a_file_of_its_own();
    void a_file_that_cannot_be_renamed_is_truncated();
    void a_log_that_cannot_be_written_is_not_an_error();
    void logging_resumes_once_the_log_can_be_written_again();
    void lines_of_several_threads_are_intact_and_in_order();

private:
    std::optional<WorkingFolder> m_folder;
};

void tst_DebugLog::init()
{
    m_folder.emplace();
}

void tst_DebugLog::cleanup()
{
    m_folder.reset();
}

void tst_DebugLog::a_line_contains_its_time_and_thread()
{
    const DebugLines previous;
    const QDateTime before = QDateTime::currentDateTime();
    {
        const DebugLog log;
        qDebug("Left scores");
        QThread::currentThread()->setObjectName(u"game"_s);
        qDebug("Score LR = 1-0");
        QThread::currentThread()->setObjectName(u"main"_s);
    }
    const QDateTime after = QDateTime::currentDateTime();
    const QStringList lines = linesOf(logName);
    QCOMPARE(lines.size(), 2);
    const QStringList expected = {u" [main] Left scores"_s, u" [game] Score LR = 1-0"_s};
    for (qsizetype i = 0; i < lines.size(); ++i) {
        constexpr qsizetype timeLength = 23; // 2026-11-20T20:44:51.123
        QCOMPARE(lines[i].mid(timeLength), expected[i]);
        const QDateTime time = QDateTime::fromString(lines[i].left(timeLength), Qt::ISODateWithMs);
        QVERIFY2(time.isValid(), qPrintable(lines[i]));
        QVERIFY(time.addMSecs(1) >= before && time <= after);
    }
}

void tst_DebugLog::a_thread_without_a_name_shows_its_number()
{
    const DebugLines previous;
    const DebugLog log;
    QString number;
    std::unique_ptr<QThread> thread(QThread::create([&number] {
        number = QString::number(quintptr(QThread::currentThreadId()), 16);
        qDebug("from somewhere");
    }));
    thread->start();
    QVERIFY(thread->wait());
    DebugLog::flush();
    QCOMPARE(linesOf(logName).size(), 1);
    QVERIFY(linesOf(logName).constFirst().endsWith(u" ["_s + number + u"] from somewhere"_s));
}

void tst_DebugLog::every_kind_of_message_is_logged()
{
    const DebugLines previous;
    const DebugLog log;
    qDebug("debug");
    qInfo("info");
    qWarning("warning");
    qCritical("critical: \u00e9");
    DebugLog::flush();
    QCOMPARE(messagesOf(logName),
        (QStringList{u"debug"_s, u"info"_s, u"warning"_s, u"critical: \u00e9"_s}));
}

void tst_DebugLog::the_previous_handler_still_receives_every_line()
{
    DebugLines previous;
    const DebugLog log;
    qDebug("one");
    qDebug("two");
    DebugLog::flush();
    QCOMPARE(previous.takeAll(), (QStringList{u"one"_s, u"two"_s}));
}

void tst_DebugLog::a_line_from_the_logs_own_thread_reaches_only_the_previous_handler()
{
    static QStringList received;
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &message) {
            received.append(message);
            if (received.size() == 1)
                qDebug("from the handler");
        });
    const auto restore = qScopeGuard([before] { qInstallMessageHandler(before); });
    const DebugLog log;
    qDebug("from the test");
    DebugLog::flush();
    QCOMPARE(received, (QStringList{u"from the test"_s, u"from the handler"_s}));
    QCOMPARE(linesOf(logName).size(), 1);
    QVERIFY(linesOf(logName).constFirst().endsWith(u"from the test"_s));
}

void tst_DebugLog::the_previous_handler_is_restored_when_the_log_is_destroyed()
{
    DebugLines previous;
    const QtMessageHandler before = installedHandler();
    {
        const DebugLog log;
        QVERIFY(installedHandler() != before);
    }
    QVERIFY(installedHandler() == before);
    qDebug("after");
    QCOMPARE(previous.takeAll(), QStringList{u"after"_s});
    QCOMPARE(linesOf(logName), QStringList());
}

void tst_DebugLog::flushing_waits_until_all_lines_are_written()
{
    const DebugLines previous;
    const DebugLog log;
    for (int i = 1; i <= 100; ++i) {
        qDebug("%d", i);
        if (i % 10 != 0)
            continue;
        DebugLog::flush();
        QCOMPARE(linesOf(logName).size(), i);
    }
}

void tst_DebugLog::the_last_lines_are_written_when_the_log_is_destroyed()
{
    DebugLines previous;
    {
        const DebugLog log;
        for (int i = 0; i < 1000; ++i)
            qDebug("%d", i);
    }
    QCOMPARE(messagesOf(logName).size(), 1000);
    QCOMPARE(messagesOf(logName).constLast(), u"999"_s);
    QCOMPARE(previous.takeAll().size(), 1000);
}

void tst_DebugLog::a_fatal_message_is_written_before_the_process_ends()
{
    const DebugLines previous;
    const DebugLog log;
    // Like Qt, end the process when the handler returns.
    installedHandler()(QtFatalMsg, QMessageLogContext(), u"the end"_s);
    QCOMPARE(messagesOf(logName), QStringList{u"the end"_s});
}

void tst_DebugLog::a_new_run_appends_to_the_same_file()
{
    const DebugLines previous;
    for (const char *run : {"first run", "second run"}) {
        const DebugLog log;
        qDebug("%s", run);
    }
    QCOMPARE(messagesOf(logName), (QStringList{u"first run"_s, u"second run"_s}));
}

void tst_DebugLog::the_log_is_in_the_working_directory_and_is_rotated_at_1_MiB_data()
{
    QTest::addColumn<int>("room");
    QTest::addColumn<bool>("turned");
    // A line consists of its time, 23 bytes, " [main] ", its ten letters and the line end.
    QTest::addRow("the line just fits") << 42 << false;
    QTest::addRow("one byte too long") << 41 << true;
}

void tst_DebugLog::the_log_is_in_the_working_directory_and_is_rotated_at_1_MiB()
{
    QFETCH(int, room);
    QFETCH(bool, turned);
    constexpr auto size = qint64(1024) * 1024;
    fill(logName, size - room);
    const DebugLines previous;
    {
        const DebugLog log;
        qDebug("ten chars.");
    }
    QCOMPARE(QFile::exists(olderName), turned);
    QCOMPARE(QFileInfo(logName).size(), turned ? 42 : size);
    QCOMPARE(messagesOf(logName).constLast(), u"ten chars."_s);
}

void tst_DebugLog::one_older_file_is_kept()
{
    constexpr qint64 maxSize = 500;
    constexpr int count = 100;
    const DebugLines previous;
    const DebugLog log(u"small.log"_s, maxSize);
    for (int i = 1; i <= count; ++i) {
        qDebug("line %d", i);
        DebugLog::flush();
        QVERIFY(QFileInfo(u"small.log"_s).size() <= maxSize);
        QVERIFY(messagesOf(u"small.log"_s).constLast() == u"line %1"_s.arg(i));
    }
    QCOMPARE(
        QDir().entryList(QDir::Files, QDir::Name), (QStringList{u"small.log"_s, u"small.log.1"_s}));
    const QStringList kept = messagesOf(u"small.log.1"_s) + messagesOf(u"small.log"_s);
    const auto first = count + 1 - int(kept.size());
    for (int i = 0; i < int(kept.size()); ++i)
        QCOMPARE(kept[i], u"line %1"_s.arg(first + i));
    QVERIFY(QFileInfo(u"small.log.1"_s).size() > maxSize - 50);
}

void tst_DebugLog::a_line_longer_than_the_limit_has_a_file_of_its_own()
{
    const DebugLines previous;
    const DebugLog log(logName, 100);
    const QString longLine(1000, u'x');
    for (const QString &line : {u"before"_s, longLine, u"after"_s})
        qDebug("%s", qPrintable(line));
    DebugLog::flush();
    QCOMPARE(messagesOf(logName), QStringList{u"after"_s});
    QCOMPARE(messagesOf(olderName), QStringList{longLine});
}

void tst_DebugLog::a_file_that_cannot_be_renamed_is_truncated()
{
    QVERIFY(QDir().mkpath(olderName + u"/taken"_s));
    DebugLines previous;
    const DebugLog log(logName, 100);
    for (int i = 1; i <= 10; ++i)
        qDebug("line %d of ten", i);
    DebugLog::flush();
    QCOMPARE(messagesOf(logName).constLast(), u"line 10 of ten"_s);
    QVERIFY(QFileInfo(logName).size() <= 100);
    QCOMPARE(previous.takeAll().size(), 10);
}

void tst_DebugLog::a_log_that_cannot_be_written_is_not_an_error()
{
    DebugLines previous;
    {
        const DebugLog log(u"no such folder/rallyvane.log"_s);
        qDebug("one");
        qDebug("two");
    }
    QCOMPARE(previous.takeAll(), (QStringList{u"one"_s, u"two"_s}));
    QVERIFY(QDir().isEmpty());
}

void tst_DebugLog::logging_resumes_once_the_log_can_be_written_again()
{
    const DebugLines previous;
    const DebugLog log(u"folder/rallyvane.log"_s);
    qDebug("lost");
    DebugLog::flush();
    QVERIFY(QDir().mkdir(u"folder"_s));
    qDebug("kept");
    DebugLog::flush();
    QCOMPARE(messagesOf(u"folder/rallyvane.log"_s), QStringList{u"kept"_s});
}

void tst_DebugLog::lines_of_several_threads_are_intact_and_in_order()
{
    constexpr int lineCount = 250;
    DebugLines previous;
    std::array<std::unique_ptr<QThread>, 4> threads;
    {
        const DebugLog log;
        for (size_t t = 0; t < threads.size(); ++t) {
            threads[t].reset(QThread::create([] {
                for (int i = 0; i < lineCount; ++i)
                    qDebug("line %d of a thread", i);
            }));
            threads[t]->setObjectName(u"worker %1"_s.arg(t));
            threads[t]->start();
        }
        for (const auto &thread : threads)
            QVERIFY(thread->wait());
    }
    const QStringList lines = linesOf(logName);
    QCOMPARE(lines.size(), lineCount * qsizetype(threads.size()));
    for (const auto &thread : threads) {
        int expected = 0;
        const QString ending = u" [%1] line %2 of a thread"_s.arg(thread->objectName());
        for (const QString &line : lines)
            expected += line.endsWith(ending.arg(expected)) ? 1 : 0;
        QCOMPARE(expected, lineCount);
    }
    QCOMPARE(previous.takeAll().size(), lines.size());
}

QTEST_GUILESS_MAIN(tst_DebugLog)
#include "tst_debuglog.moc"
