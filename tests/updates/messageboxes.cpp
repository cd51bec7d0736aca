#include "messageboxes.h"

#include <QApplication>
#include <QEvent>
#include <QPushButton>
#include <QTest>
#include <QTextDocument>
#include <QTimer>

using namespace Qt::StringLiterals;

MessageBoxes::MessageBoxes(const QList<QMessageBox::StandardButton> &answers_)
    : answers(answers_)
{
    qApp->installEventFilter(this);
}

bool MessageBoxes::eventFilter(QObject *object, QEvent *event)
{
    auto *const box = qobject_cast<QMessageBox *>(object);
    if (box && event->type() == QEvent::Show)
        QTimer::singleShot(delay, box, [=, this] { answer(box); });
    return false;
}

void MessageBoxes::answer(QMessageBox *box)
{
    const bool markup = box->textFormat() == Qt::RichText
        || (box->textFormat() == Qt::AutoText && Qt::mightBeRichText(box->text()));
    shown.append({box->icon(), box->windowTitle(), box->text(), box->standardButtons(),
        box->defaultButton() != nullptr, box->parent() != nullptr, markup});
    QAbstractButton *const button = answers.isEmpty() ? nullptr : box->button(answers.takeFirst());
    if (button)
        QTest::mouseClick(button, Qt::LeftButton);
    else
        box->reject();
}

char *toString(const MessageBoxes::Box &box)
{
    const QString text =
        u"icon %1, \"%2\", \"%3\", buttons %4, default %5, parent %6, markup %7"_s.arg(box.icon)
            .arg(box.title, box.text)
            .arg(box.buttons.toInt(), 0, 16)
            .arg(box.defaultButton)
            .arg(box.parent)
            .arg(box.markup);
    return QTest::toString(text);
}
