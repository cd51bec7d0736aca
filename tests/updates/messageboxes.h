#pragma once

#include <QList>
#include <QMessageBox>

#include <chrono>

/// The message boxes that are shown while this object lives, each answered by a click on one of
/// its buttons when it is up.
class MessageBoxes : public QObject
{
    Q_OBJECT

public:
    struct Box
    {
        QMessageBox::Icon icon;
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons;
        bool defaultButton; ///< whether one was chosen for Enter
        bool parent;
        bool markup; ///< whether the text would be read as HTML

        bool operator==(const Box &) const = default;
    };

    /// `answers` are the buttons to click, box by box; a box without one is closed.
    explicit MessageBoxes(const QList<QMessageBox::StandardButton> &answers = {});

    bool eventFilter(QObject *object, QEvent *event) override;

    std::chrono::milliseconds delay = {}; ///< from a box's showing to the click
    QList<Box> shown; ///< in order

private:
    void answer(QMessageBox *box);

    QList<QMessageBox::StandardButton> answers;
};

/// How a failed comparison shows a box.
char *toString(const MessageBoxes::Box &box);
