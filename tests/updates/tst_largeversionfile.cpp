#include "updatecase.h"

#include <QTest>

#include <ctime>

using namespace Qt::StringLiterals;

class tst_LargeVersionFile : public UpdateCase
{
    Q_OBJECT

private slots:
    void a_version_file_of_any_size_is_read_and_shown_within_a_second_data();
    void a_version_file_of_any_size_is_read_and_shown_within_a_second();
};

void tst_LargeVersionFile::a_version_file_of_any_size_is_read_and_shown_within_a_second_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<QByteArray>("news");
    constexpr qsizetype size = largestVersionFile - 200;
    QTest::newRow("one long line") << QByteArray("1.02") << QByteArray(size, 'x');
    QTest::newRow("words") << QByteArray("1.02") << QByteArray("new ").repeated(size / 4);
    QTest::newRow("lines") << QByteArray("1.02") << QByteArray("- new\n").repeated(size / 6);
    QTest::newRow("empty lines") << QByteArray("1.02") << "x" + QByteArray(size - 1, '\n');
    QTest::newRow("controls") << QByteArray("1.02") << QByteArray(size, '\x01');
    QTest::newRow("a long version") << QByteArray(size, '0') + "1.02" << QByteArray("- new\n");
    QTest::newRow("tabs before the version")
        << QByteArray(size, '\t') + "1.02" << QByteArray("- new\n");
}

void tst_LargeVersionFile::a_version_file_of_any_size_is_read_and_shown_within_a_second()
{
    QFETCH(QByteArray, version);
    QFETCH(QByteArray, news);
    const QByteArray file = versionFile(version, news);
    QVERIFY(file.size() <= largestVersionFile);
    server->answers[versionPath] = {response(file)};
    // In processor time, which does not depend on the machine's load. It includes the transfer.
    const MessageBoxes boxes({QMessageBox::No});
    const std::clock_t begin = std::clock();
    QVERIFY(!check());
    const auto time = double(std::clock() - begin) / CLOCKS_PER_SEC;
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(notes, QString::fromLatin1(news));
    const QString &text = boxes.shown.first().text;
    QVERIFY(text.startsWith("Version "_L1 + QString::fromLatin1(version.first(4))));
    QVERIFY(text.contains(" is available.\n\nDo you want to update and restart now?\n\n"
                          "Content of this new version:\n"_L1
        + QString::fromLatin1(news.first(1))));
    QVERIFY2(time < 1, qPrintable(QString::number(time)));
}

QTEST_MAIN(tst_LargeVersionFile)
#include "tst_largeversionfile.moc"
