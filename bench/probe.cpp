#include "operator.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGenericPlugin>
#include <QKeyEvent>
#include <QMainWindow>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <memory>

using namespace std::chrono_literals;

// Observes an unmodified program from the inside: Qt loads this plugin if the environment names it.
// It reports when the main window is painted first, and when it first answers. With
// RALLYVANE_BENCH_PLAY it then starts a point like an operator and a player; with
// RALLYVANE_BENCH_OPERATE it then works at the window, see Operator.

namespace {

using Clock = std::chrono::steady_clock;

/// Prints a line to standard output with a time of the machine's steady clock.
void tell(const char *what, Clock::time_point when)
{
    using namespace std::chrono;
    const auto time = duration_cast<nanoseconds>(when.time_since_epoch()).count();
    std::printf("%s %lld\n", what, static_cast<long long>(time));
    std::fflush(stdout);
}

class Probe : public QObject
{
    Q_OBJECT

public:
    Probe() { QCoreApplication::instance()->installEventFilter(this); }

    /// Follows the first painting: one event for the window, then one for each widget in it.
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        if (auto *window = qobject_cast<QMainWindow *>(object)) {
            if (m_window) { // painted a second time
                QCoreApplication::instance()->removeEventFilter(this);
                return false;
            }
            m_window = window;
            // The window's thread may do much else before it takes this from its queue.
            QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::HighEventPriority);
        }
        if (m_window)
            m_painted = Clock::now();
        return false;
    }

protected:
    void customEvent(QEvent * /*event*/) override
    {
        QCoreApplication::instance()->removeEventFilter(this);
        tell("painted", m_painted);
        tell("answering", Clock::now());
        if (!qEnvironmentVariableIsSet("RALLYVANE_BENCH_PLAY")) {
            operate();
            return;
        }
        QObject::connect(&m_step, &QTimer::timeout, this, &Probe::play);
        m_step.start(300ms);
    }

private:
    // One step at a time: output on, game shown, score display left, ball served. The left player's
    // start key is D in the settings of bench/run.
    void play()
    {
        auto *enable = m_window->findChild<QAbstractButton *>(QStringLiteral("enableButton"));
        auto *show = m_window->findChild<QAbstractButton *>(QStringLiteral("showButton"));
        if (!enable || !show || !enable->isEnabled())
            return; // the host is not found yet
        if (!enable->isChecked()) {
            enable->click();
        } else if (!show->isChecked()) {
            show->click();
        } else {
            for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease})
                QCoreApplication::postEvent(show, new QKeyEvent(type, Qt::Key_D, {}));
            if (++m_presses == 2) {
                m_step.stop();
                tell("playing", Clock::now());
                operate();
            }
        }
    }

    void operate()
    {
        const QByteArray action = qgetenv("RALLYVANE_BENCH_OPERATE");
        if (!action.isEmpty())
            m_operator = std::make_unique<Operator>(m_window, action);
    }

    QMainWindow *m_window = nullptr;
    Clock::time_point m_painted;
    std::unique_ptr<Operator> m_operator;
    QTimer m_step;
    int m_presses = 0;
};

} // namespace

class ProbePlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "probe.json")

public:
    QObject *create(const QString & /*name*/, const QString & /*arguments*/) override
    {
        return new Probe;
    }
};

#include "probe.moc"
