#include "versionstrings.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_VersionResources : public QObject
{
    Q_OBJECT

private slots:
    void each_program_and_library_names_its_maker_and_version_data();
    void each_program_and_library_names_its_maker_and_version();
};

void tst_VersionResources::each_program_and_library_names_its_maker_and_version_data()
{
    QTest::addColumn<QString>("description");
    QTest::newRow("rallyvane.exe") << u"Laser Rallyvane"_s;
    QTest::newRow("rehearse.exe") << u"Laser Rallyvane: rehearse without a laser"_s;
    QTest::newRow("rehearsalhost.exe") << u"Rehearsal host of Laser Rallyvane"_s;
    QTest::newRow("BEYONDIOx64.dll") << u"Rehearsal library of Laser Rallyvane"_s;
}

void tst_VersionResources::each_program_and_library_names_its_maker_and_version()
{
    QFETCH(QString, description);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    QFile file(QCoreApplication::applicationDirPath() + u'/' + name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QMap<QString, QString> strings = versionStrings(file.readAll());
    QCOMPARE(strings.value(u"CompanyName"_s), QStringLiteral(COMPANY));
    QCOMPARE(strings.value(u"LegalCopyright"_s), QStringLiteral(COPYRIGHT));
    QCOMPARE(strings.value(u"FileVersion"_s), QStringLiteral(VERSION));
    QCOMPARE(strings.value(u"ProductVersion"_s), QStringLiteral(VERSION));
    QCOMPARE(strings.value(u"ProductName"_s), u"Laser Rallyvane"_s);
    QCOMPARE(strings.value(u"FileDescription"_s), description);
    QCOMPARE(strings.value(u"OriginalFilename"_s), name);
}

QTEST_GUILESS_MAIN(tst_VersionResources)

#include "tst_versionresources.moc"
