#pragma once

#include "playerform.h"
#include "runningwindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QMap>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

/// The players' widgets and devices, on a form of their own or in the operator's window. The host
/// is not ready unless told otherwise, so that no match goes on behind a test.
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

    /// What a settings file holds or held: every key with its value as text.
    using Settings = QMap<QString, QString>;

    /// Where the widgets are.
    enum Surface { Form, WholeWindow };

    /// Sets everything up but the window.
    explicit PlayerStage(const QStringList &midiDevices = {}, int pads = 0,
        const Settings &settings = {}, Surface surface = Form);
    ~PlayerStage() override;
    PlayerStage(const PlayerStage &) = delete;
    PlayerStage &operator=(const PlayerStage &) = delete;

    /// Makes and shows the window, with its devices listed.
    void open();
    /// Destroys the window.
    void close();

    Pong &game() const override;
    QWidget *widget() const override;
    /// The object to which the signals of pads are queued, without the whole window.
    QObject *controls() const { return &m_form->controls; }
    /// A MIDI message, handed over on this thread.
    void receive(int play, int status, int number, int value) const;

    /// What the window holds in its store now, written to the file or not.
    Settings settings() const;
    /// What is new or different in the store since `before`; what is gone has the value "removed".
    Settings settingsSince(const Settings &before) const;
    /// The names of the buttons that say that they learn.
    QStringList learning() const;

    /// Sends a short message from input device `device` on a thread of its own, and lets the
    /// window work. Returns how many handles received it.
    int sendMidi(int device, int status, int number, int value);
    /// Waits until the pad of user index `pad` has been read as it is now, and the window has
    /// worked on that.
    void poll(std::size_t pad);
    /// Whether the pad of user index `pad` is still read, as long as it is not the fourth.
    bool isPolled(std::size_t pad);

    std::array<Player, 2> players = {};

private:
    Surface m_surface;
    std::unique_ptr<PlayerForm> m_form;
};

/// The key of a byte, 0 or 1, of a MIDI binding: "CC_00".
QString midiKey(const QString &control, int side, int byte);
/// Both players' control mode: "MIDI", "XBOX" or "KEYBOARD".
PlayerStage::Settings bothOn(const QString &mode);
