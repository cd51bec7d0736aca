#include "runningwindow.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

const QString activeLook =
    u"QPushButton {background-color:#FA8;} QPushButton:hover {background-color:#FC8;} "
    "QPushButton:pressed {border:1px ridge #F00; background-color:#F97;}"_s;
const QString idleLook =
    u"QPushButton {background-color:#79F;} QPushButton:hover {background-color:#7BF;} "
    "QPushButton:pressed {border:1px ridge #03F; background-color:#67F;}"_s;

RunningWindow::RunningWindow(const QByteArray &settingsFile)
    : m_previousFolder(QDir::currentPath())
{
    QVERIFY(m_folder.isValid() && QDir::setCurrent(m_folder.path()));
    if (settingsFile.isEmpty())
        return;
    QFile file(u".pong"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(settingsFile), settingsFile.size());
}

RunningWindow::~RunningWindow()
{
    close();
    QDir::setCurrent(m_previousFolder);
}

void RunningWindow::open()
{
    window = std::make_unique<MainWindow>();
    window->show();
    // Switching the output is the last thing that the first load does with the widgets.
    QTRY_VERIFY(!find(u"enableButton"_s)->styleSheet().isEmpty());
}

void RunningWindow::waitForStatus()
{
    QTRY_VERIFY(text(u"statusLabel"_s) != u"BEYOND Not started"_s);
}

void RunningWindow::waitForFrames(int count)
{
    const int enough = host.framesSent + count;
    QTRY_VERIFY(host.framesSent >= enough);
}

void RunningWindow::close()
{
    window.reset();
}

void RunningWindow::tick(int count) const
{
    for (int i = 0; i < count; ++i)
        QMetaObject::invokeMethod(&game(), &Pong::UpdatePongDisplay, Qt::BlockingQueuedConnection);
}

void RunningWindow::checkHost() const
{
    QMetaObject::invokeMethod(&game(), &Pong::checkHost, Qt::BlockingQueuedConnection);
    QCoreApplication::processEvents();
}

void RunningWindow::click(const QString &name) const
{
    auto *button = find<QAbstractButton>(name);
    // A radio button takes a click on its mark, which is to the left.
    QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
}

QString RunningWindow::text(const QString &name) const
{
    return find(name)->property("text").toString();
}

QString RunningWindow::setting(const QString &key) const
{
    return QSettings(m_folder.filePath(u".pong"_s), QSettings::IniFormat).value(key).toString();
}
