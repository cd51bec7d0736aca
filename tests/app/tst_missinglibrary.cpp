#include "badbey.h"
#include "runningwindow.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Answers the next message box like a user, and records its texts.
class Reader : public QObject
{
public:
    Reader()
    {
        connect(&m_timer, &QTimer::timeout, this, &Reader::look);
        m_timer.start(10);
    }

    /// Called while the box is shown, before it is answered.
    std::function<void()> meanwhile;
    int boxes = 0;
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    bool okIsDefault = false;
    QObject *parent = nullptr;

private:
    void look()
    {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        ++boxes;
        title = box->windowTitle();
        text = box->text();
        icon = box->icon();
        buttons = box->standardButtons();
        okIsDefault = box->defaultButton() == box->button(QMessageBox::Ok);
        parent = box->parent();
        if (meanwhile)
            meanwhile();
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    }

    QTimer m_timer;
};

} // namespace

/// The host's library is missing.
class tst_MissingLibrary : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void it_is_reported_and_closes_the_window_data();
    void it_is_reported_and_closes_the_window();
    void its_box_waits_for_the_first_load();
    void no_box_opens_in_a_closed_window_data();
    void no_box_opens_in_a_closed_window();
    void no_status_is_shown_once_it_is_reported();
    void it_ends_the_program();
};

void tst_MissingLibrary::initTestCase()
{
    // The test continues after a window closes.
    QApplication::setQuitOnLastWindowClosed(false);
}

void tst_MissingLibrary::it_is_reported_and_closes_the_window_data()
{
    QTest::addColumn<bool>("installed");
    QTest::addColumn<QByteArray>("missing");
    QTest::addRow("no library") << false << QByteArray();
    QTest::addRow("a library that lacks a function") << true << QByteArray("ldbGetZoneCount");
}

void tst_MissingLibrary::it_is_reported_and_closes_the_window()
{
    QFETCH(bool, installed);
    QFETCH(QByteArray, missing);
    RunningWindow running;
    running.host.installed = installed;
    running.host.missingEntryPoint = missing;
    Reader reader;
    bool openMeanwhile = false;
    reader.meanwhile = [&] { openMeanwhile = running.window->isVisible(); };
    QTest::ignoreMessage(QtDebugMsg, "DLL Not found");
    running.open();
    QTRY_VERIFY(!running.window->isVisible());
    QCOMPARE(reader.boxes, 1);
    QCOMPARE(reader.title, u"BEYOND DLL Not Found"_s);
    QCOMPARE(reader.text, u"BEYOND DLL was not Found, the program will exit"_s);
    QCOMPARE(reader.icon, QMessageBox::Critical);
    QCOMPARE(reader.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY(reader.okIsDefault); // as the only button
    QVERIFY(!reader.parent);
    QVERIFY(openMeanwhile);
}

void tst_MissingLibrary::its_box_waits_for_the_first_load()
{
    RunningWindow running;
    Reader reader;
    running.window = std::make_unique<MainWindow>();
    running.window->show();
    bool loadedBefore = true;
    // Arrives in the middle of the first load, which processes events.
    QTimer::singleShot(0, running.window.get(), [&] {
        loadedBefore = !running.find(u"enableButton"_s)->styleSheet().isEmpty();
        emit const_cast<BadBey *>(running.game().binding())->reqExit();
    });
    QStringList shown;
    reader.meanwhile = [&] {
        for (const auto &name : {u"enableButton"_s, u"showButton"_s, u"learnStartL"_s})
            shown += running.text(name);
        for (const auto &name : {u"learnUpL"_s, u"learnDownR"_s, u"bitsLCheck"_s})
            shown += running.find(name)->isVisible() ? name : QString();
    };
    QTRY_COMPARE(reader.boxes, 1);
    QVERIFY(!loadedBefore);
    QCOMPARE(shown,
        (QStringList{u"Enable Laser Output"_s, u"Show pong"_s, u"Click to learn Start"_s, QString(),
            QString(), QString()}));
    QTRY_VERIFY(!running.window->isVisible());
}

void tst_MissingLibrary::no_box_opens_in_a_closed_window_data()
{
    QTest::addColumn<bool>("destroyed");
    QTest::addRow("closed") << false;
    QTest::addRow("being destroyed") << true;
}

void tst_MissingLibrary::no_box_opens_in_a_closed_window()
{
    QFETCH(bool, destroyed);
    RunningWindow running;
    const Reader reader;
    running.open();
    running.waitForStatus();
    auto *binding = const_cast<BadBey *>(running.game().binding());
    if (destroyed) {
        bool missed = false;
        QTimer::singleShot(0, this, [&] {
            emit binding->reqExit();
            missed = true;
        });
        running.close();
        QVERIFY(missed);
    } else {
        QVERIFY(running.window->close());
        emit binding->reqExit();
    }
    QCOMPARE(reader.boxes, 0);
}

void tst_MissingLibrary::no_status_is_shown_once_it_is_reported()
{
    RunningWindow running;
    running.host.installed = false;
    Reader reader;
    QStringList texts;
    const auto report = [&] {
        emit running.game().beyCoStatus(BeyondReady);
        emit running.game().beyCoStatus(BeyondNotReady);
        QCoreApplication::processEvents();
        texts.append(running.text(u"statusLabel"_s));
    };
    reader.meanwhile = report;
    running.open();
    QTRY_VERIFY(!running.window->isVisible());
    report();
    QCOMPARE(texts, (QStringList{u"BEYOND Not started"_s, u"BEYOND Not started"_s}));
}

void tst_MissingLibrary::it_ends_the_program()
{
    RunningWindow running;
    running.host.installed = false;
    const Reader reader;
    running.window = std::make_unique<MainWindow>();
    running.window->show();
    bool stuck = false;
    QTimer patience;
    connect(&patience, &QTimer::timeout, this, [&stuck] {
        stuck = true;
        QCoreApplication::exit(1);
    });
    patience.start(60s);
    QApplication::setQuitOnLastWindowClosed(true);
    const int exitCode = QApplication::exec();
    QApplication::setQuitOnLastWindowClosed(false);
    QCOMPARE(exitCode, 0);
    QVERIFY(!stuck);
    QCOMPARE(reader.boxes, 1);
}

QTEST_MAIN(tst_MissingLibrary)
#include "tst_missinglibrary.moc"
