#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/taskform.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

// The first box is the question.
void compareSecondBox(
    const MessageBoxes &boxes, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    QCOMPARE(boxes.shown().size(), 2);
    compareBox(boxes.shown().constLast(), icon, title, text);
}

// Every one takes the list's selection away.
void refillList(const MainWindow &window, const QByteArray &way)
{
    if (way == "order") {
        widget<QComboBox>(window, "OrderNotesBy")->setCurrentIndex(1);
    } else if (way == "search") {
        widget<QLineEdit>(window, "SearchTask")->setText(u"o"_s);
    } else {
        fillForm(window);
        click(window, "SaveTaskButton");
    }
}

} // namespace

/// Deleting and updating where no task is selected, the task has gone, or the file cannot be used.
class TaskFileFailuresTest final : public WindowTest
{
    Q_OBJECT

    QStringList m_steps;

private slots:
    void init()
    {
        WindowTest::init();
        m_steps.clear();
    }

    void deletingWarnsInABoxWithoutASelection()
    {
        const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
        home::writeBytes(bytes);
        const MainWindow window;
        const MessageBoxes boxes(QMessageBox::Yes);
        resetTaskFileOpens();

        click(window, "DeleteTaskBtn");

        compareSecondBox(boxes, QMessageBox::Warning, u"Advertencia"_s,
            u"Por favor, seleccione una tarea para eliminar."_s);
        QCOMPARE(taskFileOpens(), 0);
        QCOMPARE(home::bytes(), bytes);
        QCOMPARE(traymessages::all().size(), 0);
    }

    void deletingClosesThePanelBeforeItLooksForASelection()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);
        // A selected row that is not the current one: closing clears the selection, and no row is usable.
        taskList(window)->selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
        QVERIFY(taskList(window)->selectionModel()->hasSelection());
        const MessageBoxes boxes(QMessageBox::Yes);
        const MessageBoxes *const asked = &boxes;
        connect(taskList(window)->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this, asked] { m_steps.append(u"panel (boxes %1)"_s.arg(asked->shown().size())); });

        click(window, "DeleteTaskBtn");

        QCOMPARE(m_steps, QStringList{u"panel (boxes 1)"_s});
        compareSecondBox(boxes, QMessageBox::Warning, u"Advertencia"_s,
            u"Por favor, seleccione una tarea para eliminar."_s);
        QTRY_COMPARE(panelPlace(window), closedPanel);
    }

    void updatingWarnsInTheTrayWithoutASelection()
    {
        const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
        home::writeBytes(bytes);
        const MainWindow window;
        widget<QLineEdit>(window, "TaskTitleView")->setText(u"dos"_s);
        const MessageBoxes boxes;
        resetTaskFileOpens();

        click(window, "UpdateTaskBtn");

        traymessages::compareOnly(u"Advertencia"_s, u"Por favor, seleccione una tarea para actualizar."_s);
        QCOMPARE(taskFileOpens(), 0);
        QCOMPARE(home::bytes(), bytes);
        QCOMPARE(boxes.shown().size(), 0);
    }

    void deletingWarnsAfterARefill_data()
    {
        QTest::addColumn<QByteArray>("refill");
        QTest::newRow("order") << QByteArray("order");
        QTest::newRow("search") << QByteArray("search");
        QTest::newRow("save") << QByteArray("save");
    }

    void deletingWarnsAfterARefill()
    {
        QFETCH(QByteArray, refill);
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
        const MainWindow window;
        selectRow(window, 0);
        refillList(window, refill);
        QCOMPARE(home::tasks().size(), refill == "save" ? 3 : 2);
        const QByteArray bytes = home::bytes();
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        compareSecondBox(boxes, QMessageBox::Warning, u"Advertencia"_s,
            u"Por favor, seleccione una tarea para eliminar."_s);
        QCOMPARE(home::bytes(), bytes);
    }

    void updatingWarnsAfterARefill_data() { deletingWarnsAfterARefill_data(); }

    void updatingWarnsAfterARefill()
    {
        QFETCH(QByteArray, refill);
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
        const MainWindow window;
        widget<QCheckBox>(window, "SimpleNotify")->setChecked(false);
        selectRow(window, 0);
        refillList(window, refill);
        QCOMPARE(home::tasks().size(), refill == "save" ? 3 : 2);
        const QByteArray bytes = home::bytes();
        widget<QLineEdit>(window, "TaskTitleView")->setText(u"cambiada"_s);

        click(window, "UpdateTaskBtn");

        QCOMPARE(traymessages::all().size(), 1);
        QCOMPARE(traymessages::all().constFirst().title, u"Advertencia"_s);
        QCOMPARE(
            traymessages::all().constFirst().text, u"Por favor, seleccione una tarea para actualizar."_s);
        QCOMPARE(home::bytes(), bytes);
    }

    void deletingReportsAFileThatCannotBeOpened_data()
    {
        QTest::addColumn<int>("failingMode");
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<QString>("boxText");
        QTest::addColumn<QString>("trayText");
        QTest::newRow("for reading and writing")
            << O_RDWR << QByteArray("Failed to open file for reading: \"Permission denied\"")
            << u"Failed to open file for reading: Permission denied"_s
            << u"Error el cargar los datos: Permission denied"_s;
        QTest::newRow("for writing") << O_WRONLY
                                     << QByteArray("Failed to open file for writing: \"Permission denied\"")
                                     << u"Failed to open file for writing: Permission denied"_s
                                     << u"Failed to open file for writing: Permission denied"_s;
    }

    void deletingReportsAFileThatCannotBeOpened()
    {
        QFETCH(int, failingMode);
        QFETCH(QByteArray, log);
        QFETCH(QString, boxText);
        const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
        home::writeBytes(bytes);
        const MainWindow window;
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);
        const MessageBoxes boxes(QMessageBox::Yes);
        const FailingOpen failing(failingMode);
        QTest::ignoreMessage(QtCriticalMsg, log.constData());

        click(window, "DeleteTaskBtn");

        compareSecondBox(boxes, QMessageBox::Critical, u"Error"_s, boxText);
        QCOMPARE(home::bytes(), bytes);
        QCOMPARE(shownTitles(window), QStringList{u"uno"_s});
        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"1"_s);
        QCOMPARE(traymessages::all().size(), 0);
        QTRY_COMPARE(panelPlace(window), closedPanel);
    }

    void updatingReportsAFileThatCannotBeOpened_data() { deletingReportsAFileThatCannotBeOpened_data(); }

    void updatingReportsAFileThatCannotBeOpened()
    {
        QFETCH(int, failingMode);
        QFETCH(QByteArray, log);
        QFETCH(QString, trayText);
        const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
        home::writeBytes(bytes);
        const MainWindow window;
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);
        const MessageBoxes boxes;
        const FailingOpen failing(failingMode);
        QTest::ignoreMessage(QtCriticalMsg, log.constData());

        click(window, "UpdateTaskBtn");

        traymessages::compareOnly(u"Error"_s, trayText);
        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(home::bytes(), bytes);
        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), openPanel);
    }

    void deletingATaskThatHasGoneSaysSoWithoutATitle()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        home::writeBytes(R"([{"title":"otra","id":"{b}"}])");
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(home::bytes(),
            QByteArray("[\n    {\n        \"id\": \"{b}\",\n        \"title\": \"otra\"\n    }\n]\n"));
        traymessages::compareOnly(u"Tarea eliminada"_s, u"La tarea '' ha sido eliminada."_s);
        QCOMPARE(shownTitles(window), QStringList{u"otra"_s});
    }

    void updatingDoesNotPutBackATaskThatHasGone()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        widget<QLineEdit>(window, "TaskTitleView")->setText(u"dos"_s);
        home::writeBytes(R"([{"title":"otra","id":"{b}","notes":1}])");

        click(window, "UpdateTaskBtn");

        QCOMPARE(home::bytes(),
            QByteArray("[\n    {\n        \"id\": \"{b}\",\n        \"notes\": 1,\n"
                       "        \"title\": \"otra\"\n    }\n]\n"));
        traymessages::compareOnly(u"Tarea actualizada"_s, u"La tarea 'dos' ha sido actualizada."_s);
        QCOMPARE(shownTitles(window), QStringList{u"otra"_s});
    }

    void deletingFromWhatIsNoJsonLeavesAnEmptyArray_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("truncated") << QByteArray(R"([{"id":"{a}","title":"uno"})");
        QTest::newRow("no JSON") << QByteArray("tareas");
        QTest::newRow("nothing") << QByteArray();
    }

    void deletingFromWhatIsNoJsonLeavesAnEmptyArray()
    {
        QFETCH(QByteArray, bytes);
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        home::writeBytes(bytes);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
        QCOMPARE(shownTitles(window), QStringList());
    }

    void updatingWhatIsNoJsonLeavesAnEmptyArray_data() { deletingFromWhatIsNoJsonLeavesAnEmptyArray_data(); }

    void updatingWhatIsNoJsonLeavesAnEmptyArray()
    {
        QFETCH(QByteArray, bytes);
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        home::writeBytes(bytes);

        click(window, "UpdateTaskBtn");

        QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
        traymessages::compareOnly(u"Tarea actualizada"_s, u"La tarea 'uno' ha sido actualizada."_s);
        QCOMPARE(shownTitles(window), QStringList());
    }
};

NUBARIA_TEST_MAIN(TaskFileFailuresTest)
#include "taskfilefailurestest.moc"
