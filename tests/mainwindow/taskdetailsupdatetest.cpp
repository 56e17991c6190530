#include "support/home.h"
#include "support/messageboxes.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

void editPanel(const MainWindow &window, const QString &title)
{
    widget<QLineEdit>(window, "TaskTitleView")->setText(title);
    widget<QTextEdit>(window, "TaskDescriptionView")->setPlainText(u"<b>uno</b>\ndos"_s);
    widget<QComboBox>(window, "CategoryTaskBoxView")->setCurrentIndex(3);
    widget<QDateEdit>(window, "DateLimitTaskView")->setDate(QDate(2031, 12, 9));
    widget<QComboBox>(window, "UrgencyTaskBoxView")->setCurrentIndex(4);
}

QJsonObject editedRecord(const QString &id, const QString &title)
{
    return {{u"id"_s, id}, {u"title"_s, title}, {u"description"_s, u"<b>uno</b>\ndos"_s},
        {u"category"_s, u"Otro"_s}, {u"dateLimit"_s, u"09-12-2031"_s}, {u"urgency"_s, u"Urgente"_s}};
}

} // namespace

class TaskDetailsUpdateTest final : public WindowTest
{
    Q_OBJECT

    void note(const QString &step)
    {
        m_steps.append(u"%1 (file %2, messages %3)"_s.arg(step, home::tasks().first()["title"_L1].toString())
                           .arg(traymessages::all().size()));
    }

    QStringList m_steps;

private slots:
    void init()
    {
        WindowTest::init();
        m_steps.clear();
    }

    void writesThePanelOverTheTask()
    {
        const QJsonObject first = home::record(u"{a}"_s, u"uno"_s);
        const QJsonObject third = home::record(u"{c}"_s, u"tres"_s);
        home::writeTasks({first, home::record(u"{b}"_s, u"dos"_s), third});
        const MainWindow window;
        selectRow(window, 1);
        editPanel(window, u"Añadir «dos»"_s);

        click(window, "UpdateTaskBtn");

        const QJsonArray expected{first, editedRecord(u"{b}"_s, u"Añadir «dos»"_s), third};
        QCOMPARE(home::tasks(), expected);
        QCOMPARE(home::bytes(), QJsonDocument(expected).toJson(QJsonDocument::Indented));
    }

    void dropsFurtherKeysOfTheUpdatedTaskOnly()
    {
        QJsonObject first = home::record(u"{a}"_s, u"uno"_s);
        first.insert(u"notes"_s, QJsonArray{1, 2});
        QJsonObject second = home::record(u"{b}"_s, u"dos"_s);
        second.insert(u"notes"_s, u"se pierde"_s);
        home::writeTasks({first, second, u"no object"_s});
        QTest::ignoreMessage(QtInfoMsg, "rmc.json: se repararon ids faltantes en tareas antiguas.");
        const MainWindow window;
        const QJsonValue third = home::tasks().at(2);
        selectRow(window, 1);
        editPanel(window, u"dos"_s);

        click(window, "UpdateTaskBtn");

        QCOMPARE(home::tasks(), (QJsonArray{first, editedRecord(u"{b}"_s, u"dos"_s), third}));
    }

    void updatesTheTaskOfTheRowAmongEqualTitles()
    {
        const QJsonObject first = home::record(u"{a}"_s, u"Pagar"_s);
        home::writeTasks({first, home::record(u"{b}"_s, u"Pagar"_s)});
        const MainWindow window;
        selectRow(window, 1);
        editPanel(window, u"Pagar"_s);

        click(window, "UpdateTaskBtn");

        QCOMPARE(home::tasks(), (QJsonArray{first, editedRecord(u"{b}"_s, u"Pagar"_s)}));
    }

    void updatesTheFirstTaskOfAnIdThatOccursTwice()
    {
        const QJsonObject second = home::record(u"{a}"_s, u"dos"_s);
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), second});
        const MainWindow window;
        selectRow(window, 1);
        editPanel(window, u"tres"_s);

        click(window, "UpdateTaskBtn");

        QCOMPARE(home::tasks(), (QJsonArray{editedRecord(u"{a}"_s, u"tres"_s), second}));
    }

    void emptyTextsAreAccepted()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        widget<QLineEdit>(window, "TaskTitleView")->clear();
        widget<QTextEdit>(window, "TaskDescriptionView")->clear();
        widget<QComboBox>(window, "CategoryTaskBoxView")->setCurrentIndex(-1);
        widget<QComboBox>(window, "UrgencyTaskBoxView")->setCurrentIndex(-1);
        const MessageBoxes boxes;

        click(window, "UpdateTaskBtn");

        QCOMPARE(home::tasks(),
            (QJsonArray{QJsonObject{{u"id"_s, u"{a}"_s}, {u"title"_s, QString()},
                {u"description"_s, QString()}, {u"category"_s, QString()}, {u"dateLimit"_s, u"05-03-2026"_s},
                {u"urgency"_s, QString()}}}));
        QCOMPARE(boxes.shown().size(), 0);
        traymessages::compareOnly(u"Tarea actualizada"_s, u"La tarea '' ha sido actualizada."_s);
    }

    void saysSoAndClosesThePanel()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);
        editPanel(window, u"Añadir piñón"_s);
        const MessageBoxes boxes;

        click(window, "UpdateTaskBtn");

        traymessages::compareOnly(u"Tarea actualizada"_s, u"La tarea 'Añadir piñón' ha sido actualizada."_s);
        QTRY_COMPARE(panelPlace(window), closedPanel);
        QCOMPARE(boxes.shown().size(), 0);
    }

    void showsTheTitleAsItIs()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        editPanel(window, u"100 %1 <i>'%2'</i>"_s);

        click(window, "UpdateTaskBtn");

        traymessages::compareOnly(
            u"Tarea actualizada"_s, u"La tarea '100 %1 <i>'%2'</i>' ha sido actualizada."_s);
    }

    void reloadsTheListAndTheStatistics()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
        const MainWindow window;
        widget<QComboBox>(window, "OrderNotesBy")->setCurrentText(u"Titulo"_s);
        selectRow(window, 0); // dos
        editPanel(window, u"cambiada"_s);

        click(window, "UpdateTaskBtn");

        QCOMPARE(shownTitles(window), (QStringList{u"uno"_s, u"cambiada"_s}));
        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 2"_s);
        QCOMPARE(home::bytes().size(), 397);
        QCOMPARE(
            widget<QLabel>(window, "StorageFile")->text(), u"Tamaño de almacenamiento ocupado: 397.00 B"_s);
    }

    void theMessageHasNoPreference()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        widget<QCheckBox>(window, "SimpleNotify")->setChecked(false);
        selectRow(window, 0);

        click(window, "UpdateTaskBtn");

        QCOMPARE(traymessages::titled(u"Tarea actualizada"_s).size(), 1);

        click(window, "UpdateTaskBtn"); // the refill has taken the selection away

        QCOMPARE(traymessages::titled(u"Advertencia"_s).size(), 1);
    }

    void actsInOrder()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        editPanel(window, u"dos"_s);
        const auto *list = taskList(window);
        connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { note(u"panel"_s); });
        connect(list->model(), &QAbstractItemModel::modelReset, this, [this] { note(u"list"_s); });

        click(window, "UpdateTaskBtn");

        QCOMPARE(m_steps, (QStringList{u"panel (file dos, messages 0)"_s, u"list (file dos, messages 1)"_s}));
    }

    void updatesTheCurrentRowAfterThePanelWasClosed()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        click(window, "CloseDetailTaskBtn");
        editPanel(window, u"dos"_s);

        click(window, "UpdateTaskBtn");

        QCOMPARE(home::tasks(), QJsonArray{editedRecord(u"{a}"_s, u"dos"_s)});
    }
};

NUBARIA_TEST_MAIN(TaskDetailsUpdateTest)
#include "taskdetailsupdatetest.moc"
