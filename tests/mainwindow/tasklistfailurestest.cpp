#include "support/failingopen.h"
#include "support/home.h"
#include "support/listedtasks.h"
#include "support/messageboxes.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

/// The task list where the task file is absent or cannot be used, and rows that no task stands behind.
class TaskListFailuresTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void loadingWithoutAFileKeepsTheListsAndShowsTheAdvice()
    {
        home::writeTasks(fourTasks());
        MainWindow window;
        QVERIFY(QFile::remove(home::taskFile()));

        callSlot(window, "loadTasks");

        QCOMPARE(shownTitles(window), fileOrder());
        QVERIFY(!advice(window)->isHidden());
        home::writeTasks(fourTasks());
        QCOMPARE(detailOfRow(window, 2), u"detalle {3}"_s);
    }

    void withoutAFileTheViewIsEmptiedAndTheIdsStay_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::newRow("ordering") << QByteArray("orderTasks");
        QTest::newRow("searching") << QByteArray("filterTasks");
    }

    void withoutAFileTheViewIsEmptiedAndTheIdsStay()
    {
        QFETCH(QByteArray, slot);
        home::writeTasks(fourTasks());
        MainWindow window;
        QVERIFY(QFile::remove(home::taskFile()));
        const MessageBoxes boxes;

        fillListBy(window, slot);

        QCOMPARE(shownTitles(window), QStringList());
        QVERIFY(advice(window)->isHidden());
        QCOMPARE(boxes.shown().size(), 0);
        QVERIFY(!QFile::exists(home::taskFile()));
        // Rows put back under the ids lead to the tasks of before.
        auto *model = qobject_cast<QStringListModel *>(taskList(window)->model());
        model->setStringList(fileOrder());
        home::writeTasks(fourTasks());
        QCOMPARE(detailOfRow(window, 1), u"detalle {2}"_s);
        QCOMPARE(detailOfRow(window, 3), u"detalle {4}"_s);
    }

    void aFileThatCannotBeReadIsReportedAndTheListsStay_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("adviceHidden");
        QTest::newRow("loading") << QByteArray("loadTasks") << u"Error al cargar el dato: Permission denied"_s
                                 << false;
        QTest::newRow("ordering") << QByteArray("orderTasks")
                                  << u"Error el cargar el dato: Permission denied"_s << true;
        QTest::newRow("searching") << QByteArray("filterTasks")
                                   << u"Error al cargar los datos: Permission denied"_s << true;
    }

    void aFileThatCannotBeReadIsReportedAndTheListsStay()
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
            fillListBy(window, slot);
        }

        compareOnlyBox(boxes, QMessageBox::Critical, u"Error"_s, text);
        QCOMPARE(shownTitles(window), fileOrder());
        QCOMPARE(advice(window)->isHidden(), adviceHidden);
        QCOMPARE(detailOfRow(window, 2), u"detalle {3}"_s);
    }

    void whatIsNoJsonEmptiesTheList_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::newRow("loading") << QByteArray("loadTasks");
        QTest::newRow("ordering") << QByteArray("orderTasks");
        QTest::newRow("searching") << QByteArray("filterTasks");
    }

    void whatIsNoJsonEmptiesTheList()
    {
        QFETCH(QByteArray, slot);
        home::writeTasks(fourTasks());
        MainWindow window;
        home::writeBytes(QByteArray(R"([{"id": "{1}", "title": "alfa"}])").chopped(5));
        const MessageBoxes boxes;

        fillListBy(window, slot);

        QCOMPARE(shownTitles(window), QStringList());
        QVERIFY(advice(window)->isHidden());
        QCOMPARE(boxes.shown().size(), 0);
    }

    void rowsBeyondTheIdsDesignateNoTask_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("no row") << -1;
        QTest::newRow("first beyond") << 1;
        QTest::newRow("second beyond") << 2;
    }

    void rowsBeyondTheIdsDesignateNoTask()
    {
        QFETCH(int, row);
        home::writeTasks({detailedTask(u"{1}"_s, u"uno"_s, u"Alta"_s)});
        MainWindow window;
        auto *model = qobject_cast<QStringListModel *>(taskList(window)->model());
        model->setStringList({u"uno"_s, u"dos"_s, u"tres"_s}); // rows that no task stands behind
        resetTaskFileOpens();

        QCOMPARE(detailOfRow(window, row), QString());

        QCOMPARE(taskFileOpens(), 0);
    }
};

NUBARIA_TEST_MAIN(TaskListFailuresTest)
#include "tasklistfailurestest.moc"
