#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QJsonDocument>
#include <QLabel>
#include <QPixmap>

using namespace Qt::Literals::StringLiterals;

class TaskDetailsDeletionTest final : public WindowTest
{
    Q_OBJECT

    void note(const QString &step)
    {
        m_steps.append(u"%1 (tasks %2, messages %3)"_s.arg(step)
                           .arg(home::tasks().size())
                           .arg(traymessages::all().size()));
    }

    QStringList m_steps;

private slots:
    void init()
    {
        WindowTest::init();
        m_steps.clear();
    }

    void asksFirst()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        const MessageBoxes boxes(QMessageBox::No);

        click(window, "DeleteTaskBtn");

        QCOMPARE(boxes.shown().size(), 1);
        const ShownBox box = boxes.shown().constFirst();
        QCOMPARE(box.title, u"Finalizar Tarea"_s);
        QCOMPARE(box.text, u"¿Está seguro de que desea finalizar y eliminar esta tarea?"_s);
        QCOMPARE(box.buttons, QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(box.styleSheet,
            u"QPushButton {  border-radius: 5px;  border: 1px solid black;  padding: 5px 10px;}"
            "QPushButton:hover {  background-color: #d3d3d3;}"_s);
        const QPixmap picture(u":/imageres/help.png"_s);
        QVERIFY(!picture.isNull());
        QCOMPARE(box.picture, picture.toImage());
        QCOMPARE(box.parent, QByteArray());
    }

    void anyAnswerButYesChangesNothing_data()
    {
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::newRow("no") << QMessageBox::No;
        QTest::newRow("escape")
            << QMessageBox::NoButton; // a button that the box lacks, so that it is rejected
    }

    void anyAnswerButYesChangesNothing()
    {
        QFETCH(QMessageBox::StandardButton, answer);
        const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
        home::writeBytes(bytes);
        const MainWindow window;
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);
        const MessageBoxes boxes(answer);
        resetTaskFileOpens();

        click(window, "DeleteTaskBtn");

        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(taskFileOpens(), 0);
        QCOMPARE(home::bytes(), bytes);
        QVERIFY(taskList(window)->selectionModel()->hasSelection());
        QCOMPARE(shownTitles(window), QStringList{u"uno"_s});
        QCOMPARE(traymessages::all().size(), 0);
        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), openPanel);
    }

    void bothButtonsRemoveTheTask_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("finish") << QByteArray("FinishTaskBtn");
        QTest::newRow("delete") << QByteArray("DeleteTaskBtn");
    }

    void bothButtonsRemoveTheTask()
    {
        QFETCH(QByteArray, button);
        const QJsonObject first = home::record(u"{a}"_s, u"uno"_s);
        const QJsonObject third = home::record(u"{c}"_s, u"tres"_s);
        home::writeTasks({first, home::record(u"{b}"_s, u"dos"_s), third});
        const MainWindow window;
        selectRow(window, 1);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, button.constData());

        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(boxes.shown().constFirst().title, u"Finalizar Tarea"_s);
        const QJsonArray expected{first, third};
        QCOMPARE(home::tasks(), expected);
        QCOMPARE(home::bytes(), QJsonDocument(expected).toJson(QJsonDocument::Indented));
        QCOMPARE(shownTitles(window), (QStringList{u"uno"_s, u"tres"_s}));
        traymessages::compareOnly(u"Tarea eliminada"_s, u"La tarea 'dos' ha sido eliminada."_s);
    }

    void keepsTheOtherTasksAsTheyAre()
    {
        QJsonObject first = home::record(u"{a}"_s, u"uno"_s);
        first.insert(u"notes"_s, QJsonObject{{u"color"_s, u"rojo"_s}});
        const QJsonObject third{{u"id"_s, u"{c}"_s}, {u"title"_s, 7}};
        home::writeTasks({first, home::record(u"{b}"_s, u"dos"_s), third});
        const MainWindow window;
        selectRow(window, 1);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        QCOMPARE(home::tasks(), (QJsonArray{first, third}));
    }

    void removesTheTaskOfTheRowAmongEqualTitles()
    {
        const QJsonObject first = home::record(u"{a}"_s, u"Pagar"_s);
        home::writeTasks({first, home::record(u"{b}"_s, u"Pagar"_s)});
        const MainWindow window;
        selectRow(window, 1);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        QCOMPARE(home::tasks(), QJsonArray{first});
    }

    void removesTheFirstTaskOfAnIdThatOccursTwice()
    {
        const QJsonObject second = home::record(u"{a}"_s, u"dos"_s);
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), second});
        const MainWindow window;
        selectRow(window, 1);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        QCOMPARE(home::tasks(), QJsonArray{second});
        traymessages::compareOnly(u"Tarea eliminada"_s, u"La tarea 'uno' ha sido eliminada."_s);
    }

    void theLastTaskLeavesAnEmptyArray()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
        QCOMPARE(shownTitles(window), QStringList());
        QVERIFY(widget<QLabel>(window, "TaskAdvise")->isHidden());
    }

    void closesThePanel()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        QTRY_COMPARE(panelPlace(window), closedPanel);
    }

    void theNoticeIsGivenWhereWanted_data()
    {
        QTest::addColumn<bool>("wanted");
        QTest::newRow("wanted") << true;
        QTest::newRow("not wanted") << false;
    }

    void theNoticeIsGivenWhereWanted()
    {
        QFETCH(bool, wanted);
        home::writeTasks({home::record(u"{a}"_s, u"Añadir piñón"_s), home::record(u"{b}"_s, u"dos"_s)});
        const MainWindow window;
        widget<QCheckBox>(window, "SimpleNotify")->setChecked(wanted);
        selectRow(window, 0);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        const TrayMessage notice{u"Tarea eliminada"_s, u"La tarea 'Añadir piñón' ha sido eliminada."_s,
            QSystemTrayIcon::Information, 10000, true};
        QVERIFY(traymessages::all() == (wanted ? QList{notice} : QList<TrayMessage>()));
        QCOMPARE(shownTitles(window), QStringList{u"dos"_s});
        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 1"_s);
        QCOMPARE(widget<QLabel>(window, "StorageFile")->text(),
            u"Tamaño de almacenamiento ocupado: %1.00 B"_s.arg(home::bytes().size()));
    }

    void showsTheTitleAsItIs()
    {
        home::writeTasks({home::record(u"{a}"_s, u"100 %1 <i>'%2'</i>"_s)});
        const MainWindow window;
        selectRow(window, 0);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        traymessages::compareOnly(
            u"Tarea eliminada"_s, u"La tarea '100 %1 <i>'%2'</i>' ha sido eliminada."_s);
    }

    void reloadsTheListAndTheStatistics()
    {
        home::writeTasks({home::record(u"{a}"_s, u"zeta"_s), home::record(u"{b}"_s, u"beta"_s),
            home::record(u"{c}"_s, u"alfa"_s)});
        const MainWindow window;
        widget<QComboBox>(window, "OrderNotesBy")->setCurrentText(u"Titulo"_s);
        selectRow(window, 1); // beta
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        QCOMPARE(shownTitles(window), (QStringList{u"zeta"_s, u"alfa"_s}));
        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 2"_s);
        QCOMPARE(home::bytes().size(), 401);
        QCOMPARE(
            widget<QLabel>(window, "StorageFile")->text(), u"Tamaño de almacenamiento ocupado: 401.00 B"_s);
    }

    void actsInOrder()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        connect(taskList(window)->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { note(u"panel"_s); });
        connect(
            taskList(window)->model(), &QAbstractItemModel::modelReset, this, [this] { note(u"list"_s); });
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        QCOMPARE(m_steps, (QStringList{u"panel (tasks 1, messages 0)"_s, u"list (tasks 0, messages 1)"_s}));
    }

    void refreshesAfterARemovalByItsTitleAlone()
    {
        MainWindow window;
        home::writeBytes(R"([{"id":"{a}","title":"uno"}])");

        callSlot(window, "onTaskRemoved", u"otra"_s);

        traymessages::compareOnly(u"Tarea eliminada"_s, u"La tarea 'otra' ha sido eliminada."_s);
        QCOMPARE(shownTitles(window), QStringList{u"uno"_s});
        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 1"_s);
        QCOMPARE(
            widget<QLabel>(window, "StorageFile")->text(), u"Tamaño de almacenamiento ocupado: 28.00 B"_s);
    }
};

NUBARIA_TEST_MAIN(TaskDetailsDeletionTest)
#include "taskdetailsdeletiontest.moc"
