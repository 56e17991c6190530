#include "support/messageboxes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

MessageBoxes::MessageBoxes(QMessageBox::StandardButton answer)
    : m_answer(answer)
{
    connect(&m_poll, &QTimer::timeout, this, &MessageBoxes::answerOpenBox);
    m_poll.start(1);
}

const QList<ShownBox> &MessageBoxes::shown() const
{
    return m_shown;
}

void MessageBoxes::answerOpenBox()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box || !box->isVisible()) {
        return;
    }
    m_shown.append({box->windowTitle(), box->text(), box->icon(), box->standardButtons(), box->styleSheet(),
        box->iconPixmap().toImage(),
        box->parentWidget() ? QByteArray(box->parentWidget()->metaObject()->className()) : QByteArray()});
    Q_EMIT opened(m_shown.constLast());
    if (QAbstractButton *button = box->button(m_answer)) {
        button->click();
    } else {
        box->reject();
    }
}

void compareBox(const ShownBox &box, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    QCOMPARE(box.icon, icon);
    QCOMPARE(box.title, title);
    QCOMPARE(box.text, text);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.parent, QByteArray("MainWindow"));
}

void compareOnlyBox(
    const MessageBoxes &boxes, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    QCOMPARE(boxes.shown().size(), 1);
    compareBox(boxes.shown().constFirst(), icon, title, text);
}
