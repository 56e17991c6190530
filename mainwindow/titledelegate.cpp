#include "mainwindow/titledelegate.h"

#include <QListView>
#include <QRawFont>

TitleDelegate::TitleDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

QSize TitleDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (index.row() == 0) {
        measure(option, index);
    }
    if (surelyFits(index.data(Qt::DisplayRole).toString())) {
        return m_size;
    }
    return QStyledItemDelegate::sizeHint(option, index);
}

void TitleDelegate::measure(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    m_advances.fill(0);
    const auto *view = qobject_cast<const QListView *>(option.widget);
    if (!view) {
        return;
    }
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text = QStringLiteral("x");
    m_size = view->style()->sizeFromContents(QStyle::CT_ItemViewItem, &item, QSize(), view);
    const QRawFont font = QRawFont::fromFont(item.font);
    for (std::size_t letter = 0; letter < letters; ++letter) {
        const QChar character(static_cast<char16_t>(letter));
        if (character.isPrint() && font.supportsCharacter(character)) {
            m_advances.at(letter)
                = font.advancesForGlyphIndexes(font.glyphIndexesForString(character)).constFirst().x();
        }
    }
    // Letters that stand apart by kerning and rounding are no more than a tenth wider than by themselves.
    m_room = (view->viewport()->width() - m_size.width()) / 1.1;
}

bool TitleDelegate::surelyFits(const QString &title) const
{
    qreal width = 0;
    for (const QChar character : title) {
        const std::size_t letter = character.unicode();
        if (letter >= letters || m_advances.at(letter) == 0) {
            return false;
        }
        width += m_advances.at(letter);
    }
    return width > 0 && width <= m_room;
}
