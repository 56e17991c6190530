#pragma once

#include <QByteArray>
#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QTimer>

/// What a message box showed.
struct ShownBox
{
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons = QMessageBox::NoButton;
    QString styleSheet;
    QImage picture;
    QByteArray parent; ///< the class of the widget it belongs to; empty without one
};

/**
 * Answers every modal message box that opens while it lives and keeps what each one showed.
 *
 * Make it before the call that blocks. A box without the wanted button is rejected, as by Escape.
 */
class MessageBoxes final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MessageBoxes)
public:
    explicit MessageBoxes(QMessageBox::StandardButton answer = QMessageBox::Ok);

    const QList<ShownBox> &shown() const;

Q_SIGNALS:
    /// A box is open, and not yet answered.
    void opened(const ShownBox &box);

private:
    void answerOpenBox();

    QMessageBox::StandardButton m_answer;
    QList<ShownBox> m_shown;
    QTimer m_poll;
};

/// Fails the case unless the box showed this, with OK alone, and belonged to the main window.
void compareBox(const ShownBox &box, QMessageBox::Icon icon, const QString &title, const QString &text);

/// Fails the case unless that box was the only one.
void compareOnlyBox(
    const MessageBoxes &boxes, QMessageBox::Icon icon, const QString &title, const QString &text);
