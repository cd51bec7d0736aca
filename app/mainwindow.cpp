#include "mainwindow.h"

#include "badbey.h"
#include "lasercontrols.h"
#include "looks.h"
#include "mididevices.h"
#include "playercontrols.h"
#include "restingfocus.h"
#include "settings.h"
#include "side.h"
#include "ui_mainwindow.h"

#include <QCloseEvent>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

namespace {

/// Grace period, in milliseconds, for the final ticks to blank the laser.
constexpr int shutdownGraceMs = 99;

std::unique_ptr<Ui::MainWindow> buildForm(MainWindow *window)
{
    auto form = std::make_unique<Ui::MainWindow>();
    form->setupUi(window);
    return form;
}

LaserWidgets laserWidgets(const Ui::MainWindow &ui)
{
    return {
        .enableButton = ui.enableButton,
        .showButton = ui.showButton,
        .resetButton = ui.resetButton,
        .zoneComboBox = ui.zoneComboBox,
        .statusLabel = ui.statusLabel,
    };
}

PlayerWidgets leftWidgets(const Ui::MainWindow &ui)
{
    return {
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
    };
}

PlayerWidgets rightWidgets(const Ui::MainWindow &ui)
{
    return {
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
    };
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , ui(buildForm(this))
{
    QApplication::setStyle("windowsvista");
    store = settings::open();
    pong = std::make_unique<Pong>();
    laserControls = std::make_unique<LaserControls>(laserWidgets(*ui), *pong);
    playerControls = std::make_unique<PlayerControls>(
        PerSide<PlayerWidgets>{{leftWidgets(*ui), rightWidgets(*ui)}}, *pong, *store);
    new RestingFocus(ui->centralwidget);
    // A learnt key works whichever widget has the focus. Installed last, so that this filter sees
    // every event before the other takes some away.
    for (QObject *object : findChildren<QObject *>())
        object->installEventFilter(this);
    makeReadable();
    connectGame();
    ui->speedSlider->setValue(settings::read(*store, settings::ballSpeed));
    playerControls->readSettings();
    ui->statusbar->addPermanentWidget(ui->statusLabel, 1);
    ui->statusLabel->setText(tr("BEYOND Not started"));
    connectControls();
    QTimer::singleShot(0, this, &MainWindow::FirstLoad);
}

void MainWindow::makeReadable()
{
    // The form sizes its lists to their placeholders, too narrow to show a pad's number.
    for (QComboBox *list :
        {ui->midiLComboBox, ui->xboxLComboBox, ui->midiRComboBox, ui->xboxRComboBox})
        list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    for (QCheckBox *bits : {ui->bitsLCheck, ui->bitsRCheck})
        looks::apply(bits, looks::checkBox);
    for (QPushButton *button : findChildren<QPushButton *>())
        looks::fadeWhileDisabled(button);
}

void MainWindow::connectGame()
{
    connect(pong->binding(), &BadBey::reqExit, this, &MainWindow::RequestExit);
    connect(pong.get(), &Pong::beyCoStatus, this, &MainWindow::RefreshBeyondStatus);
    connect(ui->speedSlider, &QSlider::valueChanged, this, &MainWindow::speedChanged);
}

/// Called after the stored settings are shown: showing the stored modes must not apply them,
/// because the devices are not listed yet.
void MainWindow::connectControls()
{
    for (const QRadioButton *radio : {ui->leftMidiRadio, ui->rightMidiRadio, ui->leftXboxRadio,
             ui->rightXboxRadio, ui->leftKeyboardRadio, ui->rightKeyboardRadio})
        connect(
            radio, &QRadioButton::toggled, this, [this] { playerControls->applyControlMode(); });
    connect(
        ui->midiLComboBox, &QComboBox::currentIndexChanged, this, &MainWindow::midiLComboChanged);
    connect(
        ui->midiRComboBox, &QComboBox::currentIndexChanged, this, &MainWindow::midiRComboChanged);
    for (const QComboBox *list : {ui->xboxLComboBox, ui->xboxRComboBox})
        connect(list, &QComboBox::currentIndexChanged, this, &MainWindow::xboxChanged);
    connect(ui->zoneComboBox, &QComboBox::currentIndexChanged, this, &MainWindow::zoneChanged);
}

void MainWindow::FirstLoad()
{
    if (closed)
        return;
    // Paint the window before the slow device scan, without waiting for the expose event: an event
    // loop would let the game's own first load run before this one.
    setAttribute(Qt::WA_Mapped, isVisible());
    repaint();
    playerControls->fillMidiLists();
    playerControls->fillXboxLists();
    for (const MidiDevIn *device : {&midiInLeft, &midiInRight})
        connect(device, &MidiDevIn::midiReceived, this, &MainWindow::ReadMidiData);
    playerControls->refreshLearnButtons();
    playerControls->applyControlMode(); // processes events
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
    // Qt quits after the last window closes by posting an event, which the next nested event loop
    // discards. exit() leaves every event loop now and makes each later one return at once, so
    // that no download or message box keeps the program running.
    if (QGuiApplication::quitOnLastWindowClosed())
        QCoreApplication::exit();
}

MainWindow::~MainWindow()
{
    closed = true;
    playerControls->writeSettings();
    // Changes made from here on could not be saved.
    setEnabled(false);
    playerControls->cancelLearn();
    store.reset();
    playerControls->releaseGamepads();
    pong->gameShown = false;
    disconnect(pong.get(), &Pong::beyCoStatus, this, &MainWindow::RefreshBeyondStatus);
    QElapsedTimer elapsed;
    for (elapsed.start(); elapsed.elapsed() <= shutdownGraceMs;)
        QCoreApplication::processEvents();
    for (const MidiDevIn *device : {&midiInLeft, &midiInRight})
        disconnect(device, &MidiDevIn::midiReceived, this, &MainWindow::ReadMidiData);
    playerControls->closeMidiDevices();
    pong.reset();
}

bool MainWindow::eventFilter(QObject * /*obj*/, QEvent *event)
{
    return playerControls->captureKey(event);
}

void MainWindow::on_showButton_clicked()
{
    laserControls->showGame();
}

void MainWindow::on_learnCCL_clicked()
{
    playerControls->learnOrCancel(Control::Move, Side::Left);
}

void MainWindow::on_learnStartL_clicked()
{
    playerControls->learnOrCancel(Control::Start, Side::Left);
}

void MainWindow::on_learnCCR_clicked()
{
    playerControls->learnOrCancel(Control::Move, Side::Right);
}

void MainWindow::on_learnStartR_clicked()
{
    playerControls->learnOrCancel(Control::Start, Side::Right);
}

void MainWindow::midiLComboChanged(int index)
{
    playerControls->chooseMidiDevice(Side::Left, index);
}

void MainWindow::midiRComboChanged(int index)
{
    playerControls->chooseMidiDevice(Side::Right, index);
}

void MainWindow::xboxChanged(int /*index*/)
{
    playerControls->xboxChanged();
}

void MainWindow::xboxSetStartSource(int button, bool left)
{
    playerControls->xboxSetStartSource(button, left ? Side::Left : Side::Right);
}

void MainWindow::xboxSetControllerSource(int control, bool left)
{
    playerControls->xboxSetControllerSource(control, left ? Side::Left : Side::Right);
}

void MainWindow::zoneChanged(int iZone)
{
    laserControls->chooseZone(iZone);
}

void MainWindow::ReadMidiData(
    int play, unsigned char data1, unsigned char data2, unsigned char data3)
{
    playerControls->readMidiData(play, data1, data2, data3);
}

void MainWindow::speedChanged(int value)
{
    pong->ballSpeed = value;
    settings::write(*store, settings::ballSpeed, value);
}

void MainWindow::RefreshBeyondStatus(BeyondState beState)
{
    laserControls->RefreshBeyondStatus(beState);
}

void MainWindow::RequestExit()
{
    if (closed)
        return;
    // The first load processes events before its widgets have their texts; it calls this again.
    libraryMissing = true;
    if (!loaded)
        return;
    disconnect(pong.get(), &Pong::beyCoStatus, this, &MainWindow::RefreshBeyondStatus);
    QMessageBox::critical(nullptr, tr("BEYOND DLL Not Found"),
        tr("BEYOND DLL was not Found, the program will exit"), QMessageBox::Ok);
    close();
}

void MainWindow::on_enableButton_clicked()
{
    laserControls->switchOutput();
}

void MainWindow::on_resetButton_clicked()
{
    pong->resetMatch();
}

void MainWindow::on_learnUpL_clicked()
{
    playerControls->learnOrCancel(Control::Up, Side::Left);
}

void MainWindow::on_learnDownL_clicked()
{
    playerControls->learnOrCancel(Control::Down, Side::Left);
}

void MainWindow::on_learnUpR_clicked()
{
    playerControls->learnOrCancel(Control::Up, Side::Right);
}

void MainWindow::on_learnDownR_clicked()
{
    playerControls->learnOrCancel(Control::Down, Side::Right);
}
