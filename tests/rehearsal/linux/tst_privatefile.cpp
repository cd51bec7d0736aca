#include "memoryfile.h"
#include "rehearsalname.h"

#include <QProcess>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto onlyOwner = QFile::ReadOwner | QFile::WriteOwner;
constexpr auto everyone =
    onlyOwner | QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;

/// How the host opens the file, and how the game does.
constexpr auto uses = {&MemoryFile::create, &MemoryFile::attach};

} // namespace

/// The shared memory belongs to one user alone.
class tst_PrivateFile : public QObject
{
    Q_OBJECT

private slots:
    void other_users_cannot_access_the_file_data();
    void other_users_cannot_access_the_file();
    void a_file_that_other_users_can_access_is_not_attached();
    void a_file_of_another_user_is_refused();
    void a_link_to_a_file_is_refused();
    void a_pipe_is_refused();
};

void tst_PrivateFile::other_users_cannot_access_the_file_data()
{
    QTest::addColumn<bool>("exists");
    QTest::addRow("a new file") << false;
    QTest::addRow("a file that others could access") << true;
}

void tst_PrivateFile::other_users_cannot_access_the_file()
{
    QFETCH(bool, exists);
    const RehearsalName name;
    QFile file(name.path());
    if (exists)
        QVERIFY(file.open(QIODevice::WriteOnly) && file.setPermissions(everyone));
    MemoryFile host;
    QVERIFY2(host.create(name.path()), qPrintable(host.errorString()));
    QVERIFY(!(QFile::permissions(name.path()) & (everyone & ~onlyOwner)));
    QVERIFY(MemoryFile().attach(name.path()));
}

void tst_PrivateFile::a_file_that_other_users_can_access_is_not_attached()
{
    const RehearsalName name;
    MemoryFile host;
    QVERIFY(host.create(name.path()));
    for (const auto permission :
        {QFile::ReadGroup, QFile::WriteGroup, QFile::ReadOther, QFile::WriteOther}) {
        QVERIFY(QFile::setPermissions(name.path(), onlyOwner | permission));
        MemoryFile game;
        QVERIFY(!game.attach(name.path()));
        QCOMPARE(game.errorString(), u"Other users can access it."_s);
    }
    QVERIFY(QFile::setPermissions(name.path(), onlyOwner));
    QVERIFY(MemoryFile().attach(name.path()));
}

void tst_PrivateFile::a_file_of_another_user_is_refused()
{
    const RehearsalName name;
    QVERIFY(MemoryFile().create(name.path()));
    if (QProcess::execute(u"chown"_s, {u"nobody"_s, name.path()}) != 0)
        QSKIP("Only root can give files away.");
    for (const auto use : uses) {
        MemoryFile memory;
        QVERIFY(!(memory.*use)(name.path()));
        QVERIFY(!memory.memory());
        QCOMPARE(memory.errorString(), u"It belongs to another user."_s);
    }
}

void tst_PrivateFile::a_link_to_a_file_is_refused()
{
    const RehearsalName name;
    const QString target = name.path() + u".target"_s;
    QVERIFY(MemoryFile().create(target));
    QVERIFY(QFile::link(target, name.path()));
    for (const auto use : uses)
        QVERIFY(!(MemoryFile().*use)(name.path()));
    QVERIFY(QFile::remove(target));
    // Nor is the missing target of a link created.
    QVERIFY(!MemoryFile().create(name.path()));
    QVERIFY(!QFile::exists(target));
}

void tst_PrivateFile::a_pipe_is_refused()
{
    const RehearsalName name;
    QCOMPARE(mkfifo(QFile::encodeName(name.path()).constData(), S_IRUSR | S_IWUSR), 0);
    for (const auto use : uses) {
        MemoryFile memory;
        QVERIFY(!(memory.*use)(name.path()));
        QCOMPARE(memory.errorString(), u"It is not a file."_s);
    }
}

QTEST_GUILESS_MAIN(tst_PrivateFile)

#include "tst_privatefile.moc"
