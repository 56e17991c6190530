#pragma once

#include "mainwindow/mainwindow.h"

#include <QJsonArray>
#include <QJsonObject>

/// A record whose description, "detalle" and its id, tells it from every other.
QJsonObject detailedTask(const QString &id, const QString &title, const QString &urgency);

/// Four such tasks, which every order of the list shows differently; their ids are {1} to {4}.
QJsonArray fourTasks();

/// The titles of the four tasks in each of the orders.
QStringList fileOrder();
QStringList titleOrder();
QStringList urgencyOrder();

/// Thirty tasks, "Tarea 0" to "Tarea 29": more than the list shows at once.
QJsonArray manyTasks();

/// What the detail panel, or else a box, shows for a row, and with it which task the row stands for.
QString detailOfRow(MainWindow &window, int row);

/// Has "loadTasks", "orderTasks" (by title) or "filterTasks" (for an "a") fill the list anew.
void fillListBy(MainWindow &window, const QByteArray &slot);
