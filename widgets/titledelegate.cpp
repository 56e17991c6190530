#include "widgets/titledelegate.h"

#include <QHelpEvent>
#include <QListView>
#include <QRawFont>
#include <QToolTip>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

TitleDelegate::TitleDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

QSize TitleDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (index.row() == 0) {
        measure(option, index);
    }
    if (isOrdinary(index.data(Qt::DisplayRole).toString())) {
        return m_size;
    }
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    if (m_size.isValid() && qobject_cast<const QListView *>(option.widget)) {
        size.setWidth(std::min(size.width(), m_size.width()));
    }
    return size;
}

bool TitleDelegate::helpEvent(
    QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip
        || QStyledItemDelegate::sizeHint(option, index).width() <= option.rect.width()) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    // Markup of our own has the tip wrap its lines, and keeps that of the title from being taken for one.
    const QString title = index.data(Qt::DisplayRole).toString().toHtmlEscaped();
    QToolTip::showText(event->globalPos(), u"<p style='white-space: pre-wrap'>%1</p>"_s.arg(title),
        view->viewport(), option.rect);
    return true;
}

void TitleDelegate::measure(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    m_ordinary.fill(false);
    const auto *view = qobject_cast<const QListView *>(option.widget);
    if (!view) {
        return;
    }
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text = u"x"_s;
    m_size = view->style()->sizeFromContents(QStyle::CT_ItemViewItem, &item, QSize(), view);
    const QRawFont font = QRawFont::fromFont(item.font);
    for (std::size_t letter = 0; letter < letters; ++letter) {
        const QChar character(static_cast<char16_t>(letter));
        m_ordinary.at(letter) = character.isPrint() && font.supportsCharacter(character);
    }
}

bool TitleDelegate::isOrdinary(const QString &title) const
{
    return !title.isEmpty() && std::all_of(title.cbegin(), title.cend(), [this](QChar character) {
        return character.unicode() < letters && m_ordinary.at(character.unicode());
    });
}
