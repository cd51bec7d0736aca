#include "playerform.h"

#include "mididevices.h"
#include "operatorwindow.h"
#include "settings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

using namespace Qt::StringLiterals;

PlayerForm::PlayerForm()
    : m_store(settings::open())
    , m_widgets([this] {
        auto *layout = new QGridLayout(this);
        return PerSide<PlayerWidgets>{
            {makeWidgets(Side::Left, *layout), makeWidgets(Side::Right, *layout)}};
    }())
    , controls(m_widgets, game, *m_store)
{
    setFocusPolicy(Qt::StrongFocus);
    for (QObject *object : findChildren<QObject *>())
        object->installEventFilter(this);
    installEventFilter(this);
    controls.readSettings();
    for (const Side side : bothSides)
        connectWidgets(side, m_widgets[side]);
    controls.fillMidiLists();
    controls.fillXboxLists();
    for (const MidiDevIn *device : {&midiInLeft, &midiInRight})
        connect(device, &MidiDevIn::midiReceived, this,
            [this](int play, unsigned char data1, unsigned char data2, unsigned char data3) {
                controls.readMidiData(play, data1, data2, data3);
            });
    controls.refreshLearnButtons();
    controls.applyControlMode();
}

PlayerForm::~PlayerForm()
{
    controls.writeSettings();
    controls.cancelLearn();
    controls.closeMidiDevices();
}

bool PlayerForm::eventFilter(QObject * /*object*/, QEvent *event)
{
    return controls.captureKey(event);
}

PlayerWidgets PlayerForm::makeWidgets(Side side, QGridLayout &layout)
{
    const QString letter = sideLetter(sideNumber(side));
    const QString word = side == Side::Left ? u"left"_s : u"right"_s;
    auto *radios = new QWidget; // keeps the sides' radio buttons exclusive
    auto *radioLayout = new QVBoxLayout(radios);
    const int column = sideNumber(side);
    layout.addWidget(radios, 0, column);
    const auto place = [&]<class Widget>(Widget *widget, const QString &name) {
        widget->setObjectName(name);
        layout.addWidget(widget, layout.rowCount(), column);
        return widget;
    };
    const auto radio = [&](const QString &name) {
        auto *button = new QRadioButton(name);
        button->setObjectName(name);
        radioLayout->addWidget(button);
        return button;
    };
    PlayerWidgets widgets = {
        .midiRadio = radio(word + "MidiRadio"_L1),
        .xboxRadio = radio(word + "XboxRadio"_L1),
        .keyboardRadio = radio(word + "KeyboardRadio"_L1),
        .midiList = place(new QComboBox, "midi"_L1 + letter + "ComboBox"_L1),
        .xboxList = place(new QComboBox, "xbox"_L1 + letter + "ComboBox"_L1),
        .learnMove = place(new QPushButton, "learnCC"_L1 + letter),
        .learnStart = place(new QPushButton, "learnStart"_L1 + letter),
        .learnUp = place(new QPushButton, "learnUp"_L1 + letter),
        .learnDown = place(new QPushButton, "learnDown"_L1 + letter),
        .bits = place(new QCheckBox, "bits"_L1 + letter + "Check"_L1),
        .sensitivity = place(new QSlider(Qt::Horizontal), "sens"_L1 + letter + "Slider"_L1),
    };
    widgets.xboxRadio->setChecked(true);
    widgets.sensitivity->setRange(256, 768);
    widgets.sensitivity->setValue(512);
    return widgets;
}

void PlayerForm::connectWidgets(Side side, const PlayerWidgets &widgets)
{
    for (const QRadioButton *radio : {widgets.midiRadio, widgets.xboxRadio, widgets.keyboardRadio})
        connect(radio, &QRadioButton::toggled, this, [this] { controls.applyControlMode(); });
    connect(widgets.midiList, &QComboBox::currentIndexChanged, this,
        [this, side](int entry) { controls.chooseMidiDevice(side, entry); });
    connect(widgets.xboxList, &QComboBox::currentIndexChanged, this,
        [this] { controls.xboxChanged(); });
    const auto learns = [&](const QPushButton *button, Control control) {
        connect(button, &QPushButton::clicked, this,
            [this, control, side] { controls.learnOrCancel(control, side); });
    };
    learns(widgets.learnMove, Control::Move);
    learns(widgets.learnStart, Control::Start);
    learns(widgets.learnUp, Control::Up);
    learns(widgets.learnDown, Control::Down);
}
