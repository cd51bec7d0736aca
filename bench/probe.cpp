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
// It reports the first paint of the main window. With RALLYVANE_BENCH_PLAY it then starts a point
// like an operator and a player; with RALLYVANE_BENCH_OPERATE it then works at the window, see
// Operator.

namespace {

/// Prints a line to standard output with the time of the machine's steady clock.
void tell(const char *what)
{
    using namespace std::chrono;
    const auto now = duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
    std::printf("%s %lld\n", what, static_cast<long long>(now));
    std::fflush(stdout);
}

class Probe : public QObject
{
    Q_OBJECT

public:
    Probe() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *window = qobject_cast<QMainWindow *>(object);
        if (window && event->type() == QEvent::Paint) {
            QCoreApplication::instance()->removeEventFilter(this);
            m_window = window;
            // Arrives right after the painting that begins here, before other queued events.
            QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::HighEventPriority);
        }
        return false;
    }

protected:
    void customEvent(QEvent * /*event*/) override
    {
        tell("painted");
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
                tell("playing");
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
