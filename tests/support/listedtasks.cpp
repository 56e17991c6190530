#include "support/listedtasks.h"

#include "support/home.h"
#include "support/messageboxes.h"
#include "support/window.h"

#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

QJsonObject detailedTask(const QString &id, const QString &title, const QString &urgency)
{
    QJsonObject record = home::record(id, title);
    record.insert(u"urgency"_s, urgency);
    record.insert(u"description"_s, u"detalle "_s + id);
    return record;
}

// By title: Alfa, Tarea zeta, alfa, beta; by urgency: alfa, beta, Tarea zeta, Alfa.
QJsonArray fourTasks()
{
    return {detailedTask(u"{1}"_s, u"beta"_s, u"Alta"_s), detailedTask(u"{2}"_s, u"Tarea zeta"_s, u"Media"_s),
        detailedTask(u"{3}"_s, u"Alfa"_s, u"Baja"_s), detailedTask(u"{4}"_s, u"alfa"_s, u"Urgente"_s)};
}

QStringList fileOrder()
{
    return {u"beta"_s, u"Tarea zeta"_s, u"Alfa"_s, u"alfa"_s};
}

QStringList titleOrder()
{
    return {u"Alfa"_s, u"Tarea zeta"_s, u"alfa"_s, u"beta"_s};
}

QStringList urgencyOrder()
{
    return {u"alfa"_s, u"beta"_s, u"Tarea zeta"_s, u"Alfa"_s};
}

QJsonArray manyTasks()
{
    QJsonArray tasks;
    for (int number = 0; number < 30; ++number) {
        tasks.append(home::record(u"{%1}"_s.arg(number), u"Tarea %1"_s.arg(number)));
    }
    return tasks;
}

QString detailOfRow(MainWindow &window, int row)
{
    auto *detail = widget<QTextEdit>(window, "TaskDescriptionView");
    detail->clear();
    const MessageBoxes boxes;
    callSlot(window, "showTaskDetails", taskList(window)->model()->index(row, 0));
    return boxes.shown().isEmpty() ? detail->toPlainText() : boxes.shown().constFirst().text;
}

void fillListBy(MainWindow &window, const QByteArray &slot)
{
    if (slot == "loadTasks") {
        callSlot(window, "loadTasks");
    } else if (slot == "orderTasks") {
        callSlot(window, "orderTasks", 1);
    } else {
        callSlot(window, "filterTasks", u"a"_s);
    }
}
