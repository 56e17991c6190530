#include "mainwindow/taskfile.h"
#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/testmain.h"
#include "support/window.h"

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

class StatisticsTest final : public QObject
{
    Q_OBJECT

    QString m_countAtTheRefill;

private slots:
    void init() { home::reset(); }

    void sizeTextHasTwoDecimalsAndAUnit_data();
    void sizeTextHasTwoDecimalsAndAUnit();
    void sizeTextHasAPointInEveryLocale();

    void countsTheElementsOfTheArray_data();
    void countsTheElementsOfTheArray();
    void countsNothingInAFileThatCannotBeReadAndSaysNothing();
    void sizeIsThatOfTheFile_data();
    void sizeIsThatOfTheFile();
    void anAbsentFileHasNeitherTasksNorSize();

    void labelsAreBareAtTheStart_data();
    void labelsAreBareAtTheStart();
    void labelsAreBareAtTheStartWithoutAFile();
    void labelsAtTheStartKnowTheRepairedFile();
    void labelsArePrefixedAfterAnUpdate();
    void labelsAreComputedAnewAtEachUpdate();
    void anUpdateReloadsTheListInFileOrder();
    void anUpdateLoadsTheListBeforeItCounts();
    void anUpdateGivesTheViewItsModelAgain();
    void anUpdateKeepsTheSelectionsConnection();
};

void StatisticsTest::sizeTextHasTwoDecimalsAndAUnit_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << qint64(0) << u"0.00 B"_s;
    QTest::newRow("one byte") << qint64(1) << u"1.00 B"_s;
    QTest::newRow("some bytes") << qint64(512) << u"512.00 B"_s;
    QTest::newRow("last byte count") << qint64(1023) << u"1023.00 B"_s;
    QTest::newRow("a kilobyte") << qint64(1024) << u"1.00 KB"_s;
    QTest::newRow("rounded up") << qint64(1100) << u"1.07 KB"_s;
    QTest::newRow("one and a half") << qint64(1536) << u"1.50 KB"_s;
    QTest::newRow("unit fixed before rounding") << qint64(1048575) << u"1024.00 KB"_s;
    QTest::newRow("a megabyte") << qint64(1048576) << u"1.00 MB"_s;
    QTest::newRow("below a gigabyte") << qint64(1073741823) << u"1024.00 MB"_s;
    QTest::newRow("a gigabyte") << qint64(1073741824) << u"1.00 GB"_s;
    QTest::newRow("a terabyte") << qint64(1099511627776) << u"1.00 TB"_s;
    QTest::newRow("no unit beyond") << qint64(1125899906842624) << u"1024.00 TB"_s;
    QTest::newRow("the most") << std::numeric_limits<qint64>::max() << u"8388608.00 TB"_s;
}

void StatisticsTest::sizeTextHasTwoDecimalsAndAUnit()
{
    QFETCH(qint64, bytes);
    QFETCH(QString, text);

    QCOMPARE(fileSizeText(bytes), text);
}

void StatisticsTest::sizeTextHasAPointInEveryLocale()
{
    const QLocale usual;
    const auto restore = qScopeGuard([&usual] { QLocale::setDefault(usual); });

    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));

    QCOMPARE(fileSizeText(1536), u"1.50 KB"_s);
}

void StatisticsTest::countsTheElementsOfTheArray_data()
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

void StatisticsTest::countsTheElementsOfTheArray()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, count);
    MainWindow window;
    home::writeBytes(bytes);

    QCOMPARE(savedTasks(window), count);
}

void StatisticsTest::countsNothingInAFileThatCannotBeReadAndSaysNothing()
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

void StatisticsTest::sizeIsThatOfTheFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qlonglong>("size");
    QTest::newRow("nothing") << QByteArray() << qlonglong(0);
    QTest::newRow("empty array") << QByteArray("[]") << qlonglong(2);
    QTest::newRow("accents") << QByteArray("[\"\xC3\xB1\"]") << qlonglong(6);
    QTest::newRow("no JSON") << QByteArray(3000, 'x') << qlonglong(3000);
}

void StatisticsTest::sizeIsThatOfTheFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(qlonglong, size);
    MainWindow window;
    home::writeBytes(bytes);

    QCOMPARE(fileSize(window), size);
    QCOMPARE(taskFileSize(), size);
}

void StatisticsTest::anAbsentFileHasNeitherTasksNorSize()
{
    MainWindow window;

    QCOMPARE(savedTasks(window), 0);
    QCOMPARE(fileSize(window), 0);
    QVERIFY(!QFile::exists(home::taskFile()));
}

void StatisticsTest::labelsAreBareAtTheStart_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("count");
    QTest::addColumn<QString>("size");
    QTest::newRow("empty array") << QByteArray("[]") << u"0"_s << u"2.00 B"_s;
    QTest::newRow("two tasks") << QByteArray(R"([{"id":"{a}"},{"id":"{b}"}])") << u"2"_s << u"27.00 B"_s;
    QTest::newRow("no JSON") << QByteArray(1536, 'x') << u"0"_s << u"1.50 KB"_s;
}

void StatisticsTest::labelsAreBareAtTheStart()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, count);
    QFETCH(QString, size);
    home::writeBytes(bytes);

    const MainWindow window;

    QCOMPARE(labelText(window, "SavedTasks"), count);
    QCOMPARE(labelText(window, "StorageFile"), size);
}

void StatisticsTest::labelsAreBareAtTheStartWithoutAFile()
{
    const MainWindow window;

    QCOMPARE(labelText(window, "SavedTasks"), u"0"_s);
    QCOMPARE(labelText(window, "StorageFile"), u"0.00 B"_s);
}

void StatisticsTest::labelsAtTheStartKnowTheRepairedFile()
{
    home::writeBytes("[{}]");
    QTest::ignoreMessage(QtInfoMsg, "rmc.json: se repararon ids faltantes en tareas antiguas.");

    const MainWindow window;

    QCOMPARE(labelText(window, "SavedTasks"), u"1"_s);
    // "[", "    {", the id of 38 characters in its line, "    }", "]"
    QCOMPARE(labelText(window, "StorageFile"), u"71.00 B"_s);
}

void StatisticsTest::labelsArePrefixedAfterAnUpdate()
{
    MainWindow window;
    home::writeBytes(R"(["uno","dos"])" + QByteArray(1523, ' '));

    callSlot(window, "updateTaskList");

    QCOMPARE(labelText(window, "SavedTasks"), u"Tareas guardadas: 2"_s);
    QCOMPARE(labelText(window, "StorageFile"), u"Tamaño de almacenamiento ocupado: 1.50 KB"_s);
}

void StatisticsTest::labelsAreComputedAnewAtEachUpdate()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    MainWindow window;
    callSlot(window, "updateTaskList");
    QVERIFY(QFile::remove(home::taskFile()));

    callSlot(window, "updateTaskList");

    QCOMPARE(labelText(window, "SavedTasks"), u"Tareas guardadas: 0"_s);
    QCOMPARE(labelText(window, "StorageFile"), u"Tamaño de almacenamiento ocupado: 0.00 B"_s);
}

void StatisticsTest::anUpdateReloadsTheListInFileOrder()
{
    MainWindow window;
    QVERIFY(!widget<QLabel>(window, "TaskAdvise")->isHidden());
    home::writeTasks({home::record(u"{b}"_s, u"Zeta"_s), home::record(u"{a}"_s, u"alfa"_s)});

    callSlot(window, "updateTaskList");

    QCOMPARE(shownTitles(window), (QStringList{u"Zeta"_s, u"alfa"_s}));
    QVERIFY(widget<QLabel>(window, "TaskAdvise")->isHidden());
}

void StatisticsTest::anUpdateLoadsTheListBeforeItCounts()
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

void StatisticsTest::anUpdateGivesTheViewItsModelAgain()
{
    MainWindow window;
    auto *list = widget<QListView>(window, "TaskListView");
    const QAbstractItemModel *const model = list->model();
    QStringListModel other;
    list->setModel(&other);

    callSlot(window, "updateTaskList");

    QCOMPARE(list->model(), model);
}

void StatisticsTest::anUpdateKeepsTheSelectionsConnection()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    MainWindow window;
    auto *list = widget<QListView>(window, "TaskListView");

    callSlot(window, "updateTaskList");
    list->setCurrentIndex(list->model()->index(0, 0));

    QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), u"uno"_s);
}

NUBARIA_TEST_MAIN(StatisticsTest)
#include "statisticstest.moc"
