#include "core/taskfile.h"
#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QScopeGuard>

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

int logLines = 0;

void countLogLine(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++logLines;
}

int savedTasks(MainWindow &window)
{
    int count = -1;
    QMetaObject::invokeMethod(&window, "countSavedTasks", Q_RETURN_ARG(int, count));
    return count;
}

qlonglong fileSize(MainWindow &window)
{
    qlonglong size = -1;
    QMetaObject::invokeMethod(&window, "getJsonFileSize", Q_RETURN_ARG(qlonglong, size));
    return size;
}

QString labelText(const MainWindow &window, const char *label)
{
    return widget<QLabel>(window, label)->text();
}

} // namespace

class TaskFileStatisticsTest final : public WindowTest
{
    Q_OBJECT

    QString m_countAtTheRefill;

private slots:
    void countsTheElementsOfTheArray_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("count");
        QTest::newRow("empty array") << QByteArray("[]") << 0;
        QTest::newRow("two records") << QByteArray(R"([{"id":"{a}"},{"id":"{b}"}])") << 2;
        QTest::newRow("one id twice") << QByteArray(R"([{"id":"{a}"},{"id":"{a}"}])") << 2;
        QTest::newRow("no objects") << QByteArray(R"(["uno",2,null])") << 3;
        QTest::newRow("no JSON") << QByteArray(R"([{"id":"{a}"})") << 0;
        QTest::newRow("object") << QByteArray(R"({"id":"{a}"})") << 0;
        QTest::newRow("nothing") << QByteArray() << 0;
    }

    void countsTheElementsOfTheArray()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, count);
        MainWindow window;
        home::writeBytes(bytes);

        QCOMPARE(savedTasks(window), count);
    }

    void countsNothingInAFileThatCannotBeReadAndSaysNothing()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        MainWindow window;
        const FailingOpen failing(O_RDONLY);
        const MessageBoxes boxes;
        logLines = 0;
        const QtMessageHandler previous = qInstallMessageHandler(countLogLine);
        const auto restore = qScopeGuard([previous] { qInstallMessageHandler(previous); });

        QCOMPARE(savedTasks(window), 0);

        QCOMPARE(logLines, 0);
        QCOMPARE(boxes.shown().size(), 0);
    }

    void sizeIsThatOfTheFile_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<qlonglong>("size");
        QTest::newRow("nothing") << QByteArray() << qlonglong(0);
        QTest::newRow("empty array") << QByteArray("[]") << qlonglong(2);
        QTest::newRow("accents") << QByteArray("[\"\xC3\xB1\"]") << qlonglong(6);
        QTest::newRow("no JSON") << QByteArray(3000, 'x') << qlonglong(3000);
    }

    void sizeIsThatOfTheFile()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(qlonglong, size);
        MainWindow window;
        home::writeBytes(bytes);

        QCOMPARE(fileSize(window), size);
        QCOMPARE(taskFileSize(), size);
    }

    void anAbsentFileHasNeitherTasksNorSize()
    {
        MainWindow window;

        QCOMPARE(savedTasks(window), 0);
        QCOMPARE(fileSize(window), 0);
        QVERIFY(!QFile::exists(home::taskFile()));
    }

    void labelsAreBareAtTheStart_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("count");
        QTest::addColumn<QString>("size");
        QTest::newRow("empty array") << QByteArray("[]") << u"0"_s << u"2.00 B"_s;
        QTest::newRow("two tasks") << QByteArray(R"([{"id":"{a}"},{"id":"{b}"}])") << u"2"_s << u"27.00 B"_s;
        QTest::newRow("no JSON") << QByteArray(1536, 'x') << u"0"_s << u"1.50 KB"_s;
    }

    void labelsAreBareAtTheStart()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, count);
        QFETCH(QString, size);
        home::writeBytes(bytes);

        const MainWindow window;

        QCOMPARE(labelText(window, "SavedTasks"), count);
        QCOMPARE(labelText(window, "StorageFile"), size);
    }

    void labelsAreBareAtTheStartWithoutAFile()
    {
        const MainWindow window;

        QCOMPARE(labelText(window, "SavedTasks"), u"0"_s);
        QCOMPARE(labelText(window, "StorageFile"), u"0.00 B"_s);
    }

    void labelsAtTheStartKnowTheRepairedFile()
    {
        home::writeBytes("[{}]");
        QTest::ignoreMessage(QtInfoMsg, "rmc.json: se repararon ids faltantes en tareas antiguas.");

        const MainWindow window;

        QCOMPARE(labelText(window, "SavedTasks"), u"1"_s);
        // "[", "    {", the id of 38 characters in its line, "    }", "]"
        QCOMPARE(labelText(window, "StorageFile"), u"71.00 B"_s);
    }

    void labelsArePrefixedAfterAnUpdate()
    {
        MainWindow window;
        home::writeBytes(R"(["uno","dos"])" + QByteArray(1523, ' '));

        callSlot(window, "updateTaskList");

        QCOMPARE(labelText(window, "SavedTasks"), u"Tareas guardadas: 2"_s);
        QCOMPARE(labelText(window, "StorageFile"), u"Tamaño de almacenamiento ocupado: 1.50 KB"_s);
    }

    void labelsAreComputedAnewAtEachUpdate()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        MainWindow window;
        callSlot(window, "updateTaskList");
        QVERIFY(QFile::remove(home::taskFile()));

        callSlot(window, "updateTaskList");

        QCOMPARE(labelText(window, "SavedTasks"), u"Tareas guardadas: 0"_s);
        QCOMPARE(labelText(window, "StorageFile"), u"Tamaño de almacenamiento ocupado: 0.00 B"_s);
    }

    void anUpdateReloadsTheListInFileOrder()
    {
        MainWindow window;
        QVERIFY(!widget<QLabel>(window, "TaskAdvise")->isHidden());
        home::writeTasks({home::record(u"{b}"_s, u"Zeta"_s), home::record(u"{a}"_s, u"alfa"_s)});

        callSlot(window, "updateTaskList");

        QCOMPARE(shownTitles(window), (QStringList{u"Zeta"_s, u"alfa"_s}));
        QVERIFY(widget<QLabel>(window, "TaskAdvise")->isHidden());
    }

    void anUpdateLoadsTheListBeforeItCounts()
    {
        MainWindow window;
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const auto *count = widget<QLabel>(window, "SavedTasks");
        connect(widget<QListView>(window, "TaskListView")->model(), &QAbstractItemModel::modelReset, this,
            [this, count] { m_countAtTheRefill = count->text(); });

        callSlot(window, "updateTaskList");

        QCOMPARE(m_countAtTheRefill, u"0"_s);
        QCOMPARE(count->text(), u"Tareas guardadas: 1"_s);
    }

    void anUpdateGivesTheViewItsModelAgain()
    {
        MainWindow window;
        auto *list = widget<QListView>(window, "TaskListView");
        const QAbstractItemModel *const model = list->model();
        QStringListModel other;
        list->setModel(&other);

        callSlot(window, "updateTaskList");

        QCOMPARE(list->model(), model);
    }

    void anUpdateKeepsTheSelectionsConnection()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        MainWindow window;
        auto *list = widget<QListView>(window, "TaskListView");

        callSlot(window, "updateTaskList");
        list->setCurrentIndex(list->model()->index(0, 0));

        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), u"uno"_s);
    }
};

NUBARIA_TEST_MAIN(TaskFileStatisticsTest)
#include "taskfilestatisticstest.moc"
