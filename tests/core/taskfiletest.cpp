#include "core/taskfile.h"

#include "support/coretest.h"
#include "support/failingopen.h"
#include "support/home.h"

#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

class TaskFileTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void standsInTheHomeDirectory()
    {
        QCOMPARE(taskFilePath(), QString(qEnvironmentVariable("HOME") + "/rmc.json"_L1));
        QVERIFY(!taskFileExists());

        home::writeBytes("[]");

        QVERIFY(taskFileExists());
    }

    void isSoughtAnewAtEachAccess()
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

    void makesNoFolder()
    {
        QVERIFY(QDir(QDir::homePath()).removeRecursively());

        QCOMPARE(writeTaskFile({home::completeRecord()}), u"No such file or directory"_s);

        QVERIFY(!QFile::exists(QDir::homePath()));
    }

    void writesAnIndentedArray()
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

    void writesUtf8WithoutByteOrderMark()
    {
        QVERIFY(!writeTaskFile({u"Añadir piñón 🌵"_s}));

        QCOMPARE(home::bytes(),
            QByteArray("[\n    \"A\xC3\xB1"
                       "adir pi\xC3\xB1\xC3\xB3n \xF0\x9F\x8C\xB5\"\n]\n"));
    }

    void writesAnEmptyArray()
    {
        QVERIFY(!writeTaskFile({}));

        QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
    }

    void writingReplacesALongerContent()
    {
        home::writeBytes(QByteArray(5000, 'x'));

        QVERIFY(!writeTaskFile({}));

        QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
    }

    void aFileThatCannotBeOpenedForWritingKeepsItsContent()
    {
        home::writeBytes(R"([ {"id": "{a}"} ])");
        const FailingOpen failing(O_WRONLY);

        QCOMPARE(writeTaskFile({home::completeRecord()}), u"Permission denied"_s);

        QCOMPARE(home::bytes(), QByteArray(R"([ {"id": "{a}"} ])"));
    }

    void makesAnEmptyFile()
    {
        QVERIFY(!createTaskFile());

        QVERIFY(QFile::exists(home::taskFile()));
        QCOMPARE(home::bytes(), QByteArray());
    }

    void saysWhyAFileCannotBeMade()
    {
        const FailingOpen failing(O_WRONLY);

        QCOMPARE(createTaskFile(), u"Permission denied"_s);

        QVERIFY(!QFile::exists(home::taskFile()));
    }

    void readsWhatWasWritten()
    {
        const QJsonArray tasks{
            home::completeRecord(), home::record(u"{b}"_s, u"Ñandú «entre comillas»\nen dos líneas"_s)};
        QVERIFY(!writeTaskFile(tasks));

        const TaskFileContents contents = readTaskFile();

        QCOMPARE(contents.tasks, tasks);
        QVERIFY(!contents.error);
    }

    void readsAnArrayAfterAByteOrderMark()
    {
        home::writeBytes("\xEF\xBB\xBF[{\"title\": \"Pagar\"}]");

        QCOMPARE(readTaskFile().tasks, (QJsonArray{QJsonObject{{u"title"_s, u"Pagar"_s}}}));
    }

    void whatIsNoArrayReadsAsNoTasks_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("blanks") << QByteArray(" \n\t");
        QTest::newRow("truncated") << QByteArray(R"([{"id": "{a}"}, {"id": "{b}"}])").chopped(4);
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

    void whatIsNoArrayReadsAsNoTasks()
    {
        QFETCH(QByteArray, bytes);
        home::writeBytes(bytes);

        const TaskFileContents contents = readTaskFile();

        QCOMPARE(contents.tasks, QJsonArray());
        QVERIFY(!contents.error);
        QCOMPARE(home::bytes(), bytes);
    }

    void readingDoesNotMakeAFile()
    {
        QCOMPARE(readTaskFile().error, u"No such file or directory"_s);

        QVERIFY(!QFile::exists(home::taskFile()));
    }

    void openingForReadingAndWritingMakesAMissingFile()
    {
        const TaskFileContents contents = readTaskFile(QIODevice::ReadWrite);

        QVERIFY(!contents.error);
        QCOMPARE(contents.tasks, QJsonArray());
        QVERIFY(QFile::exists(home::taskFile()));
    }

    void openingForReadingAndWritingNeedsBoth()
    {
        home::writeTasks({home::completeRecord()});
        const FailingOpen failing(O_RDWR);

        QCOMPARE(readTaskFile(QIODevice::ReadWrite).error, u"Permission denied"_s);
        QCOMPARE(readTaskFile().tasks, QJsonArray{home::completeRecord()});
    }

    void saysWhyAFileCannotBeRead()
    {
        home::writeTasks({home::completeRecord()});
        const FailingOpen failing(O_RDONLY);

        const TaskFileContents contents = readTaskFile();

        QCOMPARE(contents.error, u"Permission denied"_s);
        QCOMPARE(contents.tasks, QJsonArray());
    }

    void sizeTextHasTwoDecimalsAndAUnit_data()
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

    void sizeTextHasTwoDecimalsAndAUnit()
    {
        QFETCH(qint64, bytes);
        QFETCH(QString, text);

        QCOMPARE(fileSizeText(bytes), text);
    }

    void sizeTextHasAPointInEveryLocale()
    {
        const QLocale usual;
        const auto restore = qScopeGuard([&usual] { QLocale::setDefault(usual); });

        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));

        QCOMPARE(fileSizeText(1536), u"1.50 KB"_s);
    }
};

NUBARIA_CORE_TEST_MAIN(TaskFileTest)
#include "taskfiletest.moc"
