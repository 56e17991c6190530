#pragma once

#include "mainwindow/mainwindow.h"

#include <QDir>
#include <QListView>
#include <QMetaObject>
#include <QPushButton>
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

/// The file on which the window listens for further starts.
inline QString serverSocket()
{
    return QDir::temp().filePath(QStringLiteral("QuenoliIPC"));
}

/// Clicks the button of this name.
inline void click(const MainWindow &window, const char *button)
{
    widget<QPushButton>(window, button)->click();
}

inline QListView *taskList(const MainWindow &window)
{
    return widget<QListView>(window, "TaskListView");
}

/// The titles that the task list shows, from top to bottom.
inline QStringList shownTitles(const MainWindow &window)
{
    return qobject_cast<QStringListModel *>(taskList(window)->model())->stringList();
}

/// Makes this row of the task list the current one, which opens the panel with the task's details.
inline void selectRow(const MainWindow &window, int row)
{
    taskList(window)->setCurrentIndex(taskList(window)->model()->index(row, 0));
}

/// What stands in the list's place while there are no tasks.
inline QWidget *advice(const MainWindow &window)
{
    return widget(window, "TaskAdvise");
}

/// Where the panel with a task's details rests.
inline constexpr QRect openPanel(0, 0, 1010, 700);
inline constexpr QRect closedPanel(1010, 0, 1010, 700);

/// Where the update banner rests.
inline constexpr QRect openBanner(10, 595, 220, 90);
inline constexpr QRect closedBanner(-230, 595, 220, 90);

/// Where the panel with a task's details is.
inline QRect panelPlace(const MainWindow &window)
{
    return widget(window, "TaskDetail")->geometry();
}

/// Where the update banner rests; nowhere while it slides.
QRect bannerOf(const MainWindow &window);

/// Waits until every slide of the panel that has begun is over; false if that takes too long.
bool waitForSlides();

/// Shows the window and waits until it is the active one; false if that takes too long.
bool showActive(MainWindow &window);
