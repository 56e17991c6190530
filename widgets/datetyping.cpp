#include "widgets/datetyping.h"

#include "widgets/modifierkeys.h"
#include "widgets/typeddate.h"

#include <QDateEdit>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

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

} // namespace

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
