#pragma once

#include "mainwindow/mainwindow.h"

/**
 * What a target needs of the window and no slot, widget or file shows. An explicit instantiation may name
 * private members, so the window needs no friends.
 */
template <typename Name, typename Name::Type member> struct Reach
{
    friend typename Name::Type reach(Name) { return member; }
};

struct TaskIds
{
    using Type = QStringList MainWindow::*;
    friend Type reach(TaskIds);
};
template struct Reach<TaskIds, &MainWindow::taskIds>;

struct RepairMissingTaskIds
{
    using Type = void (MainWindow::*)();
    friend Type reach(RepairMissingTaskIds);
};
template struct Reach<RepairMissingTaskIds, &MainWindow::repairMissingTaskIds>;

struct HandleVersionReply
{
    using Type = void (MainWindow::*)(QNetworkReply *);
    friend Type reach(HandleVersionReply);
};
template struct Reach<HandleVersionReply, &MainWindow::handleVersionReply>;
