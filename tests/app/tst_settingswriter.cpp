#include "debuglines.h"
#include "settingsstore.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <atomic>
#include <mutex>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A disk whose writes take as long as the test wants.
struct Disk
{
    /// What a SettingsStore calls. The disk outlives a store that does not wait for it.
    static SettingsWriter::Replace of(const std::shared_ptr<Disk> &disk)
    {
        return [disk](const QByteArray &text) { return disk->replace(text); };
    }

    QString replace(const QByteArray &text)
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
        files.append(text);
        return {};
    }

    /// Every content that the file has had.
    QByteArrayList written()
    {
        const std::lock_guard lock(mutex);
        return files;
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
    QByteArrayList files;
    QString error;
};

constexpr auto never = 24h; ///< a rest that no test waits for

QByteArray fileWith(int speed)
{
    return "[General]\nBallSpeed=" + QByteArray::number(speed) + "\nSensL=300\n";
}

} // namespace

class tst_SettingsWriter : public QObject
{
    Q_OBJECT

private slots:
    void init() { disk = std::make_shared<Disk>(); }

    void a_slow_disk_holds_up_no_change();
    void a_change_is_written_soon_without_a_request();
    void changes_are_held_back_and_written_together();
    void changes_without_end_are_written_meanwhile();
    void changes_during_a_write_are_written_after_it();
    void without_a_change_nothing_is_written();
    void the_end_writes_what_is_pending();
    void the_end_does_not_wait_for_a_hanging_disk();
    void a_flush_says_whether_the_disk_was_fast_enough();
    void a_failed_write_is_logged_once();
    void a_failed_write_is_tried_again_at_the_next_change();
    void a_failed_write_is_tried_again_at_the_end();
    void a_store_without_a_file_keeps_changes_in_memory();
    void a_key_is_found_in_any_case();

private:
    SettingsStore makeStore(std::chrono::milliseconds rest = never) const
    {
        return SettingsStore({{u"BallSpeed"_s, 20}, {u"SensL"_s, 300}}, Disk::of(disk), rest);
    }

    std::shared_ptr<Disk> disk;
};

void tst_SettingsWriter::a_slow_disk_holds_up_no_change()
{
    SettingsStore store = makeStore(0ms);
    disk->isSlow = true;
    store.setValue(u"BallSpeed"_s, 21);
    QTRY_COMPARE(int(disk->begun), 1);
    for (int speed = 22; speed <= 30; ++speed)
        store.setValue(u"BallSpeed"_s, speed);
    QCOMPARE(store.value(u"BallSpeed"_s).toInt(), 30);
    QCOMPARE(disk->written(), QByteArrayList());
    QVERIFY(!disk->onCaller);
    disk->isSlow = false;
    disk->release.release();
    QVERIFY(store.flush());
    QCOMPARE(disk->written().constLast(), fileWith(30));
}

void tst_SettingsWriter::a_change_is_written_soon_without_a_request()
{
    SettingsStore store = makeStore(SettingsWriter::usualRest);
    QVERIFY(SettingsWriter::usualRest <= 200ms);
    store.setValue(u"BallSpeed"_s, 21);
    QTRY_COMPARE(disk->written(), QByteArrayList{fileWith(21)});
}

void tst_SettingsWriter::changes_are_held_back_and_written_together()
{
    SettingsStore store = makeStore();
    for (int speed = 21; speed <= 30; ++speed)
        store.setValue(u"BallSpeed"_s, speed);
    // A store without a rest, changed later, serves as the clock.
    const auto other = std::make_shared<Disk>();
    SettingsStore clock({}, Disk::of(other), 0ms);
    clock.setValue(u"BallSpeed"_s, 21);
    QTRY_COMPARE(int(other->begun), 1);
    QCOMPARE(int(disk->begun), 0);
    QVERIFY(store.flush());
    QCOMPARE(disk->written(), QByteArrayList{fileWith(30)});
}

void tst_SettingsWriter::changes_without_end_are_written_meanwhile()
{
    // The rest is much longer than the time between two changes, even on a busy machine.
    SettingsStore store = makeStore(1s);
    QElapsedTimer elapsed;
    elapsed.start();
    for (int speed = 0; disk->begun == 0 && elapsed.elapsed() < 30000; ++speed)
        store.setValue(u"BallSpeed"_s, speed);
    QCOMPARE(int(disk->begun), 1);
}

void tst_SettingsWriter::changes_during_a_write_are_written_after_it()
{
    SettingsStore store = makeStore(0ms);
    disk->isSlow = true;
    store.setValue(u"BallSpeed"_s, 21);
    QTRY_COMPARE(int(disk->begun), 1);
    store.setValue(u"BallSpeed"_s, 22);
    store.setValue(u"BallSpeed"_s, 23);
    disk->release.release(2);
    QTRY_COMPARE(disk->written(), (QByteArrayList{fileWith(21), fileWith(23)}));
}

void tst_SettingsWriter::without_a_change_nothing_is_written()
{
    makeStore(0ms).flush();
    QCOMPARE(int(disk->begun), 0);
}

void tst_SettingsWriter::the_end_writes_what_is_pending()
{
    {
        SettingsStore store = makeStore();
        store.setValue(u"BallSpeed"_s, 21);
    }
    QCOMPARE(disk->written(), QByteArrayList{fileWith(21)});
    QVERIFY(!disk->onCaller);
}

void tst_SettingsWriter::the_end_does_not_wait_for_a_hanging_disk()
{
    disk->isSlow = true;
    {
        SettingsStore store = makeStore();
        store.setValue(u"BallSpeed"_s, 21);
        store.startWriting();
        QTRY_COMPARE(int(disk->begun), 1);
    }
    QCOMPARE(disk->written(), QByteArrayList()); // still hanging, but the store is destroyed
    QVERIFY(SettingsWriter::longestEnd <= 300ms);
    disk->release.release();
    QTRY_COMPARE(disk->written(), QByteArrayList{fileWith(21)}); // nothing is lost
}

void tst_SettingsWriter::a_flush_says_whether_the_disk_was_fast_enough()
{
    SettingsStore store = makeStore();
    disk->isSlow = true;
    store.setValue(u"BallSpeed"_s, 21);
    QVERIFY(!store.flush(1ms));
    disk->release.release();
    QVERIFY(store.flush());
}

void tst_SettingsWriter::a_failed_write_is_logged_once()
{
    DebugLines log;
    SettingsStore store = makeStore();
    const auto change = [&] {
        store.setValue(u"BallSpeed"_s, store.value(u"BallSpeed"_s).toInt() + 1);
        QVERIFY(store.flush());
    };
    disk->setError(u"No space left on device"_s);
    change();
    change();
    const QStringList once = {
        u"The settings file cannot be written: \"No space left on device\""_s};
    QCOMPARE(log.takeAll(), once);
    disk->setError({});
    change();
    disk->setError(u"No space left on device"_s);
    change();
    QCOMPARE(log.takeAll(), once);
}

void tst_SettingsWriter::a_failed_write_is_tried_again_at_the_next_change()
{
    const DebugLines log;
    SettingsStore store = makeStore();
    disk->setError(u"No space left on device"_s);
    store.setValue(u"BallSpeed"_s, 21);
    QVERIFY(store.flush());
    disk->setError({});
    store.setValue(u"SensL"_s, 400);
    QVERIFY(store.flush());
    QCOMPARE(disk->written(), QByteArrayList{"[General]\nBallSpeed=21\nSensL=400\n"});
}

void tst_SettingsWriter::a_failed_write_is_tried_again_at_the_end()
{
    const DebugLines log;
    {
        SettingsStore store = makeStore(0ms);
        disk->setError(u"No space left on device"_s);
        store.setValue(u"BallSpeed"_s, 21);
        QTRY_COMPARE(int(disk->failed), 1);
        disk->setError({});
    }
    QCOMPARE(disk->written(), QByteArrayList{fileWith(21)});
}

void tst_SettingsWriter::a_store_without_a_file_keeps_changes_in_memory()
{
    SettingsStore store({{u"BallSpeed"_s, 20}});
    store.setValue(u"BallSpeed"_s, 21);
    store.startWriting();
    QVERIFY(store.flush());
    QCOMPARE(store.value(u"BallSpeed"_s).toInt(), 21);
}

void tst_SettingsWriter::a_key_is_found_in_any_case()
{
    SettingsStore store({{u"ballspeed"_s, 25}, {u"SENSL"_s, 1}, {u"SensL"_s, 2}}, Disk::of(disk));
    QCOMPARE(store.value(u"BallSpeed"_s).toInt(), 25);
    QCOMPARE(store.value(u"SensL"_s).toInt(), 2); // the exact one if there is one
    QCOMPARE(store.value(u"SensR"_s, 512).toInt(), 512);
    store.setValue(u"BallSpeed"_s, 30);
    QVERIFY(store.flush());
    QCOMPARE(disk->written(), QByteArrayList{"[General]\nSENSL=1\nSensL=2\nballspeed=30\n"});
}

QTEST_GUILESS_MAIN(tst_SettingsWriter)
#include "tst_settingswriter.moc"
