#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/testmain.h"
#include "support/window.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonObject task(const QString &id, const QString &title, const QString &urgency)
{
    QJsonObject record = home::record(id, title);
    record.insert(u"urgency"_s, urgency);
    record.insert(u"description"_s, u"detalle "_s + id);
    return record;
}

// By title: Alfa, Tarea zeta, alfa, beta; by urgency: alfa, beta, Tarea zeta, Alfa.
QJsonArray fourTasks()
{
    return {task(u"{1}"_s, u"beta"_s, u"Alta"_s), task(u"{2}"_s, u"Tarea zeta"_s, u"Media"_s),
        task(u"{3}"_s, u"Alfa"_s, u"Baja"_s), task(u"{4}"_s, u"alfa"_s, u"Urgente"_s)};
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

// What the detail panel, or else a box, shows for a row, and with it which task the row stands for.
QString detailOfRow(MainWindow &window, int row)
{
    auto *detail = widget<QTextEdit>(window, "TaskDescriptionView");
    detail->clear();
    const MessageBoxes boxes;
    callSlot(window, "showTaskDetails", widget<QListView>(window, "TaskListView")->model()->index(row, 0));
    return boxes.shown().isEmpty() ? detail->toPlainText() : boxes.shown().constFirst().text;
}

QStringList detailsOfRows(MainWindow &window)
{
    QStringList details;
    for (int row = 0; row < shownTitles(window).size(); ++row) {
        details.append(detailOfRow(window, row));
    }
    return details;
}

void refill(MainWindow &window, const QByteArray &slot)
{
    if (slot == "loadTasks") {
        callSlot(window, "loadTasks");
    } else if (slot == "orderTasks") {
        callSlot(window, "orderTasks", 1);
    } else {
        callSlot(window, "filterTasks", u"a"_s);
    }
}

bool isAdviceHidden(const MainWindow &window)
{
    return widget<QLabel>(window, "TaskAdvise")->isHidden();
}

} // namespace

class TaskListTest final : public QObject
{
    Q_OBJECT
private slots:
    void init() { home::reset(); }

    void theFirstListIsInFileOrder();
    void theFirstListIsEmptyAndAdvisedWithoutAFile();
    void adviceIsHiddenOnceTheFileCanBeRead_data();
    void adviceIsHiddenOnceTheFileCanBeRead();
    void loadingShowsEmptyRowsForTasksWithoutTitle();
    void loadingForgetsTheFormerRows();
    void loadingWithoutAFileKeepsTheListsAndShowsTheAdvice();

    void ordersByTheIndexOfTheChooser_data();
    void ordersByTheIndexOfTheChooser();
    void theChooserOrders();
    void theNewestTaskIsTheLastOfTheRecentOnes();
    void rowsDesignateTheirTasksAfterOrdering();
    void orderingDoesNotTouchTheFileOrTheAdvice();

    void theSearchFieldSearches();
    void searchingDoesNotTouchTheFileOrTheAdvice();
    void rowsDesignateTheirTasksAfterASearch();
    void clearingTheSearchRestoresFileOrder();

    void equalTitlesLeadToTheirOwnTasks_data();
    void equalTitlesLeadToTheirOwnTasks();
    void rowsBeyondTheIdsDesignateNoTask_data();
    void rowsBeyondTheIdsDesignateNoTask();
    void orderAndSearchDoNotCombine();
    void aReloadAppliesNeitherOrderNorSearch();

    void withoutAFileTheViewIsEmptiedAndTheIdsStay_data();
    void withoutAFileTheViewIsEmptiedAndTheIdsStay();
    void aFileThatCannotBeReadIsReportedAndTheListsStay_data();
    void aFileThatCannotBeReadIsReportedAndTheListsStay();
    void whatIsNoJsonEmptiesTheList_data();
    void whatIsNoJsonEmptiesTheList();
};

void TaskListTest::theFirstListIsInFileOrder()
{
    home::writeTasks(fourTasks());

    const MainWindow window;

    QCOMPARE(shownTitles(window), fileOrder());
    QVERIFY(isAdviceHidden(window));
}

void TaskListTest::theFirstListIsEmptyAndAdvisedWithoutAFile()
{
    const MainWindow window;

    QCOMPARE(shownTitles(window), QStringList());
    QVERIFY(!isAdviceHidden(window));
    QCOMPARE(widget<QLabel>(window, "TaskAdvise")->text(), u"NO HAY NINGUNA TAREA DISPONIBLE"_s);
}

void TaskListTest::adviceIsHiddenOnceTheFileCanBeRead_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("tasks") << QByteArray(R"([{"id":"{a}"}])");
    QTest::newRow("empty array") << QByteArray("[]");
    QTest::newRow("no JSON") << QByteArray("tareas");
    QTest::newRow("nothing") << QByteArray();
}

void TaskListTest::adviceIsHiddenOnceTheFileCanBeRead()
{
    QFETCH(QByteArray, bytes);
    MainWindow window;
    home::writeBytes(bytes);

    callSlot(window, "loadTasks");

    QVERIFY(isAdviceHidden(window));
}

void TaskListTest::loadingShowsEmptyRowsForTasksWithoutTitle()
{
    home::writeBytes(R"([{"id":"{a}"},{"id":"{b}","title":5},{"id":"{c}","title":"uno"}])");

    const MainWindow window;

    QCOMPARE(shownTitles(window), (QStringList{QString(), QString(), u"uno"_s}));
}

void TaskListTest::loadingForgetsTheFormerRows()
{
    home::writeTasks(fourTasks());
    MainWindow window;
    home::writeTasks({fourTasks().at(3)});

    callSlot(window, "loadTasks");

    QCOMPARE(shownTitles(window), QStringList{u"alfa"_s});
    QCOMPARE(detailOfRow(window, 0), u"detalle {4}"_s);
}

void TaskListTest::loadingWithoutAFileKeepsTheListsAndShowsTheAdvice()
{
    home::writeTasks(fourTasks());
    MainWindow window;
    QVERIFY(QFile::remove(home::taskFile()));

    callSlot(window, "loadTasks");

    QCOMPARE(shownTitles(window), fileOrder());
    QVERIFY(!isAdviceHidden(window));
    home::writeTasks(fourTasks());
    QCOMPARE(detailOfRow(window, 2), u"detalle {3}"_s);
}

void TaskListTest::ordersByTheIndexOfTheChooser_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("titles");
    QTest::newRow("nothing chosen") << -1 << fileOrder();
    QTest::newRow("recent") << 0 << fileOrder();
    QTest::newRow("title") << 1 << titleOrder();
    QTest::newRow("priority") << 2 << urgencyOrder();
    QTest::newRow("beyond the choices") << 3 << fileOrder();
}

void TaskListTest::ordersByTheIndexOfTheChooser()
{
    QFETCH(int, index);
    QFETCH(QStringList, titles);
    home::writeTasks(fourTasks());
    MainWindow window;
    callSlot(window, "filterTasks", u"Tarea zeta"_s);

    callSlot(window, "orderTasks", index);

    QCOMPARE(shownTitles(window), titles);
}

void TaskListTest::theChooserOrders()
{
    home::writeTasks(fourTasks());
    const MainWindow window;
    auto *chooser = widget<QComboBox>(window, "OrderNotesBy");

    chooser->setCurrentText(u"Titulo"_s);
    QCOMPARE(shownTitles(window), titleOrder());

    chooser->setCurrentText(u"Prioridad"_s);
    QCOMPARE(shownTitles(window), urgencyOrder());

    chooser->setCurrentText(u"Recientes"_s);
    QCOMPARE(shownTitles(window), fileOrder());

    chooser->setCurrentText(u"Titulo"_s);
    chooser->setCurrentIndex(-1);
    QCOMPARE(shownTitles(window), fileOrder());
}

void TaskListTest::theNewestTaskIsTheLastOfTheRecentOnes()
{
    home::writeTasks(fourTasks());
    const MainWindow window;
    QJsonArray tasks = fourTasks();
    tasks.append(task(u"{5}"_s, u"Aaa"_s, u"Urgente"_s));
    home::writeTasks(tasks);

    widget<QComboBox>(window, "OrderNotesBy")->setCurrentText(u"Recientes"_s);

    QCOMPARE(shownTitles(window), fileOrder() + QStringList{u"Aaa"_s});
}

void TaskListTest::rowsDesignateTheirTasksAfterOrdering()
{
    home::writeTasks(fourTasks());
    MainWindow window;

    callSlot(window, "orderTasks", 1);
    QCOMPARE(detailsOfRows(window),
        (QStringList{u"detalle {3}"_s, u"detalle {2}"_s, u"detalle {4}"_s, u"detalle {1}"_s}));

    callSlot(window, "orderTasks", 2);
    QCOMPARE(detailsOfRows(window),
        (QStringList{u"detalle {4}"_s, u"detalle {1}"_s, u"detalle {2}"_s, u"detalle {3}"_s}));
}

void TaskListTest::orderingDoesNotTouchTheFileOrTheAdvice()
{
    MainWindow window;
    const QByteArray bytes = R"([{"id":"{b}","title":"b"},{"id":"{a}","title":"a"}])";
    home::writeBytes(bytes);

    callSlot(window, "orderTasks", 1);

    QCOMPARE(shownTitles(window), (QStringList{u"a"_s, u"b"_s}));
    QCOMPARE(home::bytes(), bytes);
    QVERIFY(!isAdviceHidden(window));
}

void TaskListTest::theSearchFieldSearches()
{
    home::writeTasks(fourTasks());
    const MainWindow window;

    QTest::keyClicks(widget<QLineEdit>(window, "SearchTask"), u"TAREA"_s);
    QCOMPARE(shownTitles(window), QStringList{u"Tarea zeta"_s});

    widget<QLineEdit>(window, "SearchTask")->setText(u"detalle"_s);
    QCOMPARE(shownTitles(window), QStringList());
}

void TaskListTest::searchingDoesNotTouchTheFileOrTheAdvice()
{
    MainWindow window;
    const QByteArray bytes = R"([{"id":"{b}","title":"b"},{"id":"{a}","title":"a"}])";
    home::writeBytes(bytes);

    callSlot(window, "filterTasks", u"a"_s);

    QCOMPARE(shownTitles(window), QStringList{u"a"_s});
    QCOMPARE(home::bytes(), bytes);
    QVERIFY(!isAdviceHidden(window));
}

void TaskListTest::rowsDesignateTheirTasksAfterASearch()
{
    home::writeTasks({task(u"{1}"_s, u"uno"_s, u"Alta"_s), task(u"{2}"_s, u"Pagar luz"_s, u"Alta"_s),
        task(u"{3}"_s, u"tres"_s, u"Alta"_s), task(u"{4}"_s, u"pagar gas"_s, u"Alta"_s),
        task(u"{5}"_s, u"cinco"_s, u"Alta"_s)});
    MainWindow window;

    widget<QLineEdit>(window, "SearchTask")->setText(u"pagar"_s);

    QCOMPARE(shownTitles(window), (QStringList{u"Pagar luz"_s, u"pagar gas"_s}));
    QCOMPARE(detailsOfRows(window), (QStringList{u"detalle {2}"_s, u"detalle {4}"_s}));
}

void TaskListTest::clearingTheSearchRestoresFileOrder()
{
    home::writeTasks(fourTasks());
    MainWindow window;
    auto *search = widget<QLineEdit>(window, "SearchTask");
    search->setText(u"beta"_s);
    QCOMPARE(shownTitles(window), QStringList{u"beta"_s});

    search->clear();

    QCOMPARE(shownTitles(window), fileOrder());
    QCOMPARE(detailOfRow(window, 3), u"detalle {4}"_s);
}

void TaskListTest::equalTitlesLeadToTheirOwnTasks_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::newRow("loaded") << QByteArray("loadTasks");
    QTest::newRow("ordered") << QByteArray("orderTasks");
    QTest::newRow("searched") << QByteArray("filterTasks");
}

void TaskListTest::equalTitlesLeadToTheirOwnTasks()
{
    QFETCH(QByteArray, slot);
    home::writeTasks({task(u"{1}"_s, u"Pagar"_s, u"Alta"_s), task(u"{2}"_s, u"Pagar"_s, u"Baja"_s)});
    MainWindow window;

    refill(window, slot);

    QCOMPARE(shownTitles(window), (QStringList{u"Pagar"_s, u"Pagar"_s}));
    QStringList details = detailsOfRows(window);
    details.sort(); // an order of equal titles is not promised
    QCOMPARE(details, (QStringList{u"detalle {1}"_s, u"detalle {2}"_s}));
}

void TaskListTest::rowsBeyondTheIdsDesignateNoTask_data()
{
    QTest::addColumn<int>("row");
    QTest::newRow("no row") << -1;
    QTest::newRow("first beyond") << 1;
    QTest::newRow("second beyond") << 2;
}

void TaskListTest::rowsBeyondTheIdsDesignateNoTask()
{
    QFETCH(int, row);
    home::writeTasks({task(u"{1}"_s, u"uno"_s, u"Alta"_s)});
    MainWindow window;
    auto *model = qobject_cast<QStringListModel *>(widget<QListView>(window, "TaskListView")->model());
    model->setStringList({u"uno"_s, u"dos"_s, u"tres"_s}); // rows that no task stands behind
    resetTaskFileOpens();

    QCOMPARE(detailOfRow(window, row), QString());

    QCOMPARE(taskFileOpens(), 0);
}

void TaskListTest::orderAndSearchDoNotCombine()
{
    home::writeTasks(fourTasks());
    const MainWindow window;
    auto *chooser = widget<QComboBox>(window, "OrderNotesBy");
    auto *search = widget<QLineEdit>(window, "SearchTask");
    chooser->setCurrentText(u"Titulo"_s);

    search->setText(u"ta"_s); // beta, Tarea zeta
    QCOMPARE(shownTitles(window), (QStringList{u"beta"_s, u"Tarea zeta"_s}));

    chooser->setCurrentText(u"Prioridad"_s);
    QCOMPARE(shownTitles(window), urgencyOrder());
}

void TaskListTest::aReloadAppliesNeitherOrderNorSearch()
{
    home::writeTasks(fourTasks());
    MainWindow window;
    auto *chooser = widget<QComboBox>(window, "OrderNotesBy");
    auto *search = widget<QLineEdit>(window, "SearchTask");
    chooser->setCurrentText(u"Titulo"_s);
    search->setText(u"beta"_s);

    callSlot(window, "updateTaskList");

    QCOMPARE(shownTitles(window), fileOrder());
    QCOMPARE(chooser->currentText(), u"Titulo"_s);
    QCOMPARE(search->text(), u"beta"_s);
}

void TaskListTest::withoutAFileTheViewIsEmptiedAndTheIdsStay_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::newRow("ordering") << QByteArray("orderTasks");
    QTest::newRow("searching") << QByteArray("filterTasks");
}

void TaskListTest::withoutAFileTheViewIsEmptiedAndTheIdsStay()
{
    QFETCH(QByteArray, slot);
    home::writeTasks(fourTasks());
    MainWindow window;
    QVERIFY(QFile::remove(home::taskFile()));
    const MessageBoxes boxes;

    refill(window, slot);

    QCOMPARE(shownTitles(window), QStringList());
    QVERIFY(isAdviceHidden(window));
    QCOMPARE(boxes.shown().size(), 0);
    QVERIFY(!QFile::exists(home::taskFile()));
    // Rows put back under the ids lead to the tasks of before.
    auto *model = qobject_cast<QStringListModel *>(widget<QListView>(window, "TaskListView")->model());
    model->setStringList(fileOrder());
    home::writeTasks(fourTasks());
    QCOMPARE(detailOfRow(window, 1), u"detalle {2}"_s);
    QCOMPARE(detailOfRow(window, 3), u"detalle {4}"_s);
}

void TaskListTest::aFileThatCannotBeReadIsReportedAndTheListsStay_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("adviceHidden");
    QTest::newRow("loading") << QByteArray("loadTasks") << u"Error al cargar el dato: Permission denied"_s
                             << false;
    QTest::newRow("ordering") << QByteArray("orderTasks") << u"Error el cargar el dato: Permission denied"_s
                              << true;
    QTest::newRow("searching") << QByteArray("filterTasks")
                               << u"Error al cargar los datos: Permission denied"_s << true;
}

void TaskListTest::aFileThatCannotBeReadIsReportedAndTheListsStay()
{
    QFETCH(QByteArray, slot);
    QFETCH(QString, text);
    QFETCH(bool, adviceHidden);
    home::writeTasks(fourTasks());
    MainWindow window;
    const MessageBoxes boxes;
    QTest::ignoreMessage(QtCriticalMsg, "Failed to open file for reading: \"Permission denied\"");
    {
        const FailingOpen failing(O_RDONLY);
        refill(window, slot);
    }

    QCOMPARE(boxes.shown().size(), 1);
    const ShownBox box = boxes.shown().constFirst();
    QCOMPARE(box.title, u"Error"_s);
    QCOMPARE(box.text, text);
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QVERIFY(box.hasParent);
    QCOMPARE(shownTitles(window), fileOrder());
    QCOMPARE(isAdviceHidden(window), adviceHidden);
    QCOMPARE(detailOfRow(window, 2), u"detalle {3}"_s);
}

void TaskListTest::whatIsNoJsonEmptiesTheList_data()
{
    equalTitlesLeadToTheirOwnTasks_data();
}

void TaskListTest::whatIsNoJsonEmptiesTheList()
{
    QFETCH(QByteArray, slot);
    home::writeTasks(fourTasks());
    MainWindow window;
    home::writeBytes(R"([{"id": "{1}", "title": "al)");
    const MessageBoxes boxes;

    refill(window, slot);

    QCOMPARE(shownTitles(window), QStringList());
    QVERIFY(isAdviceHidden(window));
    QCOMPARE(boxes.shown().size(), 0);
}

NUBARIA_TEST_MAIN(TaskListTest)
#include "tasklisttest.moc"
