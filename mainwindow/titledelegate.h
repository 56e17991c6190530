#pragma once

#include <QStyledItemDelegate>

#include <array>

/**
 * Shows a title as Qt's own delegate does, and measures the ordinary one faster.
 *
 * A list asks for the size of every row before it shows the first, and Qt lays out each title for that. A
 * title of one line that surely fits is as high as any other such title, and its width does not matter.
 */
class TitleDelegate final : public QStyledItemDelegate
{
    Q_DISABLE_COPY_MOVE(TitleDelegate)
public:
    explicit TitleDelegate(QObject *parent);
    ~TitleDelegate() override = default;

    /// The height is Qt's. The width is Qt's, or for a title that fits the view at most the view's.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void measure(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    bool surelyFits(const QString &title) const;

    // Latin-1 alone: its letters are in the font itself, and written from left to right without joining.
    static constexpr std::size_t letters = 256;
    // Of the latest layout, which begins at the first row.
    mutable std::array<qreal, letters> m_advances{}; // 0 for what is no letter
    mutable qreal m_room = 0; // for a title
    mutable QSize m_size;
};
