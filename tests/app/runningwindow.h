#pragma once

#include "fakehost.h"
#include "fakemidi.h"
#include "fakepads.h"
#include "mainwindow.h"

#include <QTemporaryDir>

#include <memory>

class QAbstractButton;

/// The operator's window in a working directory of its own, with a host, MIDI devices and gamepads
/// to be played by hand.
class RunningWindow
{
public:
    /// Makes the working directory, with a settings file if there is one, but no window yet.
    explicit RunningWindow(const QByteArray &settingsFile = {});
    ~RunningWindow();
    RunningWindow(const RunningWindow &) = delete;
    RunningWindow &operator=(const RunningWindow &) = delete;

    /// Makes and shows the window, and waits until its first load is done.
    void open();
    /// Waits until the game has told what it found of the host.
    void waitForStatus();
    /// Waits until `count` more frames were sent.
    void waitForFrames(int count);
    /// Destroys the window.
    void close();

    /// The window's game. A test changes nothing in it that the program's own threads would not.
    Pong &game() const { return const_cast<Pong &>(window->game()); }
    /// Lets the game thread take ticks beside those of its timer, and waits for them.
    void tick(int count) const;
    /// Lets the game thread check the host now instead of at the next second, and the window show
    /// what came of it.
    void checkHost() const;

    /// A widget by its name in the form; it is there.
    template <class T = QWidget>
    T *find(const QString &name) const
    {
        T *widget = window->findChild<T *>(name);
        Q_ASSERT(widget);
        return widget;
    }
    /// Clicks a button of that name where a mouse would.
    void click(const QString &name) const;
    QString text(const QString &name) const;
    /// The value of a key in the settings file, which is "" without it.
    QString setting(const QString &key) const;

    FakeHost host;
    FakeMidi midi;
    FakePads pads;
    std::unique_ptr<MainWindow> window;

private:
    QTemporaryDir m_folder;
    QString m_previousFolder;
};

/// The looks of a button that is switched on, and off.
extern const QString activeLook;
extern const QString idleLook;
