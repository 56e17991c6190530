#pragma once

#include <QDate>
#include <QObject>
#include <QString>

class QDateEdit;
class QKeyEvent;
class QLineEdit;

/**
 * Lets a date editor, which shows day, month and year in this order, take a date as it is typed.
 *
 * Qt knows the digits of one part alone: it hops to the next part by itself, takes the separator that follows
 * for another hop and drops what does not suit the parts that stand there. Here all that is typed in one go
 * is read anew with each key. What the editor shows is its date at every moment, and a click selects the part
 * that it hits. Arrows, wheel, clipboard and calendar are Qt's.
 */
class DateTyping final : public QObject
{
    Q_DISABLE_COPY_MOVE(DateTyping)
public:
    /// Becomes a child of the editor.
    explicit DateTyping(QDateEdit *edit);
    ~DateTyping() override = default;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool takesKey(const QKeyEvent &key);
    bool takesText(const QString &text);
    void showTyped();
    void selectHitPart();

    QDateEdit *m_edit;
    QLineEdit *m_line; // of the editor
    QString m_typed; // digits and slashes; empty until a digit comes
    int m_firstPart = 0;
    QDate m_before; // the date when typing began
    QDate m_shown; // the date that typing has made of it
};
