#pragma once

#include "mainwindow.h"

#include <QTemporaryDir>

#include <memory>
#include <optional>

class QAbstractButton;

/// The operator's window in a working directory of its own, with the host, the MIDI devices and the
/// gamepads that the test links.
class OperatorWindow
{
public:
    /// Makes the working directory, with a settings file if there is one, but no window yet.
    explicit OperatorWindow(const QByteArray &settingsFile = {});
    virtual ~OperatorWindow();
    OperatorWindow(const OperatorWindow &) = delete;
    OperatorWindow &operator=(const OperatorWindow &) = delete;

    /// Makes and shows the window, and waits until its first load is done.
    void open();
    /// Waits until the game has told what it found of the host.
    void waitForStatus() const;
    /// Destroys the window.
    void close();

    /// The window's game. A test changes nothing in it that the program's own threads would not.
    virtual Pong &game() const { return const_cast<Pong &>(window->game()); }
    /// Lets the game thread take ticks beside those of its timer, and waits for them.
    void tick(int count) const;
    /// Lets the game thread check the host now instead of at the next second, and the window show
    /// what came of it.
    void checkHost() const;
    /// The step of a side's paddle.
    int step(int side) const;
    /// The side that has requested a start since the last call, if one has; the match is then put
    /// back to its beginning.
    std::optional<int> takeStart() const;
    /// The same, but waits some seconds for one.
    std::optional<int> awaitStart() const;

    /// The window as a widget.
    virtual QWidget *widget() const { return window.get(); }
    /// A widget by its name in the form; it is there.
    template <class T = QWidget>
    T *find(const QString &name) const
    {
        T *found = widget()->findChild<T *>(name);
        Q_ASSERT(found);
        return found;
    }
    /// Clicks a button where a mouse would.
    void click(const QString &name) const;
    static void click(QAbstractButton *button);
    QString text(const QString &name) const;
    /// The value of a key in the settings file, which is "" without it.
    QString setting(const QString &key) const;

    std::unique_ptr<MainWindow> window;

private:
    QTemporaryDir m_folder;
    QString m_previousFolder;
};

/// The looks of a button that is switched on, and off.
extern const QString activeLook;
extern const QString idleLook;

/// Adds the column `side` and a row for each.
void addSides();
/// "L" or "R".
QString sideLetter(int side);
