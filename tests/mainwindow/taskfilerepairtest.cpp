#include "core/task.h"
#include "support/failingopen.h"
#include "support/home.h"
#include "support/loglines.h"
#include "support/messageboxes.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QFile>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSet>

using namespace Qt::Literals::StringLiterals;

namespace {

const char *const repairedLine = "rmc.json: se repararon ids faltantes en tareas antiguas.";

bool isBracedUuid(const QString &id)
{
    static const QRegularExpression uuid(
        u"^\\{[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\\}$"_s);
    return uuid.match(id).hasMatch();
}

QJsonObject withoutId(const QJsonValue &record)
{
    QJsonObject rest = record.toObject();
    rest.remove(u"id"_s);
    return rest;
}

} // namespace

class TaskFileRepairTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void givesARecordWithoutIdABracedUuid_data()
    {
        QTest::addColumn<QJsonValue>("id");
        QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("empty") << QJsonValue(QString());
        QTest::newRow("numeric") << QJsonValue(12);
        QTest::newRow("null") << QJsonValue();
        QTest::newRow("boolean") << QJsonValue(true);
        QTest::newRow("array") << QJsonValue(QJsonArray{u"{a}"_s});
        QTest::newRow("object") << QJsonValue(QJsonObject{{u"id"_s, u"{a}"_s}});
    }

    void givesARecordWithoutIdABracedUuid()
    {
        QFETCH(QJsonValue, id);
        QJsonObject record = home::record(QString(), u"Añadir piñón"_s);
        record.insert(u"id"_s, id);
        record.insert(u"urgency"_s, 4);
        record.insert(u"notes"_s, QJsonObject{{u"color"_s, u"rojo"_s}});
        home::writeTasks({record});
        QTest::ignoreMessage(QtInfoMsg, repairedLine);

        const MainWindow window;

        const QJsonArray tasks = home::tasks();
        QCOMPARE(tasks.size(), 1);
        QVERIFY2(isBracedUuid(tasks[0]["id"_L1].toString()), home::bytes().constData());
        QCOMPARE(withoutId(tasks[0]), withoutId(record));
    }

    void givesEachRecordAnIdOfItsOwn()
    {
        home::writeTasks({home::record(QString(), u"uno"_s), home::record(QString(), u"dos"_s),
            home::record(QString(), u"tres"_s)});
        QTest::ignoreMessage(QtInfoMsg, repairedLine);

        const MainWindow window;

        QSet<QString> ids;
        const QJsonArray tasks = home::tasks();
        for (const auto &record : tasks) {
            ids.insert(record["id"_L1].toString());
        }
        QCOMPARE(ids.size(), 3);
        QCOMPARE(shownTitles(window), (QStringList{u"uno"_s, u"dos"_s, u"tres"_s}));
    }

    void keepsPresentIds()
    {
        const QJsonObject first = home::record(u"{a}"_s, u"uno"_s);
        const QJsonObject third = home::record(u" "_s, u"tres"_s);
        home::writeTasks({first, home::record(QString(), u"dos"_s), third});
        QTest::ignoreMessage(QtInfoMsg, repairedLine);

        const MainWindow window;

        const QJsonArray tasks = home::tasks();
        QCOMPARE(tasks.size(), 3);
        QCOMPARE(tasks[0].toObject(), first);
        QVERIFY(isBracedUuid(tasks[1]["id"_L1].toString()));
        QCOMPARE(tasks[2].toObject(), third);
    }

    void anElementThatIsNoObjectBecomesARecordOfAnId()
    {
        home::writeBytes(R"(["Pagar", 3, null, ["a"]])");
        QTest::ignoreMessage(QtInfoMsg, repairedLine);

        const MainWindow window;

        const QJsonArray tasks = home::tasks();
        QCOMPARE(tasks.size(), 4);
        for (const auto &record : tasks) {
            QCOMPARE(record.toObject().keys(), QStringList{u"id"_s});
            QVERIFY(isBracedUuid(record["id"_L1].toString()));
        }
        QCOMPARE(shownTitles(window), (QStringList{QString(), QString(), QString(), QString()}));
    }

    void writesTheRepairedFileIndented()
    {
        home::writeBytes(R"([{"title":"Añadir","id":""}])");
        QTest::ignoreMessage(QtInfoMsg, repairedLine);

        const MainWindow window;

        const QByteArray id = home::tasks().first()["id"_L1].toString().toLatin1();
        QCOMPARE(home::bytes(),
            QByteArray(
                "[\n    {\n        \"id\": \"" + id + "\",\n        \"title\": \"Añadir\"\n    }\n]\n"));
    }

    void logsOneLineWhateverTheNumberOfIds()
    {
        home::writeBytes(R"([{}, {"id": ""}, {"id": 3}])");
        const LogLines log;

        const MainWindow window;

        const QList<LogLine> lines = LogLines::ofType(QtInfoMsg);
        QCOMPARE(lines.size(), 1);
        QCOMPARE(lines[0].text, u"rmc.json: se repararon ids faltantes en tareas antiguas."_s);
        QCOMPARE(lines[0].category, u"default"_s);
    }

    void aFileWithoutMissingIdsIsNotRewritten_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("ids in every record") << QByteArray(R"( [{"title":"uno","id":"{a}"},{"id":"7"}] )");
        QTest::newRow("blank as an id") << QByteArray(R"([{"id":" "}])");
        QTest::newRow("empty array") << QByteArray("[]");
        QTest::newRow("no JSON") << QByteArray(R"([{"title":"uno"})");
        QTest::newRow("object") << QByteArray(R"({"title":"uno"})");
        QTest::newRow("nothing") << QByteArray();
    }

    void aFileWithoutMissingIdsIsNotRewritten()
    {
        QFETCH(QByteArray, bytes);
        home::writeBytes(bytes);
        const LogLines log;
        const FailingOpen failing(O_WRONLY);

        const MainWindow window;

        QCOMPARE(home::bytes(), bytes);
        QCOMPARE(LogLines::ofType(QtInfoMsg).size(), 0);
        QCOMPARE(LogLines::ofType(QtCriticalMsg).size(), 0);
    }

    void anAbsentFileStaysAbsent()
    {
        const LogLines log;

        const MainWindow window;

        QVERIFY(!QFile::exists(home::taskFile()));
        QCOMPARE(LogLines::ofType(QtCriticalMsg).size(), 0);
    }

    void aFileThatCannotBeReadIsLeftAlone()
    {
        home::writeBytes(R"([{"title":"uno"}])");
        const FailingOpen failing(O_RDONLY);
        const MessageBoxes boxes;
        const LogLines log;

        const MainWindow window;

        QFile file(home::taskFile());
        QVERIFY(file.open(QIODevice::ReadWrite)); // the mode that does not fail here
        QCOMPARE(file.readAll(), QByteArray(R"([{"title":"uno"}])"));
        const QList<LogLine> lines = LogLines::ofType(QtCriticalMsg);
        QCOMPARE(lines.size(), 2); // the other is that of the list
        QCOMPARE(lines[0].text, u"No se pudo abrir rmc.json para reparar ids: \"Permission denied\""_s);
        QCOMPARE(lines[0].category, u"default"_s);
        // The only box is that of the list, which cannot be loaded either.
        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(boxes.shown().constFirst().text, u"Error al cargar el dato: Permission denied"_s);
    }

    void aFileThatCannotBeWrittenKeepsItsContent()
    {
        home::writeBytes(R"([{"title":"uno"},{"title":"dos"}])");
        const FailingOpen failing(O_WRONLY);
        const MessageBoxes boxes;
        const LogLines log;

        const MainWindow window;

        QCOMPARE(home::bytes(), QByteArray(R"([{"title":"uno"},{"title":"dos"}])"));
        const QList<LogLine> lines = LogLines::ofType(QtCriticalMsg);
        QCOMPARE(lines.size(), 1);
        QCOMPARE(lines[0].text,
            u"No se pudo abrir rmc.json para guardar los ids reparados: \"Permission denied\""_s);
        QCOMPARE(lines[0].category, u"default"_s);
        QCOMPARE(LogLines::ofType(QtInfoMsg).size(), 0);
        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(shownTitles(window), (QStringList{u"uno"_s, u"dos"_s}));
    }

    void aFailedRepairIsMadeUpAtTheNextStart()
    {
        home::writeBytes(R"([{"title":"uno"}])");
        {
            const FailingOpen failing(O_WRONLY);
            QTest::ignoreMessage(QtCriticalMsg,
                "No se pudo abrir rmc.json para guardar los ids reparados: \"Permission denied\"");
            const MainWindow window;
        }
        QTest::ignoreMessage(QtInfoMsg, repairedLine);

        const MainWindow window;

        QVERIFY(isBracedUuid(home::tasks().first()["id"_L1].toString()));
    }

    void repairsBeforeTheListIsLoaded()
    {
        home::writeBytes(R"([{"title":"uno"},{"title":"dos"}])");
        QTest::ignoreMessage(QtInfoMsg, repairedLine);
        MainWindow window;
        const MessageBoxes boxes;

        callSlot(window, "showTaskDetails", widget<QListView>(window, "TaskListView")->model()->index(1, 0));

        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), u"dos"_s);
    }
};

NUBARIA_TEST_MAIN(TaskFileRepairTest)
#include "taskfilerepairtest.moc"
