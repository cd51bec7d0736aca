#include "debuglines.h"
#include "settings.h"
#include "settingsfile.h"
#include "settingsstore.h"
#include "workingfolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <atomic>
#include <mutex>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString fileName = u".pong"_s;
/// The argument of a second process of this test.
const QString endSlowly = u"end-slowly"_s;
constexpr auto never = 24h; ///< a rest that no test waits for

/// The speeds of each content that the file has had.
using Speeds = QList<int>;

/// A disk whose writes take as long as the test wants.
struct Disk
{
    /// For a SettingsStore. The disk outlives a store that does not wait for it.
    static SettingsWriter::Write of(const std::shared_ptr<Disk> &disk)
    {
        return [disk](const QVariantMap &values) { return disk->write(values); };
    }

    QString write(const QVariantMap &values)
    {
        if (QThread::currentThread() == caller)
            onCaller = true;
        else
            ++begun;
        if (isSlow && !onCaller)
            release.acquire();
        const std::lock_guard lock(mutex);
        if (!error.isEmpty()) {
            ++failed;
            return error;
        }
        contents.append(values);
        return {};
    }

    Speeds written()
    {
        const std::lock_guard lock(mutex);
        Speeds speeds;
        for (const QVariantMap &values : contents)
            speeds.append(values[u"BallSpeed"_s].toInt());
        return speeds;
    }

    void setError(const QString &text)
    {
        const std::lock_guard lock(mutex);
        error = text;
    }

    const QThread *const caller = QThread::currentThread();
    std::atomic<bool> onCaller = false;
    std::atomic<bool> isSlow = false;
    std::atomic<int> begun = 0;
    std::atomic<int> failed = 0;
    QSemaphore release;

    std::mutex mutex;
    QList<QVariantMap> contents;
    QString error;
};

} // namespace

class tst_SettingsStore : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void a_slow_disk_holds_up_no_change();
    void a_change_is_written_soon_without_a_request();
    void changes_are_held_back_and_written_together();
    void changes_without_end_are_written_meanwhile();
    void changes_during_a_write_are_written_after_it();
    void every_value_is_written_with_a_change();
    void without_a_change_nothing_is_written();
    void the_end_writes_what_is_pending();
    void the_end_writes_a_change_that_was_not_reported();
    void the_end_writes_nothing_on_its_own_thread();
    void the_end_does_not_wait_for_a_hanging_disk();
    void the_end_of_the_application_waits_for_a_slow_disk();
    void a_writer_that_is_destroyed_writes_what_is_pending();
    void without_its_folder_the_file_cannot_be_written();
    void a_failed_write_is_logged_once();
    void a_failed_write_at_the_end_is_logged();
    void a_failed_write_is_tried_again_at_the_next_change();
    void a_failed_write_is_tried_again_at_the_end();
    void after_a_failed_write_the_end_leaves_the_file_alone();

private:
    settings::Store makeStore(std::chrono::milliseconds rest = never) const
    {
        return settings::Store(new SettingsStore(fileName, Disk::of(disk), rest));
    }

    std::optional<WorkingFolder> m_folder;
    std::shared_ptr<Disk> disk;
};

void tst_SettingsStore::init()
{
    m_folder.emplace();
    disk = std::make_shared<Disk>();
}

void tst_SettingsStore::cleanup()
{
    m_folder.reset();
}

void tst_SettingsStore::a_slow_disk_holds_up_no_change()
{
    const auto store = makeStore(0ms);
    disk->isSlow = true;
    settings::write(*store, settings::ballSpeed, 21);
    QTRY_COMPARE(int(disk->begun), 1);
    for (int speed = 22; speed <= 30; ++speed)
        settings::write(*store, settings::ballSpeed, speed);
    QCOMPARE(settings::read(*store, settings::ballSpeed), 30);
    QCoreApplication::processEvents(); // among them the request for a sync that QSettings posts
    QCOMPARE(disk->written(), Speeds());
    QVERIFY(!QFile::exists(fileName));
    QVERIFY(!disk->onCaller);
    disk->release.release(2);
    QTRY_COMPARE(disk->written(), (Speeds{21, 30}));
}

void tst_SettingsStore::a_change_is_written_soon_without_a_request()
{
    const auto store = makeStore(SettingsWriter::usualRest);
    QVERIFY(SettingsWriter::usualRest <= 200ms);
    settings::write(*store, settings::ballSpeed, 21);
    QTRY_COMPARE(disk->written(), Speeds{21});
    settings::write(*store, settings::ballSpeed, 22);
    QTRY_COMPARE(disk->written(), (Speeds{21, 22}));
}

void tst_SettingsStore::changes_are_held_back_and_written_together()
{
    auto store = makeStore();
    for (int speed = 21; speed <= 30; ++speed)
        settings::write(*store, settings::ballSpeed, speed);
    // A store without a rest, changed later, serves as the clock.
    const auto other = std::make_shared<Disk>();
    const settings::Store clock(new SettingsStore(u"clock"_s, Disk::of(other), 0ms));
    settings::write(*clock, settings::ballSpeed, 21);
    QTRY_COMPARE(int(other->begun), 1);
    QCOMPARE(int(disk->begun), 0);
    store.reset();
    QCOMPARE(disk->written(), Speeds{30});
}

void tst_SettingsStore::changes_without_end_are_written_meanwhile()
{
    // The rest is much longer than the time between two changes, even on a busy machine.
    const auto store = makeStore(1s);
    QElapsedTimer elapsed;
    elapsed.start();
    for (int speed = 0; disk->begun == 0 && elapsed.elapsed() < 30000; ++speed)
        settings::write(*store, settings::ballSpeed, speed);
    QCOMPARE(int(disk->begun), 1);
}

void tst_SettingsStore::changes_during_a_write_are_written_after_it()
{
    const auto store = makeStore(0ms);
    disk->isSlow = true;
    settings::write(*store, settings::ballSpeed, 21);
    QTRY_COMPARE(int(disk->begun), 1);
    settings::write(*store, settings::ballSpeed, 22);
    settings::write(*store, settings::ballSpeed, 23);
    disk->release.release(2);
    QTRY_COMPARE(disk->written(), (Speeds{21, 23}));
}

void tst_SettingsStore::every_value_is_written_with_a_change()
{
    QCOMPARE(settingsfile::replace(fileName,
                 "[General]\nSensL=300\n\n[Other]\nList=1, 2\nName=@@x\n[Third]\nDeep\\Key=a\n"),
        QString());
    settings::write(*makeStore(), settings::ballSpeed, 21);
    const QVariantMap expected = {
        {u"BallSpeed"_s, 21},
        {u"SensL"_s, u"300"_s},
        {u"Other/List"_s, QStringList{u"1"_s, u"2"_s}},
        {u"Other/Name"_s, u"@x"_s},
        {u"Third/Deep/Key"_s, u"a"_s},
    };
    QCOMPARE(disk->contents, QList<QVariantMap>{expected});
}

void tst_SettingsStore::without_a_change_nothing_is_written()
{
    makeStore(0ms).reset();
    QCOMPARE(int(disk->begun), 0);
    QVERIFY(!QFile::exists(fileName));
}

void tst_SettingsStore::the_end_writes_what_is_pending()
{
    settings::write(*makeStore(), settings::ballSpeed, 21);
    QCOMPARE(disk->written(), Speeds{21});
}

void tst_SettingsStore::the_end_writes_a_change_that_was_not_reported()
{
    {
        const auto store = makeStore(0ms);
        settings::write(*store, settings::ballSpeed, 21);
        QTRY_COMPARE(disk->written(), Speeds{21});
        store->setValue(settings::ballSpeed.key, 22); // QSettings reports its first change only
    }
    QCOMPARE(disk->written(), (Speeds{21, 22}));
}

void tst_SettingsStore::the_end_writes_nothing_on_its_own_thread()
{
    static std::atomic<const QThread *> ended;
    auto *store = new SettingsStore(fileName, Disk::of(disk), never);
    connect(
        store, &QObject::destroyed, store, [] { ended = QThread::currentThread(); },
        Qt::DirectConnection);
    settings::write(*store, settings::ballSpeed, 21);
    SettingsStore::close(store);
    QVERIFY(!disk->onCaller);
    QVERIFY(ended != nullptr && ended != QThread::currentThread());
}

void tst_SettingsStore::the_end_does_not_wait_for_a_hanging_disk()
{
    QVERIFY(SettingsWriter::longestEnd <= 300ms);
    disk->isSlow = true;
    {
        const auto store = makeStore(0ms);
        settings::write(*store, settings::ballSpeed, 21);
        QTRY_COMPARE(int(disk->begun), 1);
    }
    // Still hanging, but the store is out of the way.
    QCOMPARE(disk->written(), Speeds());
    QVERIFY(!QFile::exists(fileName));
    disk->release.release();
    QTRY_COMPARE(disk->written(), Speeds{21}); // nothing is lost
    QTRY_COMPARE(disk.use_count(), 1); // and at last the store is deleted
}

void tst_SettingsStore::a_failed_write_is_logged_once()
{
    DebugLines log;
    const auto store = makeStore(0ms);
    const auto failAt = [&](int speed) {
        const int failed = disk->failed;
        settings::write(*store, settings::ballSpeed, speed);
        QTRY_COMPARE(int(disk->failed), failed + 1);
    };
    const auto succeedAt = [&](int speed) {
        settings::write(*store, settings::ballSpeed, speed);
        QTRY_VERIFY(disk->written().endsWith(speed));
    };
    const QStringList once = {
        u"The settings file cannot be written: \"No space left on device\""_s};
    disk->setError(u"No space left on device"_s);
    failAt(21);
    failAt(22);
    disk->setError({});
    succeedAt(23);
    QCOMPARE(log.takeAll(), once);
    disk->setError(u"No space left on device"_s);
    failAt(24);
    disk->setError({});
    succeedAt(25);
    QCOMPARE(log.takeAll(), once);
}

void tst_SettingsStore::a_failed_write_at_the_end_is_logged()
{
    DebugLines log;
    disk->setError(u"No space left on device"_s);
    settings::write(*makeStore(), settings::ballSpeed, 21);
    QCOMPARE(log.takeAll(),
        QStringList{u"The settings file cannot be written: \"No space left on device\""_s});
}

void tst_SettingsStore::a_failed_write_is_tried_again_at_the_next_change()
{
    const DebugLines log;
    const auto store = makeStore(0ms);
    disk->setError(u"No space left on device"_s);
    settings::write(*store, settings::ballSpeed, 21);
    QTRY_COMPARE(int(disk->failed), 1);
    disk->setError({});
    settings::write(*store, settings::sensitivity[Side::Left], 400);
    QTRY_COMPARE(disk->written(), Speeds{21});
}

void tst_SettingsStore::a_failed_write_is_tried_again_at_the_end()
{
    const DebugLines log;
    {
        const auto store = makeStore(0ms);
        disk->setError(u"No space left on device"_s);
        settings::write(*store, settings::ballSpeed, 21);
        QTRY_COMPARE(int(disk->failed), 1);
        disk->setError({});
    }
    QCOMPARE(disk->written(), Speeds{21});
}

void tst_SettingsStore::after_a_failed_write_the_end_leaves_the_file_alone()
{
    const QByteArray content = "[General]\nBallSpeed=20\n";
    QCOMPARE(settingsfile::replace(fileName, content), QString());
    const DebugLines log;
    disk->setError(u"No space left on device"_s);
    settings::write(*makeStore(), settings::ballSpeed, 21);
    QCOMPARE(int(disk->failed), 1);
    QCOMPARE(settingsfile::contentOf(fileName), content);
}

void tst_SettingsStore::the_end_of_the_application_waits_for_a_slow_disk()
{
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(), {endSlowly});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(settingsfile::contentOf(fileName).contains("BallSpeed=21"));
}

void tst_SettingsStore::a_writer_that_is_destroyed_writes_what_is_pending()
{
    SettingsWriter(Disk::of(disk), never).put({{settings::ballSpeed.key, 21}});
    QCOMPARE(disk->written(), Speeds{21});
}

void tst_SettingsStore::without_its_folder_the_file_cannot_be_written()
{
    const QVariantMap values = {{settings::ballSpeed.key, 21}};
    QVERIFY(!settingsfile::write(u"missing/.pong"_s, values).isEmpty());
    QVERIFY(WorkingFolder::files().isEmpty());
}

namespace {

/// A program whose disk is slower than the end of its store.
void changeAndEndSlowly()
{
    const auto write = [](const QVariantMap &values) {
        std::this_thread::sleep_for(2 * SettingsWriter::longestEnd);
        return settingsfile::write(QDir::current().filePath(fileName), values);
    };
    const settings::Store store(new SettingsStore(fileName, write));
    settings::write(*store, settings::ballSpeed, 21);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(endSlowly)) {
        changeAndEndSlowly();
        return 0;
    }
    tst_SettingsStore test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_settingsstore.moc"
