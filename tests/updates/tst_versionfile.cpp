#include "ownversion.h"
#include "versionfile.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray separator()
{
    return {43, '='};
}

/// A version file in the published format.
QByteArray versionFile(const QByteArray &versionLine, const QByteArray &notes)
{
    return "Laser Rallyvane\r\n" + separator() + "\r\n" + versionLine + "\r\n\r\n" + notes
        + separator() + "\r\n";
}

} // namespace

class tst_VersionFile : public QObject
{
    Q_OBJECT

private slots:
    void the_own_version_is_the_projects();
    void version_and_notes_are_read_from_between_the_separators_data();
    void version_and_notes_are_read_from_between_the_separators();
    void a_file_without_a_separator_is_no_version_file_data();
    void a_file_without_a_separator_is_no_version_file();
    void an_incomplete_file_is_unreadable_data();
    void an_incomplete_file_is_unreadable();
    void the_version_is_rounded_to_hundredths_in_single_precision_data();
    void the_version_is_rounded_to_hundredths_in_single_precision();
    void a_version_that_is_not_a_finite_number_is_version_0_data();
    void a_version_that_is_not_a_finite_number_is_version_0();
};

void tst_VersionFile::the_own_version_is_the_projects()
{
    QCOMPARE(versionInHundredths(QString::fromLatin1(ownVersionText)), ownVersion);
    QCOMPARE(installerName(u"1.02"_s), u"Rallyvane_v1.02_setup.exe"_s);
}

void tst_VersionFile::version_and_notes_are_read_from_between_the_separators_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("notes");
    QTest::newRow("as published") << versionFile("V1.02 - today", "- new\r\n- better\r\n")
                                  << u"1.02"_s << u"- new\r\n- better\r\n"_s;
    QTest::newRow("nothing after the space")
        << versionFile("V1.02 ", "- new\n") << u"1.02"_s << u"- new\n"_s;
    QTest::newRow("nothing before the first separator")
        << separator() + "V1.02 \nnew" + separator() << u"1.02"_s << u"new"_s;
    QTest::newRow("no V") << versionFile("1.02 ", "new") << u"1.02"_s << u"new"_s;
    QTest::newRow("any mix before the version")
        << separator() + "=\n=V\r==VV\n1.02 \nnew" + separator() << u"1.02"_s << u"new"_s;
    QTest::newRow("separators longer than they need be")
        << separator() + "==\nV1.02 \nnew" + separator() + "==" << u"1.02"_s << u"new"_s;
    QTest::newRow("an empty version") << versionFile("V 1.02", "new") << u""_s << u"new"_s;
    QTest::newRow("a version of letters") << versionFile("Vnext ", "new") << u"next"_s << u"new"_s;
    QTest::newRow("a small v") << versionFile("v1.02 ", "new") << u"v1.02"_s << u"new"_s;
    QTest::newRow("no space on the line of the version")
        << versionFile("V1.02", "all new") << u"1.02\r\n\r\nall"_s << u""_s;
    QTest::newRow("blank lines within the notes")
        << versionFile("V1.02 ", "\n\rnew\n\nbetter\n") << u"1.02"_s << u"new\n\nbetter\n"_s;
    QTest::newRow("notes that contain an equals sign")
        << versionFile("V1.02 ", "speed = 20\nmore\n") << u"1.02"_s << u"speed "_s;
    QTest::newRow("no notes") << versionFile("V1.02 ", "") << u"1.02"_s << u""_s;
    QTest::newRow("single bytes") << versionFile("V1.02 ", "\xE9\x80\xFF") << u"1.02"_s
                                  << u"\u00E9\u0080\u00FF"_s;
    QTest::newRow("single bytes in the version")
        << versionFile("V1\xE9\xC3\xA9 ", "new") << u"1\u00E9\u00C3\u00A9"_s << u"new"_s;
    QTest::newRow("a zero byte") << versionFile("V1.02 ", QByteArray("a\0b", 3)) << u"1.02"_s
                                 << QString(u"a\0b"_s);
    // The search for the second separator starts at the second character of the first one.
    QTest::newRow("one line of 44 equals signs, and no other")
        << separator() + "=\nV1.02 \nnew" << u"1.02"_s << u"new"_s;
}

void tst_VersionFile::version_and_notes_are_read_from_between_the_separators()
{
    QFETCH(QByteArray, bytes);
    const VersionFile file = readVersionFile(bytes);
    QCOMPARE(file.state, VersionFile::Readable);
    QTEST(file.version, "version");
    QTEST(file.notes, "notes");
}

void tst_VersionFile::a_file_without_a_separator_is_no_version_file_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a page") << QByteArray("<html><body>Not found</body></html>");
    QTest::newRow("42 equals signs") << QByteArray(42, '=') + "\nV1.02 \nnew" + QByteArray(42, '=');
}

void tst_VersionFile::a_file_without_a_separator_is_no_version_file()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(readVersionFile(bytes).state, VersionFile::NoVersionFile);
}

void tst_VersionFile::an_incomplete_file_is_unreadable_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("one separator") << separator() + "\nV1.02 \nnew\n";
    QTest::newRow("a separator alone") << separator();
    QTest::newRow("nothing but separators") << separator() + separator();
    QTest::newRow("cut within the second separator")
        << separator() + "\nV1.02 \nnew\n" + separator().chopped(1);
    QTest::newRow("no space up to the end") << separator() + "\nV1.02\nnew\n" + separator() + "\n";
}

void tst_VersionFile::an_incomplete_file_is_unreadable()
{
    QFETCH(QByteArray, bytes);
    const VersionFile file = readVersionFile(bytes);
    QCOMPARE(file.state, VersionFile::Unreadable);
    QCOMPARE(file.version, QString());
    QCOMPARE(file.notes, QString());
}

void tst_VersionFile::the_version_is_rounded_to_hundredths_in_single_precision_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("hundredths");
    QTest::newRow("1.01") << u"1.01"_s << 101;
    QTest::newRow("1.02") << u"1.02"_s << 102;
    QTest::newRow("1.004") << u"1.004"_s << 100;
    // In double precision the product would be below one half.
    QTest::newRow("1.005") << u"1.005"_s << 101;
    QTest::newRow("1.015") << u"1.015"_s << 102;
    QTest::newRow("1") << u"1"_s << 100;
    QTest::newRow("2.") << u"2."_s << 200;
    QTest::newRow("1e1") << u"1e1"_s << 1000;
    QTest::newRow("0.005") << u"0.005"_s << 1;
    QTest::newRow("-0.004") << u"-0.004"_s << 0;
    QTest::newRow("-0.005") << u"-0.005"_s << -1;
    QTest::newRow("-1.02") << u"-1.02"_s << -102;
    QTest::newRow("line ends around it") << u"\r\n1.02\r\n"_s << 102;
    QTest::newRow("the highest") << u"21474834"_s << 2147483392;
    QTest::newRow("the lowest") << u"-21474836.48"_s << std::numeric_limits<int>::min();
    for (const char *const text :
        {"21474836", "21474837", "99999999999", "1e30", "1e37", "1e38", "1e300", "1e999999999"})
        QTest::addRow("above an int: %s", text)
            << QString::fromLatin1(text) << std::numeric_limits<int>::max();
    for (const char *const text : {"-21474839", "-1e30", "-1e300"})
        QTest::addRow("below an int: %s", text)
            << QString::fromLatin1(text) << std::numeric_limits<int>::min();
}

void tst_VersionFile::the_version_is_rounded_to_hundredths_in_single_precision()
{
    QFETCH(QString, text);
    QTEST(versionInHundredths(text), "hundredths");
}

void tst_VersionFile::a_version_that_is_not_a_finite_number_is_version_0_data()
{
    QTest::addColumn<QString>("text");
    for (const char *const text : {"", "next", "1.02b", "1,02", "1.02.3", "0x66", "1 02", "\xBD",
             "inf", "-inf", "INF", "nan", "NaN", "1e-50", "1.02\r\n\r\nall"})
        QTest::addRow("%s", text) << QString::fromLatin1(text);
}

void tst_VersionFile::a_version_that_is_not_a_finite_number_is_version_0()
{
    QFETCH(QString, text);
    QCOMPARE(versionInHundredths(text), 0);
}

QTEST_GUILESS_MAIN(tst_VersionFile)

#include "tst_versionfile.moc"
