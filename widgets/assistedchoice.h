#pragma once

#include <QModelIndex>
#include <QObject>
#include <QPersistentModelIndex>

#include <functional>

class QAbstractItemView;
class QComboBox;
class QItemSelection;

/**
 * Tells which item of a view assistive technology has chosen.
 *
 * Qt offers it no more than to select an item, which does not become the current one by that: nothing that
 * acts on the current item would happen. What a mouse or a key selects is not told.
 */
class AssistedChoice final : public QObject
{
    Q_DISABLE_COPY_MOVE(AssistedChoice)
public:
    using Choose = std::function<void(const QModelIndex &)>;

    /// Lives as long as the view, whose model must not be replaced any more. Calls come from the event loop.
    AssistedChoice(QAbstractItemView *view, Choose choose);
    ~AssistedChoice() override = default;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void note(const QItemSelection &selected);
    void tell();

    QAbstractItemView *m_view;
    Choose m_choose;
    QPersistentModelIndex m_current; // as the view has told
    QPersistentModelIndex m_selected; // to be told
    bool m_wasCurrent = false; // before it was selected
    bool m_byHand = false; // a mouse or a key is at work
};

/// Has the item of a chooser's list that assistive technology chooses become the chosen one, be the list open
/// or not. The model of the chooser must not be replaced any more.
void letItemsBeChosen(QComboBox *box);
