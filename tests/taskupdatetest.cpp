#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/testmain.h"
#include "support/traymessages.h"
#include "support/window.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTextEdit>
#include <QVariantAnimation>

using namespace Qt::Literals::StringLiterals;

namespace {

const QRect openPanel(0, 0, 1010, 700);
const QRect closedPanel(1010, 0, 1010, 700);

QRect panel(const MainWindow &window)
{
    return widget(window, "TaskDetail")->geometry();
}

void selectRow(const MainWindow &window, int number)
{
    auto *list = widget<QListView>(window, "TaskListView");
    list->setCurrentIndex(list->model()->index(number, 0));
}

void pressUpdate(const MainWindow &window)
{
    widget<QAbstractButton>(window, "UpdateTaskBtn")->click();
}

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

TrayMessage message(const QString &title, const QString &text)
{
    return {title, text, QSystemTrayIcon::Information, 10000, true};
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

class TaskUpdateTest final : public QObject
{
    Q_OBJECT

    static void compareOnlyMessage(const QString &title, const QString &text);
    void note(const QString &step);

    QStringList m_steps;

private slots:
    void init()
    {
        home::reset();
        traymessages::clear();
        m_steps.clear();
    }

    void writesThePanelOverTheTask();
    void dropsFurtherKeysOfTheUpdatedTaskOnly();
    void updatesTheTaskOfTheRowAmongEqualTitles();
    void updatesTheFirstTaskOfAnIdThatOccursTwice();
    void emptyTextsAreAccepted();
    void saysSoAndClosesThePanel();
    void showsTheTitleAsItIs();
    void reloadsTheListAndTheStatistics();
    void theMessageHasNoPreference();
    void actsInOrder();
    void updatesTheCurrentRowAfterThePanelWasClosed();

    void warnsInTheTrayWithoutASelection();
    void warnsAfterARefill_data();
    void warnsAfterARefill();
    void aFileThatCannotBeOpenedForBothIsReported();
    void aFileThatCannotBeWrittenIsReported();
    void aTaskThatHasGoneIsNotPutBackAndStillUpdated();
    void whatIsNoJsonBecomesAnEmptyArray_data();
    void whatIsNoJsonBecomesAnEmptyArray();
    void anAbsentFileIsMade();
};

void TaskUpdateTest::compareOnlyMessage(const QString &title, const QString &text)
{
    QCOMPARE(traymessages::all().size(), 1);
    QCOMPARE(traymessages::all().constFirst().title, title);
    QCOMPARE(traymessages::all().constFirst().text, text);
    QVERIFY(traymessages::all().constFirst() == message(title, text));
}

void TaskUpdateTest::note(const QString &step)
{
    m_steps.append(u"%1 (file %2, messages %3)"_s.arg(step, home::tasks().first()["title"_L1].toString())
                       .arg(traymessages::all().size()));
}

void TaskUpdateTest::writesThePanelOverTheTask()
{
    const QJsonObject first = home::record(u"{a}"_s, u"uno"_s);
    const QJsonObject third = home::record(u"{c}"_s, u"tres"_s);
    home::writeTasks({first, home::record(u"{b}"_s, u"dos"_s), third});
    const MainWindow window;
    selectRow(window, 1);
    editPanel(window, u"Añadir «dos»"_s);

    pressUpdate(window);

    const QJsonArray expected{first, editedRecord(u"{b}"_s, u"Añadir «dos»"_s), third};
    QCOMPARE(home::tasks(), expected);
    QCOMPARE(home::bytes(), QJsonDocument(expected).toJson(QJsonDocument::Indented));
}

void TaskUpdateTest::dropsFurtherKeysOfTheUpdatedTaskOnly()
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

    pressUpdate(window);

    QCOMPARE(home::tasks(), (QJsonArray{first, editedRecord(u"{b}"_s, u"dos"_s), third}));
}

void TaskUpdateTest::updatesTheTaskOfTheRowAmongEqualTitles()
{
    const QJsonObject first = home::record(u"{a}"_s, u"Pagar"_s);
    home::writeTasks({first, home::record(u"{b}"_s, u"Pagar"_s)});
    const MainWindow window;
    selectRow(window, 1);
    editPanel(window, u"Pagar"_s);

    pressUpdate(window);

    QCOMPARE(home::tasks(), (QJsonArray{first, editedRecord(u"{b}"_s, u"Pagar"_s)}));
}

void TaskUpdateTest::updatesTheFirstTaskOfAnIdThatOccursTwice()
{
    const QJsonObject second = home::record(u"{a}"_s, u"dos"_s);
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), second});
    const MainWindow window;
    selectRow(window, 1);
    editPanel(window, u"tres"_s);

    pressUpdate(window);

    QCOMPARE(home::tasks(), (QJsonArray{editedRecord(u"{a}"_s, u"tres"_s), second}));
}

void TaskUpdateTest::emptyTextsAreAccepted()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    widget<QLineEdit>(window, "TaskTitleView")->clear();
    widget<QTextEdit>(window, "TaskDescriptionView")->clear();
    widget<QComboBox>(window, "CategoryTaskBoxView")->setCurrentIndex(-1);
    widget<QComboBox>(window, "UrgencyTaskBoxView")->setCurrentIndex(-1);
    const MessageBoxes boxes;

    pressUpdate(window);

    QCOMPARE(home::tasks(),
        (QJsonArray{QJsonObject{{u"id"_s, u"{a}"_s}, {u"title"_s, QString()}, {u"description"_s, QString()},
            {u"category"_s, QString()}, {u"dateLimit"_s, u"05-03-2026"_s}, {u"urgency"_s, QString()}}}));
    QCOMPARE(boxes.shown().size(), 0);
    compareOnlyMessage(u"Tarea actualizada"_s, u"La tarea '' ha sido actualizada."_s);
}

void TaskUpdateTest::saysSoAndClosesThePanel()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    QTRY_COMPARE(panel(window), openPanel);
    editPanel(window, u"Añadir piñón"_s);
    const MessageBoxes boxes;

    pressUpdate(window);

    compareOnlyMessage(u"Tarea actualizada"_s, u"La tarea 'Añadir piñón' ha sido actualizada."_s);
    QTRY_COMPARE(panel(window), closedPanel);
    QCOMPARE(boxes.shown().size(), 0);
}

void TaskUpdateTest::showsTheTitleAsItIs()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    editPanel(window, u"100 %1 <i>'%2'</i>"_s);

    pressUpdate(window);

    compareOnlyMessage(u"Tarea actualizada"_s, u"La tarea '100 %1 <i>'%2'</i>' ha sido actualizada."_s);
}

void TaskUpdateTest::reloadsTheListAndTheStatistics()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
    const MainWindow window;
    widget<QComboBox>(window, "OrderNotesBy")->setCurrentText(u"Titulo"_s);
    selectRow(window, 0); // dos
    editPanel(window, u"cambiada"_s);

    pressUpdate(window);

    QCOMPARE(shownTitles(window), (QStringList{u"uno"_s, u"cambiada"_s}));
    QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 2"_s);
    QCOMPARE(home::bytes().size(), 397);
    QCOMPARE(widget<QLabel>(window, "StorageFile")->text(), u"Tamaño de almacenamiento ocupado: 397.00 B"_s);
}

void TaskUpdateTest::theMessageHasNoPreference()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    widget<QCheckBox>(window, "SimpleNotify")->setChecked(false);
    selectRow(window, 0);

    pressUpdate(window);

    QCOMPARE(traymessages::titled(u"Tarea actualizada"_s).size(), 1);

    pressUpdate(window); // the refill has taken the selection away

    QCOMPARE(traymessages::titled(u"Advertencia"_s).size(), 1);
}

void TaskUpdateTest::actsInOrder()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    editPanel(window, u"dos"_s);
    auto *list = widget<QListView>(window, "TaskListView");
    connect(
        list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { note(u"panel"_s); });
    connect(list->model(), &QAbstractItemModel::modelReset, this, [this] { note(u"list"_s); });

    pressUpdate(window);

    QCOMPARE(m_steps, (QStringList{u"panel (file dos, messages 0)"_s, u"list (file dos, messages 1)"_s}));
}

void TaskUpdateTest::updatesTheCurrentRowAfterThePanelWasClosed()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    widget<QAbstractButton>(window, "CloseDetailTaskBtn")->click();
    editPanel(window, u"dos"_s);

    pressUpdate(window);

    QCOMPARE(home::tasks(), QJsonArray{editedRecord(u"{a}"_s, u"dos"_s)});
}

void TaskUpdateTest::warnsInTheTrayWithoutASelection()
{
    const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
    home::writeBytes(bytes);
    const MainWindow window;
    editPanel(window, u"dos"_s);
    const MessageBoxes boxes;
    resetTaskFileOpens();

    pressUpdate(window);

    compareOnlyMessage(u"Advertencia"_s, u"Por favor, seleccione una tarea para actualizar."_s);
    QCOMPARE(taskFileOpens(), 0);
    QCOMPARE(home::bytes(), bytes);
    QCOMPARE(boxes.shown().size(), 0);
}

void TaskUpdateTest::warnsAfterARefill_data()
{
    QTest::addColumn<QByteArray>("refill");
    QTest::newRow("order") << QByteArray("order");
    QTest::newRow("search") << QByteArray("search");
    QTest::newRow("save") << QByteArray("save");
}

void TaskUpdateTest::warnsAfterARefill()
{
    QFETCH(QByteArray, refill);
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
    const MainWindow window;
    widget<QCheckBox>(window, "SimpleNotify")->setChecked(false);
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
    widget<QLineEdit>(window, "TaskTitleView")->setText(u"cambiada"_s);

    pressUpdate(window);

    QCOMPARE(traymessages::all().size(), 1);
    QCOMPARE(traymessages::all().constFirst().title, u"Advertencia"_s);
    QCOMPARE(traymessages::all().constFirst().text, u"Por favor, seleccione una tarea para actualizar."_s);
    QCOMPARE(home::bytes(), bytes);
}

void TaskUpdateTest::aFileThatCannotBeOpenedForBothIsReported()
{
    const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
    home::writeBytes(bytes);
    const MainWindow window;
    selectRow(window, 0);
    QTRY_COMPARE(panel(window), openPanel);
    const MessageBoxes boxes;
    const FailingOpen failing(O_RDWR);
    QTest::ignoreMessage(QtCriticalMsg, "Failed to open file for reading: \"Permission denied\"");

    pressUpdate(window);

    compareOnlyMessage(u"Error"_s, u"Error el cargar los datos: Permission denied"_s);
    QCOMPARE(boxes.shown().size(), 0);
    QCOMPARE(home::bytes(), bytes);
    QVERIFY(waitForSlides());
    QCOMPARE(panel(window), openPanel);
}

void TaskUpdateTest::aFileThatCannotBeWrittenIsReported()
{
    const QByteArray bytes = R"([{"id":"{a}","title":"uno"}])";
    home::writeBytes(bytes);
    const MainWindow window;
    selectRow(window, 0);
    QTRY_COMPARE(panel(window), openPanel);
    const MessageBoxes boxes;
    const FailingOpen failing(O_WRONLY);
    QTest::ignoreMessage(QtCriticalMsg, "Failed to open file for writing: \"Permission denied\"");

    pressUpdate(window);

    compareOnlyMessage(u"Error"_s, u"Failed to open file for writing: Permission denied"_s);
    QCOMPARE(boxes.shown().size(), 0);
    QCOMPARE(home::bytes(), bytes);
    QVERIFY(waitForSlides());
    QCOMPARE(panel(window), openPanel);
}

void TaskUpdateTest::aTaskThatHasGoneIsNotPutBackAndStillUpdated()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    editPanel(window, u"dos"_s);
    home::writeBytes(R"([{"title":"otra","id":"{b}","notes":1}])");

    pressUpdate(window);

    QCOMPARE(home::bytes(),
        QByteArray("[\n    {\n        \"id\": \"{b}\",\n        \"notes\": 1,\n"
                   "        \"title\": \"otra\"\n    }\n]\n"));
    compareOnlyMessage(u"Tarea actualizada"_s, u"La tarea 'dos' ha sido actualizada."_s);
    QCOMPARE(shownTitles(window), QStringList{u"otra"_s});
}

void TaskUpdateTest::whatIsNoJsonBecomesAnEmptyArray_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("truncated") << QByteArray(R"([{"id":"{a}","title":"uno"})");
    QTest::newRow("no JSON") << QByteArray("tareas");
    QTest::newRow("nothing") << QByteArray();
}

void TaskUpdateTest::whatIsNoJsonBecomesAnEmptyArray()
{
    QFETCH(QByteArray, bytes);
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    home::writeBytes(bytes);

    pressUpdate(window);

    QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
    compareOnlyMessage(u"Tarea actualizada"_s, u"La tarea 'uno' ha sido actualizada."_s);
    QCOMPARE(shownTitles(window), QStringList());
}

void TaskUpdateTest::anAbsentFileIsMade()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    selectRow(window, 0);
    QVERIFY(QFile::remove(home::taskFile()));

    pressUpdate(window);

    QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
    compareOnlyMessage(u"Tarea actualizada"_s, u"La tarea 'uno' ha sido actualizada."_s);
}

NUBARIA_TEST_MAIN(TaskUpdateTest)
#include "taskupdatetest.moc"
