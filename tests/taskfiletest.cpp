#include "mainwindow/taskfile.h"

#include "support/failingopen.h"
#include "support/home.h"
#include "support/testmain.h"

#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

class TaskFileTest final : public QObject
{
    Q_OBJECT
private slots:
    void init() { home::reset(); }

    void standsInTheHomeDirectory();
    void isSoughtAnewAtEachAccess();
    void makesNoFolder();

    void writesAnIndentedArray();
    void writesUtf8WithoutByteOrderMark();
    void writesAnEmptyArray();
    void writingReplacesALongerContent();
    void aFileThatCannotBeOpenedForWritingKeepsItsContent();
    void makesAnEmptyFile();
    void saysWhyAFileCannotBeMade();

    void readsWhatWasWritten();
    void readsAnArrayAfterAByteOrderMark();
    void whatIsNoArrayReadsAsNoTasks_data();
    void whatIsNoArrayReadsAsNoTasks();
    void readingDoesNotMakeAFile();
    void openingForReadingAndWritingMakesAMissingFile();
    void openingForReadingAndWritingNeedsBoth();
    void saysWhyAFileCannotBeRead();
};

void TaskFileTest::standsInTheHomeDirectory()
{
    QCOMPARE(taskFilePath(), QString(qEnvironmentVariable("HOME") + "/rmc.json"_L1));
    QVERIFY(!taskFileExists());

    home::writeBytes("[]");

    QVERIFY(taskFileExists());
}

void TaskFileTest::isSoughtAnewAtEachAccess()
{
    home::writeTasks({home::completeRecord()});
    QCOMPARE(readTaskFile().tasks.size(), 1);
    const QTemporaryDir otherHome;
    QVERIFY(otherHome.isValid());
    const QByteArray oldHome = qgetenv("HOME");
    const auto restore = qScopeGuard([&oldHome] { qputenv("HOME", oldHome); });

    qputenv("HOME", QFile::encodeName(otherHome.path()));

    QCOMPARE(taskFilePath(), QString(otherHome.path() + "/rmc.json"_L1));
    QVERIFY(!taskFileExists());
    QVERIFY(!writeTaskFile({}));
    QVERIFY(QFile::exists(otherHome.filePath(u"rmc.json"_s)));
    QCOMPARE(readTaskFile().tasks.size(), 0);
}

void TaskFileTest::makesNoFolder()
{
    QVERIFY(QDir(QDir::homePath()).removeRecursively());

    QCOMPARE(writeTaskFile({home::completeRecord()}), u"No such file or directory"_s);

    QVERIFY(!QFile::exists(QDir::homePath()));
}

void TaskFileTest::writesAnIndentedArray()
{
    QVERIFY(!writeTaskFile({home::completeRecord()}));

    QCOMPARE(home::bytes(),
        QByteArray("[\n"
                   "    {\n"
                   "        \"category\": \"Personal\",\n"
                   "        \"dateLimit\": \"05-03-2026\",\n"
                   "        \"description\": \"Recibo en el cajón\",\n"
                   "        \"id\": \"{0b1c}\",\n"
                   "        \"title\": \"Pagar la luz\",\n"
                   "        \"urgency\": \"Muy baja\"\n"
                   "    }\n"
                   "]\n"));
}

void TaskFileTest::writesUtf8WithoutByteOrderMark()
{
    QVERIFY(!writeTaskFile({u"Añadir piñón 🌵"_s}));

    QCOMPARE(home::bytes(),
        QByteArray("[\n    \"A\xC3\xB1"
                   "adir pi\xC3\xB1\xC3\xB3n \xF0\x9F\x8C\xB5\"\n]\n"));
}

void TaskFileTest::writesAnEmptyArray()
{
    QVERIFY(!writeTaskFile({}));

    QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
}

void TaskFileTest::writingReplacesALongerContent()
{
    home::writeBytes(QByteArray(5000, 'x'));

    QVERIFY(!writeTaskFile({}));

    QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
}

void TaskFileTest::aFileThatCannotBeOpenedForWritingKeepsItsContent()
{
    home::writeBytes(R"([ {"id": "{a}"} ])");
    const FailingOpen failing(O_WRONLY);

    QCOMPARE(writeTaskFile({home::completeRecord()}), u"Permission denied"_s);

    QCOMPARE(home::bytes(), QByteArray(R"([ {"id": "{a}"} ])"));
}

void TaskFileTest::makesAnEmptyFile()
{
    QVERIFY(!createTaskFile());

    QVERIFY(QFile::exists(home::taskFile()));
    QCOMPARE(home::bytes(), QByteArray());
}

void TaskFileTest::saysWhyAFileCannotBeMade()
{
    const FailingOpen failing(O_WRONLY);

    QCOMPARE(createTaskFile(), u"Permission denied"_s);

    QVERIFY(!QFile::exists(home::taskFile()));
}

void TaskFileTest::readsWhatWasWritten()
{
    const QJsonArray tasks{
        home::completeRecord(), home::record(u"{b}"_s, u"Ñandú «entre comillas»\nen dos líneas"_s)};
    QVERIFY(!writeTaskFile(tasks));

    const TaskFileContents contents = readTaskFile();

    QCOMPARE(contents.tasks, tasks);
    QVERIFY(!contents.error);
}

void TaskFileTest::readsAnArrayAfterAByteOrderMark()
{
    home::writeBytes("\xEF\xBB\xBF[{\"title\": \"Pagar\"}]");

    QCOMPARE(readTaskFile().tasks, (QJsonArray{QJsonObject{{u"title"_s, u"Pagar"_s}}}));
}

void TaskFileTest::whatIsNoArrayReadsAsNoTasks_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("blanks") << QByteArray(" \n\t");
    QTest::newRow("truncated") << QByteArray(R"([{"id": "{a}"}, {"id": "{b)");
    QTest::newRow("no JSON") << QByteArray("id;title\n1;Pagar");
    QTest::newRow("trailing comma") << QByteArray(R"([{"id": "{a}"},])");
    QTest::newRow("trailing text") << QByteArray(R"([{"id": "{a}"}] fin)");
    QTest::newRow("object") << QByteArray(R"({"0": {"id": "{a}"}})");
    QTest::newRow("text") << QByteArray(R"("[]")");
    QTest::newRow("number") << QByteArray("3");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("Latin-1") << QByteArray("[{\"title\": \"A\xF1"
                                           "adir\"}]");
    QTest::newRow("cut UTF-8 sequence") << QByteArray("[{\"title\": \"A\xC3\"}]");
}

void TaskFileTest::whatIsNoArrayReadsAsNoTasks()
{
    QFETCH(QByteArray, bytes);
    home::writeBytes(bytes);

    const TaskFileContents contents = readTaskFile();

    QCOMPARE(contents.tasks, QJsonArray());
    QVERIFY(!contents.error);
    QCOMPARE(home::bytes(), bytes);
}

void TaskFileTest::readingDoesNotMakeAFile()
{
    QCOMPARE(readTaskFile().error, u"No such file or directory"_s);

    QVERIFY(!QFile::exists(home::taskFile()));
}

void TaskFileTest::openingForReadingAndWritingMakesAMissingFile()
{
    const TaskFileContents contents = readTaskFile(QIODevice::ReadWrite);

    QVERIFY(!contents.error);
    QCOMPARE(contents.tasks, QJsonArray());
    QVERIFY(QFile::exists(home::taskFile()));
}

void TaskFileTest::openingForReadingAndWritingNeedsBoth()
{
    home::writeTasks({home::completeRecord()});
    const FailingOpen failing(O_RDWR);

    QCOMPARE(readTaskFile(QIODevice::ReadWrite).error, u"Permission denied"_s);
    QCOMPARE(readTaskFile().tasks, QJsonArray{home::completeRecord()});
}

void TaskFileTest::saysWhyAFileCannotBeRead()
{
    home::writeTasks({home::completeRecord()});
    const FailingOpen failing(O_RDONLY);

    const TaskFileContents contents = readTaskFile();

    QCOMPARE(contents.error, u"Permission denied"_s);
    QCOMPARE(contents.tasks, QJsonArray());
}

NUBARIA_TEST_MAIN(TaskFileTest)
#include "taskfiletest.moc"
