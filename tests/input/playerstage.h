#pragma once

#include "playerform.h"
#include "runningwindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QMap>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

/// The players' widgets and devices, on a form of their own or in the operator's window. By default
/// the host is not ready, so that no match runs in the background.
class PlayerStage : public RunningWindow
{
public:
    /// The widgets of one player.
    struct Player
    {
        int side;
        QRadioButton *midi;
        QRadioButton *xbox;
        QRadioButton *keyboard;
        QComboBox *midiList;
        QComboBox *xboxList;
        QPushButton *learnMove;
        QPushButton *learnStart;
        QPushButton *learnUp;
        QPushButton *learnDown;
        QCheckBox *bits;
        QSlider *sensitivity;
    };

    /// The content of a settings file: every key with its value as text.
    using Settings = QMap<QString, QString>;

    /// Where the widgets are.
    enum Surface { Form, WholeWindow };

    /// Sets up everything except the window.
    explicit PlayerStage(const QStringList &midiDevices = {}, int pads = 0,
        const Settings &settings = {}, Surface surface = Form);
    ~PlayerStage() override;
    PlayerStage(const PlayerStage &) = delete;
    PlayerStage &operator=(const PlayerStage &) = delete;

    /// Creates and shows the window, with its devices listed.
    void open();
    /// Destroys the window.
    void close();

    Pong &game() const override;
    QWidget *widget() const override;
    /// The controls, which receive the pads' queued signals; only on a form.
    PlayerControls *controls() const { return &m_form->controls; }
    /// Delivers a MIDI message on this thread.
    void receive(int play, int status, int number, int value) const;

    /// The window's current settings, written to the file or not.
    Settings settings() const;
    /// The settings changed since `before`; removed keys have the value "removed".
    Settings settingsSince(const Settings &before) const;
    /// The names of the buttons that show that they are learning.
    QStringList learning() const;

    /// Sends a short message from input device `device` on a separate thread and processes events.
    /// Returns the number of handles that received it.
    int sendMidi(int device, int status, int number, int value);
    /// Waits until the current state of the pad of user index `pad` has been polled and the window
    /// has processed it.
    void poll(std::size_t pad);
    /// Whether the pad of user index `pad`, 0 ... 2, is still being polled.
    bool isPolled(std::size_t pad);

    std::array<Player, 2> players = {};

private:
    Surface m_surface;
    std::unique_ptr<PlayerForm> m_form;
};

/// The settings key of byte 0 or 1 of a MIDI binding: "CC_00".
QString midiKey(const QString &control, int side, int byte);
/// Both players' control mode: "MIDI", "XBOX" or "KEYBOARD".
PlayerStage::Settings bothOn(const QString &mode);
