// The real program, except that its window closes by itself, its message boxes answer themselves,
// and the update server and name lookups are replaced. Environment variables control this:
//
//   ENDING_SERVER        the update server, a host name with or without a port
//   ENDING_CERTIFICATE   the file with the only trusted certificate
//   ENDING_LOOKUP        "hangs": name lookups never return; not on Windows
//   ENDING_DELAY         delay in ms of the first load, before its update check
//   ENDING_ANSWER        delay in ms before a message box is answered
//   ENDING_CLOSE         when to close the window, in ms after it was shown, or "check": as soon as
//                        the update check processes events; never if empty
//
// Prints "closed" on standard output when the window closes.

#include "updatehost.h"

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QThread>
#include <QTimer>

#include <cstdio>

namespace {

/// Watches windows being shown and closed, without changes to the program's own code.
class Operator : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (auto *box = qobject_cast<QMessageBox *>(object); box && event->type() == QEvent::Show)
            QTimer::singleShot(
                qEnvironmentVariableIntValue("ENDING_ANSWER"), box, [box] { answer(*box); });
        auto *window = qobject_cast<QMainWindow *>(object);
        if (window && event->type() == QEvent::Show)
            closeLater(window);
        if (window && event->type() == QEvent::Close) {
            std::puts("closed");
            std::fflush(stdout);
        }
        return false;
    }

private:
    static void answer(const QMessageBox &box)
    {
        for (const auto button : {QMessageBox::Yes, QMessageBox::Ok}) {
            if (QAbstractButton *found = box.button(button))
                found->click();
        }
    }

    /// With 0 ms the window closes when the first load, which is already posted, first processes
    /// events.
    static void closeLater(QMainWindow *window)
    {
        bool given = false;
        const int delay = qEnvironmentVariableIntValue("ENDING_CLOSE", &given);
        if (given)
            QTimer::singleShot(delay, window, &QWidget::close);
    }
};

void watch()
{
    qApp->installEventFilter(new Operator(qApp));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)

QString updateHost()
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(
        QSslCertificate::fromPath(qEnvironmentVariable("ENDING_CERTIFICATE")));
    QSslConfiguration::setDefaultConfiguration(configuration);
    QThread::msleep(ulong(qEnvironmentVariableIntValue("ENDING_DELAY")));
    if (qEnvironmentVariable("ENDING_CLOSE") == QLatin1StringView("check"))
        QTimer::singleShot(0, qApp, &QApplication::closeAllWindows);
    return qEnvironmentVariable("ENDING_SERVER");
}
