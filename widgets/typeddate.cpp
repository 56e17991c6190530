#include "widgets/typeddate.h"

#include <QDateEdit>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStringList>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int dayPart = 0;
constexpr int monthPart = 1;
constexpr int yearPart = 2;

qsizetype digitsThatFit(const QString &number, int part)
{
    const bool ofFourDigits
        = number.startsWith("19"_L1) || number.startsWith("20"_L1) || number.startsWith("21"_L1);
    return part >= yearPart && ofFourDigits ? 4 : 2;
}

/// The numbers that were typed, the last one perhaps empty.
QStringList typedNumbers(const QString &typed, int firstPart)
{
    QStringList numbers{QString()};
    for (const QChar character : typed) {
        const int part = firstPart + static_cast<int>(numbers.size()) - 1;
        const QString &number = numbers.constLast();
        if (character.isDigit() && number.size() < digitsThatFit(number, part)) {
            numbers.last() += character;
        } else if (!number.isEmpty()) {
            numbers.append(character.isDigit() ? QString(character) : QString());
        }
    }
    return numbers;
}

int yearOf(const QString &number)
{
    return number.size() == 4 ? number.toInt() : 2000 + number.toInt() % 100;
}

/// Digits and slashes for digits of any script and the usual separators; empty when there is anything else.
QString datePieces(const QString &text)
{
    QString pieces;
    for (const QChar character : text) {
        if (const int digit = character.digitValue(); digit >= 0) {
            pieces += QString::number(digit);
        } else if (u"/-., "_s.contains(character)) {
            pieces += u'/';
        } else {
            return {};
        }
    }
    return pieces;
}

bool isModifier(int key)
{
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr;
}

} // namespace

std::optional<TypedDate> typedDate(const QString &typed, int firstPart, QDate before)
{
    constexpr int parts = 3;
    QStringList numbers = typedNumbers(typed, firstPart);
    if (firstPart + numbers.size() > parts) {
        firstPart = dayPart;
        numbers = typedNumbers(typed, firstPart);
    }
    if (numbers.size() > parts) {
        return std::nullopt;
    }
    const QString day = numbers.value(dayPart - firstPart);
    const QString month = numbers.value(monthPart - firstPart);
    const QString year = numbers.value(yearPart - firstPart);
    const int fullYear = year.isEmpty() ? before.year() : yearOf(year);
    const int realMonth = month.isEmpty() ? before.month() : std::clamp(month.toInt(), 1, 12);
    const int lastDay = QDate(fullYear, realMonth, 1).daysInMonth();
    const int realDay = std::clamp(day.isEmpty() ? before.day() : day.toInt(), 1, lastDay);

    const int part = firstPart + static_cast<int>(numbers.size()) - 1;
    const bool full = numbers.constLast().size() == digitsThatFit(numbers.constLast(), part);
    return TypedDate{
        .date = QDate(fullYear, realMonth, realDay), .part = std::min(full ? part + 1 : part, yearPart)};
}

DateTyping::DateTyping(QDateEdit *edit)
    : QObject(edit)
    , m_edit(edit)
    , m_line(edit->findChild<QLineEdit *>(QString(), Qt::FindDirectChildrenOnly))
{
    m_edit->installEventFilter(this);
    m_line->installEventFilter(this);
    // Comes after Qt's own reading: what that did not make a date of, a part that was erased, gives way.
    connect(m_line, &QLineEdit::textChanged, m_edit, [edit] { edit->setDate(edit->date()); });
}

bool DateTyping::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        return takesKey(*static_cast<QKeyEvent *>(event));
    case QEvent::InputMethod:
        return takesText(static_cast<QInputMethodEvent *>(event)->commitString());
    case QEvent::FocusOut:
    case QEvent::MouseButtonPress:
        m_typed.clear();
        return false;
    case QEvent::MouseButtonRelease:
        if (watched == m_line && static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton) {
            // Afterwards, or the part would replace what was selected to be pasted elsewhere.
            QMetaObject::invokeMethod(this, &DateTyping::selectHitPart, Qt::QueuedConnection);
        }
        return false;
    default:
        return false;
    }
}

bool DateTyping::takesKey(const QKeyEvent &key)
{
    if (isModifier(key.key())) {
        return false;
    }
    if (!(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))) {
        if (key.key() == Qt::Key_Backspace && !m_typed.isEmpty()) {
            m_typed.chop(1);
            showTyped();
            return true;
        }
        if (takesText(key.text())) {
            return true;
        }
    }
    m_typed.clear();
    return false;
}

bool DateTyping::takesText(const QString &text)
{
    const QString pieces = datePieces(text);
    if (m_edit->date() != m_shown) {
        m_typed.clear();
    }
    if (m_typed.isEmpty()) {
        m_firstPart = m_line->selectedText() == m_line->text() ? dayPart : m_edit->currentSectionIndex();
        m_before = m_edit->date();
    }
    // Without a digit before it a separator is Qt's: it goes to the next part.
    if (pieces.isEmpty() || (m_typed.isEmpty() && pieces.startsWith(u'/'))) {
        return false;
    }
    for (const QChar piece : pieces) {
        if (typedDate(m_typed + piece, m_firstPart, m_before)) {
            m_typed += piece;
        }
    }
    showTyped();
    return true;
}

void DateTyping::showTyped()
{
    if (const auto typed = typedDate(m_typed, m_firstPart, m_before)) {
        m_edit->setDate(typed->date);
        m_edit->setSelectedSection(m_edit->sectionAt(typed->part));
    }
    m_shown = m_edit->date();
}

void DateTyping::selectHitPart()
{
    if (!m_line->hasSelectedText()) {
        m_edit->setSelectedSection(m_edit->currentSection());
    }
}
