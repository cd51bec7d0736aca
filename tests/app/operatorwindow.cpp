#include "operatorwindow.h"

#include "settings.h"

#include <QAbstractButton>
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

OperatorWindow::OperatorWindow(const QByteArray &settingsFile)
{
    settings::restBeforeWriting = std::chrono::hours(1);
    if (!settingsFile.isEmpty())
        WorkingFolder::write(u".pong"_s, settingsFile);
}

OperatorWindow::~OperatorWindow()
{
    close();
}

void OperatorWindow::open()
{
    window = std::make_unique<MainWindow>();
    window->show();
    // Switching the output is the last change that the first load makes to the widgets.
    QTRY_VERIFY(!find(u"enableButton"_s)->styleSheet().isEmpty());
}

void OperatorWindow::waitForStatus() const
{
    QTRY_VERIFY(text(u"statusLabel"_s) != u"BEYOND Not started"_s);
}

void OperatorWindow::close()
{
    window.reset();
}

void OperatorWindow::tick(int count) const
{
    for (int i = 0; i < count; ++i)
        QMetaObject::invokeMethod(&game(), &Pong::UpdatePongDisplay, Qt::BlockingQueuedConnection);
}

void OperatorWindow::checkHost() const
{
    QMetaObject::invokeMethod(&game(), &Pong::checkHost, Qt::BlockingQueuedConnection);
    QCoreApplication::processEvents();
}

void OperatorWindow::click(const QString &name) const
{
    click(find<QAbstractButton>(name));
}

void OperatorWindow::click(QAbstractButton *button)
{
    // A radio button accepts clicks on its indicator, at its left.
    QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
}

int OperatorWindow::step(int side) const
{
    return side == 0 ? game().leftStep : game().rightStep;
}

std::optional<int> OperatorWindow::takeStart() const
{
    if (game().pointPending)
        return std::nullopt;
    const int side = game().servePhase;
    game().resetMatch();
    return side;
}

std::optional<int> OperatorWindow::awaitStart() const
{
    (void)QTest::qWaitFor([this] { return !game().pointPending; });
    return takeStart();
}

QString OperatorWindow::text(const QString &name) const
{
    return find(name)->property("text").toString();
}

QString OperatorWindow::setting(const QString &key) const
{
    return QSettings(m_folder.filePath(u".pong"_s), QSettings::IniFormat).value(key).toString();
}

void addSides()
{
    QTest::addColumn<int>("side");
    QTest::addRow("left") << 0;
    QTest::addRow("right") << 1;
}

QString sideLetter(int side)
{
    return side == 0 ? u"L"_s : u"R"_s;
}
