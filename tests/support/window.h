#pragma once

#include "mainwindow/mainwindow.h"

#include <QListView>
#include <QMetaObject>
#include <QStringListModel>

/// The window's widget of this name, which must be there: a case about a missing widget proves nothing.
template <typename T = QWidget> T *widget(const QWidget &window, const char *name)
{
    auto *found = window.findChild<T *>(QLatin1StringView(name));
    if (!found) {
        qFatal("no widget %s", name);
    }
    return found;
}

/// Calls one of the window's slots, which are private, by its name; their arguments have the types given
/// here.
template <typename... Arguments>
void callSlot(MainWindow &window, const char *slot, const Arguments &...arguments)
{
    if (!QMetaObject::invokeMethod(&window, slot, Qt::DirectConnection,
            QArgument<Arguments>(QMetaType::fromType<Arguments>().name(), arguments)...)) {
        qFatal("no slot %s", slot);
    }
}

/// The titles that the task list shows, from top to bottom.
inline QStringList shownTitles(const MainWindow &window)
{
    const auto *model = qobject_cast<QStringListModel *>(widget<QListView>(window, "TaskListView")->model());
    return model->stringList();
}
