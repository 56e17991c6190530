#pragma once

#include <QStyledItemDelegate>

#include <array>

/**
 * Shows a title as Qt's own delegate does, cut where the list ends, and measures the ordinary one faster.
 *
 * A title that is cut is shown whole in a tool tip.
 *
 * A list asks for the size of every row before it shows the first, and Qt lays out each title for that. A
 * title of one line is as high as any other such title, and the width of none matters: rows are as wide as
 * their list.
 */
class TitleDelegate final : public QStyledItemDelegate
{
    Q_DISABLE_COPY_MOVE(TitleDelegate)
public:
    explicit TitleDelegate(QObject *parent);
    ~TitleDelegate() override = default;

    /// The height is Qt's. The width is Qt's, or in a list at most that of one letter.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

private:
    void measure(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    bool isOrdinary(const QString &title) const;

    // Latin-1 alone: its letters are in the font itself, and written from left to right without joining.
    static constexpr std::size_t letters = 256;
    // Of the latest layout, which begins at the first row.
    mutable std::array<bool, letters> m_ordinary{};
    mutable QSize m_size;
};
