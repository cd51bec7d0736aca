#include "looks.h"
#include "stamps.h"
#include "ui_mainwindow.h"

#include <QApplication>
#include <QMainWindow>
#include <QThread>
#include <QTimer>

using namespace std::chrono_literals;

// The game's form with nothing behind it: the same widgets, looks and fonts, and the game's
// structure, which is a thread and a 3 ms timer that posts to it. Every third tick is timestamped,
// like a frame.

namespace {

class Form : public QMainWindow
{
    Q_OBJECT

public:
    Form()
    {
        ui.setupUi(this);
        for (QComboBox *list :
            {ui.midiLComboBox, ui.xboxLComboBox, ui.midiRComboBox, ui.xboxRComboBox})
            list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        for (QCheckBox *bits : {ui.bitsLCheck, ui.bitsRCheck})
            looks::apply(bits, looks::checkBox);
        for (QPushButton *button : findChildren<QPushButton *>())
            looks::fadeWhileDisabled(button);
        ui.statusbar->addPermanentWidget(ui.statusLabel, 1);
        QTimer::singleShot(0, this, &Form::dress);
    }

public slots:
    /// Shows a report of the host as the game does.
    void RefreshBeyondStatus(int /*state*/)
    {
        ui.zoneComboBox->clear();
        ui.zoneComboBox->addItem(QStringLiteral("Select laser zone"));
        ui.zoneComboBox->addItem(QStringLiteral("BEYOND Zone 1"));
        ui.zoneComboBox->setCurrentIndex(1);
        ui.statusLabel->setText(QStringLiteral("BEYOND 1700 Started"));
        looks::apply(ui.statusLabel, looks::hostReady);
    }

private:
    /// The looks, and the widgets in use, with the settings of bench/run.
    void dress()
    {
        repaint(); // as the game, which first paints its window
        for (QPushButton *button : {ui.learnCCL, ui.learnStartL, ui.learnUpL, ui.learnDownL,
                 ui.learnCCR, ui.learnStartR, ui.learnUpR, ui.learnDownR})
            looks::apply(button, looks::notLearnt);
        for (QPushButton *button : {ui.enableButton, ui.showButton})
            looks::apply(button, looks::switchedOn);
        for (QWidget *unused : std::initializer_list<QWidget *>{
                 ui.learnCCL, ui.bitsLCheck, ui.learnUpR, ui.learnDownR})
            unused->hide();
        for (QWidget *unused : std::initializer_list<QWidget *>{
                 ui.midiLComboBox, ui.xboxLComboBox, ui.xboxRComboBox, ui.learnCCR, ui.learnStartR})
            unused->setEnabled(false);
        RefreshBeyondStatus(0);
    }

    Ui::MainWindow ui;
};

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
    Form window;
    QApplication::setStyle("windowsvista");
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

#include "emptyprogram.moc"
