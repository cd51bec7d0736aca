#include "folderlock.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// Another process that holds the lock of a folder; it runs this test's own executable.
class Holder
{
public:
    explicit Holder(const QString &folder)
    {
        m_process.start(QCoreApplication::applicationFilePath(), {u"--hold"_s, folder});
        if (m_process.waitForReadyRead())
            m_answer = m_process.readLine().trimmed();
    }

    ~Holder() { kill(); }

    QByteArray answer() const { return m_answer; }

    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
    QByteArray m_answer;
};

/// Prints whether the lock could be acquired and holds it until killed.
int hold(const QString &folder)
{
    const FolderLock lock(folder);
    std::puts(lock.isTaken() ? "taken" : "held");
    std::fflush(stdout);
    std::getchar();
    return 0;
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

class tst_FolderLock : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void the_second_to_lock_a_folder_finds_it_taken();
    void another_process_finds_it_taken_too();
    void another_folder_is_free();
    void the_same_folder_by_another_name_is_taken();
    void a_lock_ends_with_its_holder();
    void a_killed_process_leaves_nothing();
    void a_folder_that_cannot_be_locked_is_not_taken();
    void a_folder_that_cannot_be_written_is_not_taken();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_FolderLock::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_FolderLock::the_second_to_lock_a_folder_finds_it_taken()
{
    const FolderLock first(m_folder->path());
    QVERIFY(!first.isTaken());
    QVERIFY(FolderLock(m_folder->path()).isTaken());
    QVERIFY(FolderLock(m_folder->path()).isTaken()); // the refused one released nothing
}

void tst_FolderLock::another_process_finds_it_taken_too()
{
    const FolderLock first(m_folder->path());
    QCOMPARE(Holder(m_folder->path()).answer(), QByteArray("taken"));
}

void tst_FolderLock::another_folder_is_free()
{
    const FolderLock first(m_folder->path());
    const QTemporaryDir other;
    QVERIFY(!FolderLock(other.path()).isTaken());
}

void tst_FolderLock::the_same_folder_by_another_name_is_taken()
{
    const FolderLock first(m_folder->path());
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    const bool taken = FolderLock(u"."_s).isTaken();
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(taken);
}

void tst_FolderLock::a_lock_ends_with_its_holder()
{
    QVERIFY(!FolderLock(m_folder->path()).isTaken());
    QVERIFY(!FolderLock(m_folder->path()).isTaken());
    QCOMPARE(entries(m_folder->path()), QStringList());
}

void tst_FolderLock::a_killed_process_leaves_nothing()
{
    Holder holder(m_folder->path());
    QCOMPARE(holder.answer(), QByteArray("held"));
    QVERIFY(FolderLock(m_folder->path()).isTaken());
    holder.kill();
    QCOMPARE(entries(m_folder->path()), QStringList());
    QVERIFY(!FolderLock(m_folder->path()).isTaken());
}

void tst_FolderLock::a_folder_that_cannot_be_locked_is_not_taken()
{
    const FolderLock first(m_folder->filePath(u"missing"_s));
    QVERIFY(!first.isTaken());
    QVERIFY(!FolderLock(m_folder->filePath(u"missing"_s)).isTaken());
}

void tst_FolderLock::a_folder_that_cannot_be_written_is_not_taken()
{
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
    const bool refused = !QFile(m_folder->filePath(u"file"_s)).open(QIODevice::WriteOnly);
    const bool taken = FolderLock(m_folder->path()).isTaken();
    QVERIFY(QFile::setPermissions(
        m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    if (!refused)
        QSKIP("This user may write every folder");
    QVERIFY(!taken);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc == 3 && QByteArrayView(argv[1]) == "--hold")
        return hold(QString::fromLocal8Bit(argv[2]));
    tst_FolderLock test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_folderlock.moc"
