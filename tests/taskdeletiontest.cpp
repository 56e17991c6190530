#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/testmain.h"
#include "support/traymessages.h"
#include "support/window.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QSignalSpy>
#include <QTextEdit>
#include <QVariantAnimation>

using namespace Qt::Literals::StringLiterals;

namespace {

const QRect openPanel(0, 0, 1010, 700);
const QRect closedPanel(1010, 0, 1010, 700);

QListView *list(const MainWindow &window)
{
    return widget<QListView>(window, "TaskListView");
}

QRect panel(const MainWindow &window)
{
    return widget(window, "TaskDetail")->geometry();
}

void selectRow(const MainWindow &window, int number)
{
    list(window)->setCurrentIndex(list(window)->model()->index(number, 0));
}

void pressDelete(const MainWindow &window)
{
    widget<QAbstractButton>(window, "DeleteTaskBtn")->click();
}

// Slides begun before are over when this one, as long as they are and begun last, is.
bool waitForSlides()
{
    QVariantAnimation last;
    last.setStartValue(0);
    last.setEndValue(1);
    last.setDuration(250);
    QSignalSpy finished(&last, &QVariantAnimation::finished);
    last.start();
    return finished.wait();
}

} // namespace

class TaskDeletionTest final : public QObject
{
    Q_OBJECT

    static void compareSecondBox(
        const MessageBoxes &boxes, QMessageBox::Icon icon, const QString &title, const QString &text);
    void note(const QString &step);

    QStringList m_steps;

private slots:
    void init()
    {
        home::reset();
        traymessages::clear();
        m_steps.clear();
    }

    void asksFirst();
    void anyAnswerButYesChangesNothing_data();
    void anyAnswerButYesChangesNothing();
    void bothButtonsRemoveTheTask_data();
    void bothButtonsRemoveTheTask();
    void keepsTheOtherTasksAsTheyAre();
    void removesTheTaskOfTheRowAmongEqualTitles();
    void removesTheFirstTaskOfAnIdThatOccursTwice();
    void theLastTaskLeavesAnEmptyArray();
    void closesThePanel();
    void theNoticeIsGivenWhereWanted_data();
    void theNoticeIsGivenWhereWanted();
    void showsTheTitleAsItIs();
    void reloadsTheListAndTheStatistics();
    void actsInOrder();
    void refreshesAfterARemovalByItsTitleAlone();

    void warnsInABoxWithoutASelection();
    void closesThePanelBeforeItLooksForASelection();
    void warnsAfterARefill_data();
    void warnsAfterARefill();
    void aFileThatCannotBeOpenedIsReported_data();
    void aFileThatCannotBeOpenedIsReported();
    void aTaskThatHasGoneIsRemovedWithoutATitle();
    void whatIsNoJsonBecomesAnEmptyArray_data();
    void whatIsNoJsonBecomesAnEmptyArray();
};

// The first one is the question.
void TaskDeletionTest::compareSecondBox(
    const MessageBoxes &boxes, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    QCOMPARE(boxes.shown().size(), 2);
    const ShownBox &box = boxes.shown().constLast();
    QCOMPARE(box.icon, icon);
    QCOMPARE(box.title, title);
    QCOMPARE(box.text, text);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QVERIFY(box.hasParent);
}

void TaskDeletionTest::note(const QString &step)
{
    m_steps.append(
        u"%1 (tasks %2, messages %3)"_s.arg(step).arg(home::tasks().size()).arg(traymessages::all().size()));
}

void TaskDeletionTest::asksFirst()
{
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const MessageBoxes boxes(QMessageBox::No);

    pressDelete(window);

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
    QVERIFY(!box.hasParent);
}

void TaskDeletionTest::anyAnswerButYesChangesNothing_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::newRow("no") << QMessageBox::No;
    QTest::newRow("escape") << QMessageBox::NoButton; // a button that the box lacks, so that it is rejected
}

void TaskDeletionTest::anyAnswerButYesChangesNothing()
{
    QFETCH(QMessageBox::StandardButton, answer);
    const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
    home::writeBytes(bytes);
    const MainWindow window;
    selectRow(window, 0);
    QTRY_COMPARE(panel(window), openPanel);
    const MessageBoxes boxes(answer);
    resetTaskFileOpens();

    pressDelete(window);

    QCOMPARE(boxes.shown().size(), 1);
    QCOMPARE(taskFileOpens(), 0);
    QCOMPARE(home::bytes(), bytes);
    QVERIFY(list(window)->selectionModel()->hasSelection());
    QCOMPARE(shownTitles(window), QStringList{u"uno"_s});
    QCOMPARE(traymessages::all().size(), 0);
    QVERIFY(waitForSlides());
    QCOMPARE(panel(window), openPanel);
}

void TaskDeletionTest::bothButtonsRemoveTheTask_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::newRow("finish") << QByteArray("FinishTaskBtn");
    QTest::newRow("delete") << QByteArray("DeleteTaskBtn");
}

void TaskDeletionTest::bothButtonsRemoveTheTask()
{
    QFETCH(QByteArray, button);
    const QJsonObject first = home::record(u"{a}"_s, u"uno"_s);
    const QJsonObject third = home::record(u"{c}"_s, u"tres"_s);
    home::writeTasks({first, home::record(u"{b}"_s, u"dos"_s), third});
    const MainWindow window;
    selectRow(window, 1);
    const MessageBoxes boxes(QMessageBox::Yes);

    widget<QAbstractButton>(window, button.constData())->click();

    QCOMPARE(boxes.shown().size(), 1);
    QCOMPARE(boxes.shown().constFirst().title, u"Finalizar Tarea"_s);
    const QJsonArray expected{first, third};
    QCOMPARE(home::tasks(), expected);
    QCOMPARE(home::bytes(), QJsonDocument(expected).toJson(QJsonDocument::Indented));
    QCOMPARE(shownTitles(window), (QStringList{u"uno"_s, u"tres"_s}));
    QCOMPARE(traymessages::all().size(), 1);
    QCOMPARE(traymessages::all().constFirst().text, u"La tarea 'dos' ha sido eliminada."_s);
}

void TaskDeletionTest::keepsTheOtherTasksAsTheyAre()
{
    QJsonObject first = home::record(u"{a}"_s, u"uno"_s);
    first.insert(u"notes"_s, QJsonObject{{u"color"_s, u"rojo"_s}});
    const QJsonObject third{{u"id"_s, u"{c}"_s}, {u"title"_s, 7}};
    home::writeTasks({first, home::record(u"{b}"_s, u"dos"_s), third});
    const MainWindow window;
    selectRow(window, 1);
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    QCOMPARE(home::tasks(), (QJsonArray{first, third}));
}

void TaskDeletionTest::removesTheTaskOfTheRowAmongEqualTitles()
{
    const QJsonObject first = home::record(u"{a}"_s, u"Pagar"_s);
    home::writeTasks({first, home::record(u"{b}"_s, u"Pagar"_s)});
    const MainWindow window;
    selectRow(window, 1);
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    QCOMPARE(home::tasks(), QJsonArray{first});
}

void TaskDeletionTest::removesTheFirstTaskOfAnIdThatOccursTwice()
{
    const QJsonObject second = home::record(u"{a}"_s, u"dos"_s);
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), second});
    const MainWindow window;
    selectRow(window, 1);
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    QCOMPARE(home::tasks(), QJsonArray{second});
    QCOMPARE(traymessages::all().size(), 1);
    QCOMPARE(traymessages::all().constFirst().text, u"La tarea 'uno' ha sido eliminada."_s);
}

void TaskDeletionTest::theLastTaskLeavesAnEmptyArray()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
    QCOMPARE(shownTitles(window), QStringList());
    QVERIFY(widget<QLabel>(window, "TaskAdvise")->isHidden());
}

void TaskDeletionTest::closesThePanel()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    QTRY_COMPARE(panel(window), openPanel);
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    QTRY_COMPARE(panel(window), closedPanel);
}

void TaskDeletionTest::theNoticeIsGivenWhereWanted_data()
{
    QTest::addColumn<bool>("wanted");
    QTest::newRow("wanted") << true;
    QTest::newRow("not wanted") << false;
}

void TaskDeletionTest::theNoticeIsGivenWhereWanted()
{
    QFETCH(bool, wanted);
    home::writeTasks({home::record(u"{a}"_s, u"Añadir piñón"_s), home::record(u"{b}"_s, u"dos"_s)});
    const MainWindow window;
    widget<QCheckBox>(window, "SimpleNotify")->setChecked(wanted);
    selectRow(window, 0);
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    const TrayMessage notice{u"Tarea eliminada"_s, u"La tarea 'Añadir piñón' ha sido eliminada."_s,
        QSystemTrayIcon::Information, 10000, true};
    QVERIFY(traymessages::all() == (wanted ? QList{notice} : QList<TrayMessage>()));
    QCOMPARE(shownTitles(window), QStringList{u"dos"_s});
    QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 1"_s);
    QCOMPARE(widget<QLabel>(window, "StorageFile")->text(),
        u"Tamaño de almacenamiento ocupado: %1.00 B"_s.arg(home::bytes().size()));
}

void TaskDeletionTest::showsTheTitleAsItIs()
{
    home::writeTasks({home::record(u"{a}"_s, u"100 %1 <i>'%2'</i>"_s)});
    const MainWindow window;
    selectRow(window, 0);
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    QCOMPARE(traymessages::all().size(), 1);
    QCOMPARE(traymessages::all().constFirst().text, u"La tarea '100 %1 <i>'%2'</i>' ha sido eliminada."_s);
}

void TaskDeletionTest::reloadsTheListAndTheStatistics()
{
    home::writeTasks({home::record(u"{a}"_s, u"zeta"_s), home::record(u"{b}"_s, u"beta"_s),
        home::record(u"{c}"_s, u"alfa"_s)});
    const MainWindow window;
    widget<QComboBox>(window, "OrderNotesBy")->setCurrentText(u"Titulo"_s);
    selectRow(window, 1); // beta
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    QCOMPARE(shownTitles(window), (QStringList{u"zeta"_s, u"alfa"_s}));
    QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 2"_s);
    QCOMPARE(home::bytes().size(), 401);
    QCOMPARE(widget<QLabel>(window, "StorageFile")->text(), u"Tamaño de almacenamiento ocupado: 401.00 B"_s);
}

void TaskDeletionTest::actsInOrder()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    connect(list(window)->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        [this] { note(u"panel"_s); });
    connect(list(window)->model(), &QAbstractItemModel::modelReset, this, [this] { note(u"list"_s); });
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    QCOMPARE(m_steps, (QStringList{u"panel (tasks 1, messages 0)"_s, u"list (tasks 0, messages 1)"_s}));
}

void TaskDeletionTest::refreshesAfterARemovalByItsTitleAlone()
{
    MainWindow window;
    home::writeBytes(R"([{"id":"{a}","title":"uno"}])");

    callSlot(window, "onTaskRemoved", u"otra"_s);

    QCOMPARE(traymessages::all().size(), 1);
    QCOMPARE(traymessages::all().constFirst().title, u"Tarea eliminada"_s);
    QCOMPARE(traymessages::all().constFirst().text, u"La tarea 'otra' ha sido eliminada."_s);
    QCOMPARE(shownTitles(window), QStringList{u"uno"_s});
    QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 1"_s);
    QCOMPARE(widget<QLabel>(window, "StorageFile")->text(), u"Tamaño de almacenamiento ocupado: 28.00 B"_s);
}

void TaskDeletionTest::warnsInABoxWithoutASelection()
{
    const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
    home::writeBytes(bytes);
    const MainWindow window;
    const MessageBoxes boxes(QMessageBox::Yes);
    resetTaskFileOpens();

    pressDelete(window);

    compareSecondBox(
        boxes, QMessageBox::Warning, u"Advertencia"_s, u"Por favor, seleccione una tarea para eliminar."_s);
    QCOMPARE(taskFileOpens(), 0);
    QCOMPARE(home::bytes(), bytes);
    QCOMPARE(traymessages::all().size(), 0);
}

void TaskDeletionTest::closesThePanelBeforeItLooksForASelection()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    QTRY_COMPARE(panel(window), openPanel);
    // A selected row that is not the current one: closing clears the selection, and no row is usable.
    list(window)->selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
    QVERIFY(list(window)->selectionModel()->hasSelection());
    const MessageBoxes boxes(QMessageBox::Yes);
    const MessageBoxes *const asked = &boxes;
    connect(list(window)->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        [this, asked] { m_steps.append(u"panel (boxes %1)"_s.arg(asked->shown().size())); });

    pressDelete(window);

    QCOMPARE(m_steps, QStringList{u"panel (boxes 1)"_s});
    compareSecondBox(
        boxes, QMessageBox::Warning, u"Advertencia"_s, u"Por favor, seleccione una tarea para eliminar."_s);
    QTRY_COMPARE(panel(window), closedPanel);
}

void TaskDeletionTest::warnsAfterARefill_data()
{
    QTest::addColumn<QByteArray>("refill");
    QTest::newRow("order") << QByteArray("order");
    QTest::newRow("search") << QByteArray("search");
    QTest::newRow("save") << QByteArray("save");
}

void TaskDeletionTest::warnsAfterARefill()
{
    QFETCH(QByteArray, refill);
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
    const MainWindow window;
    selectRow(window, 0);
    if (refill == "order") {
        widget<QComboBox>(window, "OrderNotesBy")->setCurrentIndex(1);
    } else if (refill == "search") {
        widget<QLineEdit>(window, "SearchTask")->setText(u"o"_s);
    } else {
        widget<QLineEdit>(window, "TaskTitle")->setText(u"tres"_s);
        widget<QTextEdit>(window, "TaskDescription")->setPlainText(u"tres"_s);
        widget<QComboBox>(window, "CategoryTaskBox")->setCurrentIndex(0);
        widget<QComboBox>(window, "UrgencyTaskBox")->setCurrentIndex(0);
        widget<QAbstractButton>(window, "SaveTaskButton")->click();
        QCOMPARE(home::tasks().size(), 3);
    }
    const QByteArray bytes = home::bytes();
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    compareSecondBox(
        boxes, QMessageBox::Warning, u"Advertencia"_s, u"Por favor, seleccione una tarea para eliminar."_s);
    QCOMPARE(home::bytes(), bytes);
}

void TaskDeletionTest::aFileThatCannotBeOpenedIsReported_data()
{
    QTest::addColumn<int>("failingMode");
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("text");
    QTest::newRow("for reading and writing")
        << O_RDWR << QByteArray("Failed to open file for reading: \"Permission denied\"")
        << u"Failed to open file for reading: Permission denied"_s;
    QTest::newRow("for writing") << O_WRONLY
                                 << QByteArray("Failed to open file for writing: \"Permission denied\"")
                                 << u"Failed to open file for writing: Permission denied"_s;
}

void TaskDeletionTest::aFileThatCannotBeOpenedIsReported()
{
    QFETCH(int, failingMode);
    QFETCH(QByteArray, log);
    QFETCH(QString, text);
    const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
    home::writeBytes(bytes);
    const MainWindow window;
    selectRow(window, 0);
    QTRY_COMPARE(panel(window), openPanel);
    const MessageBoxes boxes(QMessageBox::Yes);
    const FailingOpen failing(failingMode);
    QTest::ignoreMessage(QtCriticalMsg, log.constData());

    pressDelete(window);

    compareSecondBox(boxes, QMessageBox::Critical, u"Error"_s, text);
    QCOMPARE(home::bytes(), bytes);
    QCOMPARE(shownTitles(window), QStringList{u"uno"_s});
    QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"1"_s);
    QCOMPARE(traymessages::all().size(), 0);
    QTRY_COMPARE(panel(window), closedPanel);
}

void TaskDeletionTest::aTaskThatHasGoneIsRemovedWithoutATitle()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    home::writeBytes(R"([{"title":"otra","id":"{b}"}])");
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    QCOMPARE(boxes.shown().size(), 1);
    QCOMPARE(home::bytes(),
        QByteArray("[\n    {\n        \"id\": \"{b}\",\n        \"title\": \"otra\"\n    }\n]\n"));
    QCOMPARE(traymessages::all().size(), 1);
    QCOMPARE(traymessages::all().constFirst().text, u"La tarea '' ha sido eliminada."_s);
    QCOMPARE(shownTitles(window), QStringList{u"otra"_s});
}

void TaskDeletionTest::whatIsNoJsonBecomesAnEmptyArray_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("truncated") << QByteArray(R"([{"id":"{a}","title":"uno"})");
    QTest::newRow("no JSON") << QByteArray("tareas");
    QTest::newRow("nothing") << QByteArray();
}

void TaskDeletionTest::whatIsNoJsonBecomesAnEmptyArray()
{
    QFETCH(QByteArray, bytes);
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    home::writeBytes(bytes);
    const MessageBoxes boxes(QMessageBox::Yes);

    pressDelete(window);

    QCOMPARE(boxes.shown().size(), 1);
    QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
    QCOMPARE(shownTitles(window), QStringList());
}

NUBARIA_TEST_MAIN(TaskDeletionTest)
#include "taskdeletiontest.moc"
