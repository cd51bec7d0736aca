#include "stamps.h"

#include <QApplication>
#include <QMainWindow>
#include <QThread>
#include <QTimer>

using namespace std::chrono_literals;

// The minimal program with the game's structure: an empty window of the same size, a thread, and a
// 3 ms timer that posts to it. Every third tick is timestamped, like a frame.

namespace {

class Worker : public QObject
{
public:
    void tick()
    {
        if (++m_ticks % 3 == 0)
            m_stamps.stamp();
    }

private:
    Stamps m_stamps;
    int m_ticks = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(937, 387);
    window.show();

    QThread thread;
    Worker worker;
    worker.moveToThread(&thread);
    thread.start(QThread::InheritPriority);
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &worker, &Worker::tick);
    timer.start(3ms);

    const int result = QApplication::exec();
    thread.quit();
    thread.wait();
    return result;
}
