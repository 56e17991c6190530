#include "support/home.h"
#include "support/listedtasks.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

QStringList detailsOfRows(MainWindow &window)
{
    QStringList details;
    for (int row = 0; row < shownTitles(window).size(); ++row) {
        details.append(detailOfRow(window, row));
    }
    return details;
}

} // namespace

class TaskListTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void theFirstListIsInFileOrder()
    {
        home::writeTasks(fourTasks());

        const MainWindow window;

        QCOMPARE(shownTitles(window), fileOrder());
        QVERIFY(advice(window)->isHidden());
    }

    void theFirstListIsEmptyAndAdvisedWithoutAFile()
    {
        const MainWindow window;

        QCOMPARE(shownTitles(window), QStringList());
        QVERIFY(!advice(window)->isHidden());
        QCOMPARE(widget<QLabel>(window, "TaskAdvise")->text(), u"NO HAY NINGUNA TAREA DISPONIBLE"_s);
    }

    void adviceIsHiddenOnceTheFileCanBeRead_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("tasks") << QByteArray(R"([{"id":"{a}"}])");
        QTest::newRow("empty array") << QByteArray("[]");
        QTest::newRow("no JSON") << QByteArray("tareas");
        QTest::newRow("nothing") << QByteArray();
    }

    void adviceIsHiddenOnceTheFileCanBeRead()
    {
        QFETCH(QByteArray, bytes);
        MainWindow window;
        home::writeBytes(bytes);

        callSlot(window, "loadTasks");

        QVERIFY(advice(window)->isHidden());
    }

    void loadingShowsEmptyRowsForTasksWithoutTitle()
    {
        home::writeBytes(R"([{"id":"{a}"},{"id":"{b}","title":5},{"id":"{c}","title":"uno"}])");

        const MainWindow window;

        QCOMPARE(shownTitles(window), (QStringList{QString(), QString(), u"uno"_s}));
    }

    void loadingForgetsTheFormerRows()
    {
        home::writeTasks(fourTasks());
        MainWindow window;
        home::writeTasks({fourTasks().at(3)});

        callSlot(window, "loadTasks");

        QCOMPARE(shownTitles(window), QStringList{u"alfa"_s});
        QCOMPARE(detailOfRow(window, 0), u"detalle {4}"_s);
    }

    void ordersByTheIndexOfTheChooser_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QStringList>("titles");
        QTest::newRow("nothing chosen") << -1 << fileOrder();
        QTest::newRow("recent") << 0 << fileOrder();
        QTest::newRow("title") << 1 << titleOrder();
        QTest::newRow("priority") << 2 << urgencyOrder();
        QTest::newRow("beyond the choices") << 3 << fileOrder();
    }

    void ordersByTheIndexOfTheChooser()
    {
        QFETCH(int, index);
        QFETCH(QStringList, titles);
        home::writeTasks(fourTasks());
        MainWindow window;
        callSlot(window, "filterTasks", u"Tarea zeta"_s);

        callSlot(window, "orderTasks", index);

        QCOMPARE(shownTitles(window), titles);
    }

    void theChooserOrders()
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

    void theNewestTaskIsTheLastOfTheRecentOnes()
    {
        home::writeTasks(fourTasks());
        const MainWindow window;
        QJsonArray tasks = fourTasks();
        tasks.append(detailedTask(u"{5}"_s, u"Aaa"_s, u"Urgente"_s));
        home::writeTasks(tasks);

        widget<QComboBox>(window, "OrderNotesBy")->setCurrentText(u"Recientes"_s);

        QCOMPARE(shownTitles(window), fileOrder() + QStringList{u"Aaa"_s});
    }

    void rowsDesignateTheirTasksAfterOrdering()
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

    void theSearchFieldSearches()
    {
        home::writeTasks(fourTasks());
        const MainWindow window;

        QTest::keyClicks(widget<QLineEdit>(window, "SearchTask"), u"TAREA"_s);
        QCOMPARE(shownTitles(window), QStringList{u"Tarea zeta"_s});

        widget<QLineEdit>(window, "SearchTask")->setText(u"detalle"_s);
        QCOMPARE(shownTitles(window), QStringList());
    }

    void rowsDesignateTheirTasksAfterASearch()
    {
        home::writeTasks({detailedTask(u"{1}"_s, u"uno"_s, u"Alta"_s),
            detailedTask(u"{2}"_s, u"Pagar luz"_s, u"Alta"_s), detailedTask(u"{3}"_s, u"tres"_s, u"Alta"_s),
            detailedTask(u"{4}"_s, u"pagar gas"_s, u"Alta"_s),
            detailedTask(u"{5}"_s, u"cinco"_s, u"Alta"_s)});
        MainWindow window;

        widget<QLineEdit>(window, "SearchTask")->setText(u"pagar"_s);

        QCOMPARE(shownTitles(window), (QStringList{u"Pagar luz"_s, u"pagar gas"_s}));
        QCOMPARE(detailsOfRows(window), (QStringList{u"detalle {2}"_s, u"detalle {4}"_s}));
    }

    void clearingTheSearchRestoresFileOrder()
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

    void equalTitlesLeadToTheirOwnTasks_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::newRow("loaded") << QByteArray("loadTasks");
        QTest::newRow("ordered") << QByteArray("orderTasks");
        QTest::newRow("searched") << QByteArray("filterTasks");
    }

    void equalTitlesLeadToTheirOwnTasks()
    {
        QFETCH(QByteArray, slot);
        home::writeTasks(
            {detailedTask(u"{1}"_s, u"Pagar"_s, u"Alta"_s), detailedTask(u"{2}"_s, u"Pagar"_s, u"Baja"_s)});
        MainWindow window;

        fillListBy(window, slot);

        QCOMPARE(shownTitles(window), (QStringList{u"Pagar"_s, u"Pagar"_s}));
        QStringList details = detailsOfRows(window);
        details.sort(); // an order of equal titles is not promised
        QCOMPARE(details, (QStringList{u"detalle {1}"_s, u"detalle {2}"_s}));
    }

    void orderAndSearchDoNotTouchTheFileOrTheAdvice_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::addColumn<QStringList>("titles");
        QTest::newRow("ordering") << QByteArray("orderTasks") << QStringList{u"a"_s, u"b"_s};
        QTest::newRow("searching") << QByteArray("filterTasks") << QStringList{u"a"_s};
    }

    void orderAndSearchDoNotTouchTheFileOrTheAdvice()
    {
        QFETCH(QByteArray, slot);
        QFETCH(QStringList, titles);
        MainWindow window;
        const QByteArray bytes = R"([{"id":"{b}","title":"b"},{"id":"{a}","title":"a"}])";
        home::writeBytes(bytes);

        fillListBy(window, slot);

        QCOMPARE(shownTitles(window), titles);
        QCOMPARE(home::bytes(), bytes);
        QVERIFY(!advice(window)->isHidden());
    }

    void orderAndSearchDoNotCombine()
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

    void aReloadAppliesNeitherOrderNorSearch()
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
};

NUBARIA_TEST_MAIN(TaskListTest)
#include "tasklisttest.moc"
