#pragma once

#include <QList>
#include <QMessageBox>

#include <chrono>

/// Records the message boxes shown during the lifetime of this object and answers each with a click
/// on one of its buttons.
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
        bool defaultButton; ///< whether it has a default button
        bool parent;
        bool markup; ///< whether the text would be rendered as HTML

        bool operator==(const Box &) const = default;
    };

    /// `answers` are the buttons to click, box by box; a box without one is closed.
    explicit MessageBoxes(const QList<QMessageBox::StandardButton> &answers = {});

    bool eventFilter(QObject *object, QEvent *event) override;

    std::chrono::milliseconds delay = {}; ///< between showing a box and the click
    QList<Box> shown; ///< in order

private:
    void answer(QMessageBox *box);

    QList<QMessageBox::StandardButton> answers;
};

/// For messages of QCOMPARE.
char *toString(const MessageBoxes::Box &box);
