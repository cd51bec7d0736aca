// Operates the program from outside: each line on standard input is a command, and each is answered
// with one line on standard output, "= " and the result, when it has been carried out on the GUI
// thread.
//
//   click NAME        clicks a button
//   set NAME N        moves a slider, or selects an entry of a list
//   text NAME         the text of a widget
//   count NAME        the number of entries of a list
//   key CODE          presses and releases a key
//   room BYTES        limits the size of every file written from now on; -1 removes the limit
//   clock SECONDS     sets the time of day back
//   die               the process is killed when it next replaces the settings file
//   close             closes the window

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QMainWindow>
#include <QSlider>
#include <QSocketNotifier>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <dlfcn.h>
#include <string_view>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

std::atomic<std::time_t> clockSetBack = 0;
std::atomic<bool> diesWhenReplacing = false;

QWidget *widget(const QString &name)
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *found = window->findChild<QWidget *>(name))
            return found;
    }
    return nullptr;
}

QMainWindow *mainWindow()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *found = qobject_cast<QMainWindow *>(window))
            return found;
    }
    return nullptr;
}

void limitFiles(long long bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes < 0 ? limit.rlim_max : rlim_t(bytes);
    setrlimit(RLIMIT_FSIZE, &limit);
}

void pressKey(int key)
{
    QWidget *window = mainWindow()->centralWidget();
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &event);
    }
}

QString run(const QStringList &words)
{
    const QString &command = words.value(0);
    const QString &name = words.value(1);
    if (command == "click"_L1)
        qobject_cast<QAbstractButton *>(widget(name))->click();
    else if (command == "set"_L1 && qobject_cast<QSlider *>(widget(name)))
        qobject_cast<QSlider *>(widget(name))->setValue(words.value(2).toInt());
    else if (command == "set"_L1)
        qobject_cast<QComboBox *>(widget(name))->setCurrentIndex(words.value(2).toInt());
    else if (command == "text"_L1)
        return widget(name) ? widget(name)->property("text").toString() : QString();
    else if (command == "count"_L1)
        return QString::number(qobject_cast<QComboBox *>(widget(name))->count());
    else if (command == "key"_L1)
        pressKey(name.toInt());
    else if (command == "room"_L1)
        limitFiles(name.toLongLong());
    else if (command == "clock"_L1)
        clockSetBack = name.toLong();
    else if (command == "die"_L1)
        diesWhenReplacing = true;
    else if (command == "close"_L1)
        mainWindow()->close();
    return {};
}

class Operator : public QObject
{
public:
    using QObject::QObject;

    void read()
    {
        QByteArray bytes(4096, '\0');
        const auto count = ::read(STDIN_FILENO, bytes.data(), std::size_t(bytes.size()));
        if (count <= 0) {
            m_notifier.setEnabled(false);
            return;
        }
        m_commands += bytes.first(count);
        while (m_commands.contains('\n')) {
            const qsizetype end = m_commands.indexOf('\n');
            const QString line = QString::fromUtf8(m_commands.first(end));
            m_commands.remove(0, end + 1);
            std::printf("= %s\n", qPrintable(run(line.split(u' '))));
            std::fflush(stdout);
        }
    }

private:
    QByteArray m_commands;
    QSocketNotifier m_notifier{STDIN_FILENO, QSocketNotifier::Read};
    QMetaObject::Connection m_reads =
        connect(&m_notifier, &QSocketNotifier::activated, this, &Operator::read);
};

void obey()
{
    new Operator(qApp);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(obey)

// Override the system's functions for every library of the process.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)

extern "C" __attribute__((visibility("default"))) int clock_gettime(
    clockid_t clock, timespec *time) noexcept
{
    const auto result = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    if (result == 0 && clock == CLOCK_REALTIME)
        time->tv_sec -= clockSetBack;
    return result;
}

extern "C" __attribute__((visibility("default"))) int gettimeofday(
    timeval *time, void *zone) noexcept
{
    const auto result = static_cast<int>(syscall(SYS_gettimeofday, time, zone));
    if (result == 0)
        time->tv_sec -= clockSetBack;
    return result;
}

extern "C" __attribute__((visibility("default"))) int rename(
    const char *from, const char *to) noexcept
{
    if (diesWhenReplacing && std::string_view(to).ends_with(".pong"))
        kill(getpid(), SIGKILL);
    static const auto system = reinterpret_cast<decltype(&rename)>(dlsym(RTLD_NEXT, "rename"));
    return system(from, to);
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name)
