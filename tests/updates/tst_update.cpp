#include "updatecase.h"
#include "updatehost.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

MessageBoxes::Box question(const QString &version, const QString &notes)
{
    return {
        .icon = QMessageBox::Question,
        .title = u"New version available"_s,
        .text = "Version "_L1 + version
            + " is available.\n\nDo you want to update and restart now?\n\n"
              "Content of this new version:\n"_L1
            + notes,
        .buttons = QMessageBox::Yes | QMessageBox::No,
        .defaultButton = false,
        .parent = false,
        .markup = false,
    };
}

/// Appends a mark to the texts of the main window that it translates.
class Marking : public QTranslator
{
    Q_OBJECT

public:
    QString translate(const char *context, const char *sourceText, const char * /*hint*/,
        int /*count*/) const override
    {
        if (qstrcmp(context, "MainWindow") != 0)
            return {};
        return QString::fromUtf8(sourceText) + u'x';
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class tst_Update : public UpdateCase
{
    Q_OBJECT

private slots:
    void the_version_file_decides_without_a_question_data();
    void the_version_file_decides_without_a_question();
    void no_answer_counts_as_no_website_data();
    void no_answer_counts_as_no_website();
    void a_server_that_falls_silent_counts_as_no_website_data();
    void a_server_that_falls_silent_counts_as_no_website();
    void a_name_that_does_not_resolve_counts_as_no_website();
    void a_certificate_that_does_not_verify_counts_as_no_website();
    void the_reserved_domain_is_not_contacted_data();
    void the_reserved_domain_is_not_contacted();
    void the_limits_are_5_seconds_for_the_version_file_and_30_for_the_installer();
    void a_newer_version_is_offered_with_its_notes_data();
    void a_newer_version_is_offered_with_its_notes();
    void later_notes_are_shown_after_earlier_ones();
    void every_text_is_translated_as_the_main_windows();
    void declining_downloads_nothing_data();
    void declining_downloads_nothing();
};

void tst_Update::the_version_file_decides_without_a_question_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("line");
    const QString upToDate = u"Software up to date"_s;
    const QString older = u"Living in the future?"_s;
    const QString unreadable = u"Cannot parse Version file"_s;
    const QString noWebsite = u"Cannot connect to Website"_s;
    QTest::newRow("up to date") << versionFile("1.01") << upToDate;
    QTest::newRow("rounded up to the own version") << versionFile("1.005") << upToDate;
    QTest::newRow("rounded down to the own version") << versionFile("1.0149") << upToDate;
    QTest::newRow("older") << versionFile("1.00") << older;
    QTest::newRow("negative") << versionFile("-2") << older;
    QTest::newRow("letters") << versionFile("next") << older;
    QTest::newRow("an empty version") << versionFile("") << older;
    QTest::newRow("infinite") << versionFile("inf") << older;
    QTest::newRow("not a number") << versionFile("nan") << older;
    QTest::newRow("a space on a later line only")
        << separator() + "\nV1.02\nall new\n" + separator() << older;
    QTest::newRow("no space") << separator() + "\nV1.02\nnew\n" + separator() << unreadable;
    QTest::newRow("one separator") << separator() + "\nV1.02 \nnew\n" << unreadable;
    QTest::newRow("no separator") << QByteArray("<h1>Welcome</h1>") << noWebsite;
    QTest::newRow("nothing") << QByteArray() << noWebsite;
}

void tst_Update::the_version_file_decides_without_a_question()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, line);
    server->answers[versionPath] = {response(body)};
    const MessageBoxes boxes;
    QVERIFY(!check());
    QCOMPARE(log->takeAll(), QStringList{line});
    QCOMPARE(boxes.shown.size(), 0);
    QCOMPARE(server->asked, QStringList{versionPath});
    QCOMPARE(notes, QString());
}

void tst_Update::no_answer_counts_as_no_website_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray newer = versionFile("1.02");
    QTest::newRow("404 with a page") << response(newer, "404 Not Found");
    QTest::newRow("500 with a page") << response(newer, "500 Internal Server Error");
    QTest::newRow("shorter than announced") << response(newer + "\n").chopped(1);
    QTest::newRow("too large") << response(newer + QByteArray(1 << 20, ' '));
    QTest::newRow("hung up") << QByteArray();
}

void tst_Update::no_answer_counts_as_no_website()
{
    QFETCH(QByteArray, bytes);
    server->answers[versionPath] = {bytes};
    const MessageBoxes boxes;
    QVERIFY(!check());
    const QStringList lines = log->takeAll();
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines[0].startsWith("Cannot download https://"_L1 + server->host() + versionPath),
        qPrintable(lines[0]));
    QCOMPARE(lines[1], u"Cannot connect to Website"_s);
    QCOMPARE(boxes.shown.size(), 0);
}

void tst_Update::a_server_that_falls_silent_counts_as_no_website_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("accepts and never answers") << QByteArray();
    QTest::newRow("stalls in the middle") << response(versionFile("1.02")).chopped(10);
}

void tst_Update::a_server_that_falls_silent_counts_as_no_website()
{
    QFETCH(QByteArray, bytes);
    server->answers[versionPath] = {bytes, Answer::StayConnected};
    const MessageBoxes boxes;
    const UpdateServer impatient = {.host = server->host(), .versionFile = {1s, 1 << 20}};
    QVERIFY(!checkForUpdate(impatient, ownVersion, notes));
    QCOMPARE(log->takeAll(),
        (QStringList{"Cannot download https://"_L1 + server->host() + versionPath
                + ": no data for 1000 ms"_L1,
            u"Cannot connect to Website"_s}));
    QCOMPARE(boxes.shown.size(), 0);
    QCOMPARE(server->asked, QStringList{versionPath});
}

void tst_Update::a_name_that_does_not_resolve_counts_as_no_website()
{
    const MessageBoxes boxes;
    QVERIFY(!check(u"updates.invalid"_s));
    QCOMPARE(log->takeAll().last(), u"Cannot connect to Website"_s);
    QCOMPARE(boxes.shown.size(), 0);
}

void tst_Update::a_certificate_that_does_not_verify_counts_as_no_website()
{
    HttpsServer impostor(Identity(u"IP:127.0.0.1"_s));
    impostor.answers[versionPath] = {response(versionFile("1.02"))};
    const MessageBoxes boxes;
    QVERIFY(!check(impostor.host()));
    QCOMPARE(log->takeAll().last(), u"Cannot connect to Website"_s);
    QCOMPARE(boxes.shown.size(), 0);
    QCOMPARE(impostor.asked, QStringList());
}

void tst_Update::the_reserved_domain_is_not_contacted_data()
{
    QTest::addColumn<QString>("host");
    QTest::newRow("in lower case") << u"updates.rallyvane.example"_s;
    QTest::newRow("in upper case") << u"UPDATES.RALLYVANE.EXAMPLE"_s;
    QTest::newRow("with a port") << u"updates.rallyvane.example:8443"_s;
}

void tst_Update::the_reserved_domain_is_not_contacted()
{
    QFETCH(QString, host);
    const MessageBoxes boxes;
    // A request would wait, and waiting would deliver this.
    bool waited = false;
    QMetaObject::invokeMethod(
        this, [&] { waited = true; }, Qt::QueuedConnection);
    QVERIFY(!check(host));
    QVERIFY(!waited);
    QCOMPARE(log->takeAll().last(), u"Cannot connect to Website"_s);
    QCOMPARE(boxes.shown.size(), 0);
    QCoreApplication::processEvents();
}

void tst_Update::the_limits_are_5_seconds_for_the_version_file_and_30_for_the_installer()
{
    const UpdateServer built = {.host = updateHost()};
    QCOMPARE(built.versionFile.silence, 5s);
    QCOMPARE(built.versionFile.size, 1024 * 1024);
    QCOMPARE(built.installer.silence, 30s);
    QCOMPARE(built.installer.size, 512 * 1024 * 1024);
    QVERIFY(!built.host.isEmpty());
}

void tst_Update::a_newer_version_is_offered_with_its_notes_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("shownNotes");
    QTest::newRow("by one hundredth")
        << versionFile("1.02", "- new\n- better\n") << u"1.02"_s << u"- new\n- better\n"_s;
    QTest::newRow("rounded up") << versionFile("1.015") << u"1.015"_s << u"- new\n"_s;
    QTest::newRow("by far") << versionFile("99") << u"99"_s << u"- new\n"_s;
    QTest::newRow("by more than an int holds in hundredths")
        << versionFile("21474836") << u"21474836"_s << u"- new\n"_s;
    QTest::newRow("by more than a float holds")
        << versionFile("1e300") << u"1e300"_s << u"- new\n"_s;
    QTest::newRow("notes with an equals sign")
        << versionFile("1.02", "speed = 20\nmore\n") << u"1.02"_s << u"speed "_s;
    QTest::newRow("no notes") << versionFile("1.02", "") << u"1.02"_s << u""_s;
    QTest::newRow("notes that look like markup") << versionFile("1.02", "<b>new</b> &lt; <hr>\n")
                                                 << u"1.02"_s << u"<b>new</b> &lt; <hr>\n"_s;
}

void tst_Update::a_newer_version_is_offered_with_its_notes()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, version);
    QFETCH(QString, shownNotes);
    server->answers[versionPath] = {response(body)};
    const MessageBoxes boxes({QMessageBox::No});
    QVERIFY(!check());
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(boxes.shown.first(), question(version, shownNotes));
    QCOMPARE(notes, shownNotes);
    QCOMPARE(log->takeAll().first(), u"Update Requested - Actual Version = 101"_s);
}

void tst_Update::later_notes_are_shown_after_earlier_ones()
{
    const MessageBoxes boxes({QMessageBox::No, QMessageBox::No});
    for (const char *const news : {"- new\n", "- newer\n"}) {
        server->answers[versionPath] = {response(versionFile("1.02", news))};
        QVERIFY(!check());
    }
    QCOMPARE(boxes.shown.size(), 2);
    QCOMPARE(boxes.shown[1], question(u"1.02"_s, u"- new\n- newer\n"_s));
    QCOMPARE(notes, u"- new\n- newer\n"_s);
}

void tst_Update::every_text_is_translated_as_the_main_windows()
{
    // The installer is not a program, so the message box about it is shown too.
    server->answers[versionPath + "x"_L1] = {response(versionFile("1.02"))};
    server->answers[installerPath] = {response("This is no program.")};
    const MessageBoxes boxes({QMessageBox::Yes, QMessageBox::Ok});
    Marking translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QVERIFY(!check());
    QCOMPARE(server->asked, (QStringList{versionPath + "x"_L1, installerPath}));
    QCOMPARE(boxes.shown.size(), 2);
    QCOMPARE(boxes.shown[0].title, u"New version availablex"_s);
    QCOMPARE(boxes.shown[0].text,
        u"Version x1.02 is available.\n\nDo you want to update and restart now?\n\n"
        "Content of this new version:\nx- new\n"_s);
    QCOMPARE(boxes.shown[1].title, u"Setup program cannot be executedx"_s);
    QCOMPARE(boxes.shown[1].text,
        u"Setup program cannot be executed at following path: x"_s
            + QDir::current().filePath(savedInstaller));
}

void tst_Update::declining_downloads_nothing_data()
{
    QTest::addColumn<QList<QMessageBox::StandardButton>>("answers");
    QTest::newRow("No") << QList{QMessageBox::No};
    QTest::newRow("the box closed") << QList<QMessageBox::StandardButton>();
}

void tst_Update::declining_downloads_nothing()
{
    QFETCH(QList<QMessageBox::StandardButton>, answers);
    server->answers[versionPath] = {response(versionFile("1.02"))};
    server->answers[installerPath] = {response(installer())};
    const MessageBoxes boxes(answers);
    QVERIFY(!check());
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(server->asked, QStringList{versionPath});
    QVERIFY(!QFileInfo::exists(u"sw_fw"_s));
    QCOMPARE(log->takeAll(),
        (QStringList{u"Update Requested - Actual Version = 101"_s, u"Update declined"_s}));
}

QTEST_MAIN(tst_Update)

#include "tst_update.moc"
