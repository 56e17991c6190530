#include "widgets/assistedchoice.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>

#include <utility>

AssistedChoice::AssistedChoice(QAbstractItemView *view, Choose choose)
    : QObject(view)
    , m_view(view)
    , m_choose(std::move(choose))
    , m_current(view->currentIndex())
{
    QCoreApplication::instance()->installEventFilter(this);
    connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, this, &AssistedChoice::note);
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this,
        [this](const QModelIndex &current) { m_current = current; });
}

bool AssistedChoice::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        m_byHand = true;
        QMetaObject::invokeMethod(
            this, [this] { m_byHand = false; }, Qt::QueuedConnection);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void AssistedChoice::note(const QItemSelection &selected)
{
    const QModelIndexList indexes = selected.indexes();
    m_selected = m_byHand ? QModelIndex() : indexes.value(0);
    m_wasCurrent = m_selected == m_current;
    // By then an item that is being made the current one is that.
    QMetaObject::invokeMethod(this, &AssistedChoice::tell, Qt::QueuedConnection);
}

void AssistedChoice::tell()
{
    const QModelIndex selected = std::exchange(m_selected, QPersistentModelIndex());
    if (selected.isValid() && (m_wasCurrent || selected != m_view->currentIndex())) {
        m_choose(selected);
    }
}

void letItemsBeChosen(QComboBox *box)
{
    QAbstractItemView *list = box->view();
    new AssistedChoice(list, [box](const QModelIndex &item) {
        box->setCurrentIndex(item.row());
        box->hidePopup();
    });
    // Otherwise only opening the list has it follow, and one that is closed would take the item chosen before
    // for the chosen one.
    const auto follow = [box, list](int row) {
        list->setCurrentIndex(box->model()->index(row, box->modelColumn(), box->rootModelIndex()));
    };
    QObject::connect(box, &QComboBox::currentIndexChanged, list, follow);
    follow(box->currentIndex());
}
