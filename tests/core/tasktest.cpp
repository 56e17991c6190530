#include "core/task.h"

#include "support/coretest.h"
#include "support/home.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

Task completeTask()
{
    return {.id = u"{0b1c}"_s,
        .title = u"Pagar la luz"_s,
        .description = u"Recibo en el cajón"_s,
        .category = u"Personal"_s,
        .dateLimit = u"05-03-2026"_s,
        .urgency = u"Muy baja"_s};
}

} // namespace

class TaskTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void aRecordHoldsSixTexts()
    {
        QCOMPARE(taskToJson(completeTask()), home::completeRecord());
        QCOMPARE(taskToJson(Task()).size(), 6);
    }

    void aTaskIsReadFromTheSixTexts()
    {
        QJsonObject record = home::completeRecord();
        record[u"notes"_s] = 3;

        QVERIFY(taskFromJson(record) == completeTask());
    }

    void whatIsNoTextReadsAsEmpty_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("absent") << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("null") << QJsonValue();
        QTest::newRow("number") << QJsonValue(7);
        QTest::newRow("boolean") << QJsonValue(true);
        QTest::newRow("array") << QJsonValue(QJsonArray{u"a"_s});
        QTest::newRow("object") << QJsonValue(QJsonObject{{u"a"_s, u"b"_s}});
    }

    void whatIsNoTextReadsAsEmpty()
    {
        QFETCH(QJsonValue, value);
        QJsonObject record;
        const QStringList keys = home::completeRecord().keys();
        for (const QString &key : keys) {
            record.insert(key, value);
        }

        QVERIFY(taskFromJson(record) == Task());
        QCOMPARE(taskId(record), QString());
        QCOMPARE(taskTitle(record), QString());
        QCOMPARE(taskUrgency(record), QString());
        QCOMPARE(taskDateLimit(record), QString());
    }

    void anElementThatIsNoObjectReadsAsAnEmptyTask_data()
    {
        QTest::addColumn<QJsonValue>("element");
        QTest::newRow("null") << QJsonValue();
        QTest::newRow("text") << QJsonValue(u"Pagar la luz"_s);
        QTest::newRow("number") << QJsonValue(7);
        QTest::newRow("array of a record") << QJsonValue(QJsonArray{home::completeRecord()});
    }

    void anElementThatIsNoObjectReadsAsAnEmptyTask()
    {
        QFETCH(QJsonValue, element);

        QVERIFY(taskFromJson(element) == Task());
        QCOMPARE(taskTitle(element), QString());
    }

    void readsSingleTextsOfARecord()
    {
        QCOMPARE(taskId(home::completeRecord()), u"{0b1c}"_s);
        QCOMPARE(taskTitle(home::completeRecord()), u"Pagar la luz"_s);
        QCOMPARE(taskUrgency(home::completeRecord()), u"Muy baja"_s);
        QCOMPARE(taskDateLimit(home::completeRecord()), u"05-03-2026"_s);
    }

    void newIdsAreBracedUuidsInLowerCase()
    {
        static const QRegularExpression randomUuid(
            u"^\\{[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}\\}$"_s);

        const QString id = newTaskId();

        QVERIFY2(randomUuid.match(id).hasMatch(), qPrintable(id));
    }

    void newIdsDiffer() { QVERIFY(newTaskId() != newTaskId()); }

    void findsTheFirstRecordWithAnId()
    {
        const QJsonArray tasks{u"no object"_s, home::record(u"{a}"_s, u"uno"_s),
            home::record(u"{b}"_s, u"dos"_s), home::record(u"{b}"_s, u"tres"_s)};

        QCOMPARE(indexOfTask(tasks, u"{b}"_s), 2);
    }

    void findsNoRecordWithoutTheId()
    {
        const QJsonArray tasks{home::record(u"{a}"_s, u"{B}"_s)};

        QCOMPARE(indexOfTask(tasks, u"{B}"_s), -1);
        QCOMPARE(indexOfTask(tasks, u"{A}"_s), -1);
        QCOMPARE(indexOfTask({}, QString()), -1);
    }

    void readsDueDatesOfTwoTwoAndFourDigits_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDate>("date");
        QTest::newRow("fifth of March") << u"05-03-2026"_s << QDate(2026, 3, 5);
        QTest::newRow("leap day") << u"29-02-2024"_s << QDate(2024, 2, 29);
        QTest::newRow("no leap day") << u"29-02-2025"_s << QDate();
        QTest::newRow("no such day") << u"31-04-2026"_s << QDate();
        QTest::newRow("single digits") << u"5-3-2026"_s << QDate();
        QTest::newRow("two-digit year") << u"05-03-26"_s << QDate();
        QTest::newRow("five-digit year") << u"05-03-20261"_s << QDate();
        QTest::newRow("slashes") << u"05/03/2026"_s << QDate();
        QTest::newRow("year first") << u"2026-03-05"_s << QDate();
        QTest::newRow("blank before") << u" 05-03-2026"_s << QDate();
        QTest::newRow("empty") << QString() << QDate();
    }

    void readsDueDatesOfTwoTwoAndFourDigits()
    {
        QFETCH(QString, text);
        QFETCH(QDate, date);

        QCOMPARE(dueDateFromText(text), date);
    }

    void writesDueDatesWithTwoTwoAndFourDigits()
    {
        QCOMPARE(dueDateToText(QDate(2026, 3, 5)), u"05-03-2026"_s);
        QCOMPARE(dueDateToText(QDate(1999, 12, 31)), u"31-12-1999"_s);
    }

    void offersNoArrayWhereNothingIsMissing()
    {
        QVERIFY(!withMissingIdsRepaired({}));
        QVERIFY(!withMissingIdsRepaired({home::record(u"{a}"_s, u"uno"_s)}));
        QVERIFY(withMissingIdsRepaired({home::record(u"{a}"_s, u"uno"_s), QJsonObject()}));
    }
};

NUBARIA_CORE_TEST_MAIN(TaskTest)
#include "tasktest.moc"
