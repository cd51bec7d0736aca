#include "mainwindow.h"

#include "badbey.h"
#include "cxboxcontroller.h"
#include "mididevices.h"
#include "settings.h"
#include "ui_mainwindow.h"

#include <QCloseEvent>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

namespace {

/// How long the last ticks have, in milliseconds, to leave the laser dark.
constexpr int farewell = 99;

PlayerSide leftPlayer(const Ui::MainWindow &ui)
{
    return {
        .side = 0,
        .midiRadio = ui.leftMidiRadio,
        .xboxRadio = ui.leftXboxRadio,
        .keyboardRadio = ui.leftKeyboardRadio,
        .midiList = ui.midiLComboBox,
        .xboxList = ui.xboxLComboBox,
        .learnMove = ui.learnCCL,
        .learnStart = ui.learnStartL,
        .learnUp = ui.learnUpL,
        .learnDown = ui.learnDownL,
        .bits = ui.bitsLCheck,
        .sensitivity = ui.sensLSlider,
        .midiIn = &midiInLeft,
    };
}

PlayerSide rightPlayer(const Ui::MainWindow &ui)
{
    return {
        .side = 1,
        .midiRadio = ui.rightMidiRadio,
        .xboxRadio = ui.rightXboxRadio,
        .keyboardRadio = ui.rightKeyboardRadio,
        .midiList = ui.midiRComboBox,
        .xboxList = ui.xboxRComboBox,
        .learnMove = ui.learnCCR,
        .learnStart = ui.learnStartR,
        .learnUp = ui.learnUpR,
        .learnDown = ui.learnDownR,
        .bits = ui.bitsRCheck,
        .sensitivity = ui.sensRSlider,
        .midiIn = &midiInRight,
    };
}

std::unique_ptr<Ui::MainWindow> buildForm(MainWindow *window)
{
    auto form = std::make_unique<Ui::MainWindow>();
    form->setupUi(window);
    return form;
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , ui(buildForm(this))
    , players{leftPlayer(*ui), rightPlayer(*ui)}
{
    QApplication::setStyle("windowsvista");
    store = settings::open();
    pong = std::make_unique<Pong>();
    // A learnt key works whichever widget has the focus.
    for (QObject *object : findChildren<QObject *>())
        object->installEventFilter(this);
    makeReadable();
    connectGame();
    readSettings();
    ui->statusbar->addPermanentWidget(ui->statusLabel, 1);
    ui->statusLabel->setText(tr("BEYOND Not started"));
    // Only now, so that showing the stored modes does not apply them: the devices are not listed.
    for (const PlayerSide &player : players) {
        for (const QRadioButton *radio : {player.midiRadio, player.xboxRadio, player.keyboardRadio})
            connect(radio, &QRadioButton::toggled, this, [this] { applyControlMode(); });
    }
    QTimer::singleShot(0, this, &MainWindow::FirstLoad);
}

void MainWindow::makeReadable()
{
    for (const PlayerSide &player : players) {
        // The form's lists are as wide as their placeholders, too narrow for a pad's number.
        for (QComboBox *list : {player.midiList, player.xboxList})
            list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        // The form's style has no rule for check boxes, which are dark on dark by the system's.
        player.bits->setStyleSheet(QStringLiteral("QCheckBox {color:#CCC;}"));
    }
}

void MainWindow::connectGame()
{
    connect(pong->binding(), &BadBey::reqExit, this, &MainWindow::RequestExit);
    connect(pong.get(), &Pong::beyCoStatus, this, &MainWindow::RefreshBeyondStatus);
    connect(ui->speedSlider, &QSlider::valueChanged, this, &MainWindow::speedChanged);
}

void MainWindow::readSettings()
{
    ui->speedSlider->setValue(settings::read(*store, settings::ballSpeed));
    for (const PlayerSide &player : players) {
        player.sensitivity->setValue(
            settings::read(*store, settings::sensitivity[size_t(player.side)]));
        const QString mode = settings::read(*store, settings::controlMode[size_t(player.side)]);
        QRadioButton *radio = mode == controlModeName(ControlMode::Midi) ? player.midiRadio
            : mode == controlModeName(ControlMode::Xbox)                 ? player.xboxRadio
                                                                         : player.keyboardRadio;
        radio->setChecked(true);
    }
}

void MainWindow::FirstLoad()
{
    if (closed)
        return;
    // Paint the window before the slow device scan, without waiting for the event that reports it
    // to be on screen: an event loop would let the game's own first load run before this one.
    setAttribute(Qt::WA_Mapped, isVisible());
    repaint();
    fillMidiLists();
    fillXboxLists();
    for (const PlayerSide &player : players)
        connect(player.midiIn, &MidiDevIn::midiReceived, this, &MainWindow::ReadMidiData);
    refreshLearnButtons();
    applyControlMode(); // processes events
    if (closed)
        return;
    on_showButton_clicked();
    on_enableButton_clicked();
    loaded = true;
    if (libraryMissing)
        RequestExit();
    if (!closed && CheckForUpdate())
        close();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    QMainWindow::closeEvent(event);
    closed = true;
    // Qt quits with the last window by a posted event, which the next nested event loop discards.
    // This leaves every event loop now and makes each later one return at once, so that no
    // download and no message box keeps the program.
    if (QGuiApplication::quitOnLastWindowClosed())
        QCoreApplication::exit();
}

MainWindow::~MainWindow()
{
    closed = true;
    for (const PlayerSide &player : players)
        settings::write(
            *store, settings::sensitivity[size_t(player.side)], player.sensitivity->value());
    // What is changed or learnt from here on could not be kept.
    setEnabled(false);
    cancelLearn();
    store.reset();
    while (!xboxControllers.isEmpty())
        delete xboxControllers.takeLast();
    pong->gameShown = false;
    disconnect(pong.get(), &Pong::beyCoStatus, this, &MainWindow::RefreshBeyondStatus);
    QElapsedTimer elapsed;
    for (elapsed.start(); elapsed.elapsed() <= farewell;)
        QCoreApplication::processEvents();
    for (const PlayerSide &player : players)
        disconnect(player.midiIn, &MidiDevIn::midiReceived, this, &MainWindow::ReadMidiData);
    for (const PlayerSide &player : players) {
        // A device that went on sending would outlive the object that it sends to.
        if (player.midiIn->getDeviceIndex() < 0)
            continue;
        player.midiIn->stop();
        player.midiIn->close();
    }
    pong.reset();
}

void MainWindow::speedChanged(int value)
{
    pong->ballSpeed = value;
    settings::write(*store, settings::ballSpeed, value);
}

void MainWindow::on_resetButton_clicked()
{
    pong->resetMatch();
}

void MainWindow::RequestExit()
{
    if (closed)
        return;
    // The first load processes events before its widgets have their texts; it comes back here.
    libraryMissing = true;
    if (!loaded)
        return;
    disconnect(pong.get(), &Pong::beyCoStatus, this, &MainWindow::RefreshBeyondStatus);
    QMessageBox::critical(nullptr, tr("BEYOND DLL Not Found"),
        tr("BEYOND DLL was not Found, the program will exit"), QMessageBox::Ok);
    close();
}
