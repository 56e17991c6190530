#include "core/tasklist.h"

#include "support/coretest.h"
#include "support/home.h"

#include <QMap>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonObject task(const QString &id, const QString &title, const QString &urgency = u"Media"_s)
{
    QJsonObject record = home::record(id, title);
    record.insert(u"urgency"_s, urgency);
    return record;
}

QJsonArray tasksTitled(const QStringList &titles)
{
    QJsonArray tasks;
    for (const QString &title : titles) {
        tasks.append(task(u"id of "_s + title, title));
    }
    return tasks;
}

QStringList idsOf(const QStringList &titles)
{
    QStringList ids = titles;
    return ids.replaceInStrings(QRegularExpression(u"^"_s), u"id of "_s);
}

} // namespace

class TaskListTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void fileOrderIsThatOfTheArray()
    {
        const QJsonArray tasks{
            task(u"{2}"_s, u"Zeta"_s), task(u"{1}"_s, u"Alfa"_s), task(u"{3}"_s, u"Zeta"_s)};

        const TaskRows rows = rowsInFileOrder(tasks);

        QCOMPARE(rows.titles, (QStringList{u"Zeta"_s, u"Alfa"_s, u"Zeta"_s}));
        QCOMPARE(rows.ids, (QStringList{u"{2}"_s, u"{1}"_s, u"{3}"_s}));
    }

    void whatIsNoTextGivesEmptyRowsAndIds()
    {
        const QJsonArray tasks{QJsonObject{{u"id"_s, u"{1}"_s}},
            QJsonObject{{u"title"_s, u"Alfa"_s}, {u"id"_s, 2}},
            QJsonObject{{u"title"_s, 3}, {u"id"_s, u"{3}"_s}}, u"Beta"_s};
        const QStringList titles{QString(), u"Alfa"_s, QString(), QString()};
        const QStringList ids{u"{1}"_s, QString(), u"{3}"_s, QString()};

        QVERIFY((rowsInFileOrder(tasks) == TaskRows{titles, ids}));
        QVERIFY((rowsMatching(tasks, QString()) == TaskRows{titles, ids}));
        QCOMPARE(rowsInOrder(tasks, TaskOrder::Title).titles,
            (QStringList{QString(), QString(), QString(), u"Alfa"_s}));
        QCOMPARE(rowsInOrder(tasks, TaskOrder::Title).ids.constLast(), QString());
    }

    void titlesAreOrderedByCodeUnits_data()
    {
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<QStringList>("ordered");
        QTest::newRow("capitals first") << QStringList{u"beta"_s, u"Alfa"_s, u"alfa"_s, u"Zeta"_s}
                                        << QStringList{u"Alfa"_s, u"Zeta"_s, u"alfa"_s, u"beta"_s};
        QTest::newRow("accents after z") << QStringList{u"ábaco"_s, u"zeta"_s, u"Ñandú"_s, u"nube"_s,
            u"Ola"_s} << QStringList{u"Ola"_s, u"nube"_s, u"zeta"_s, u"Ñandú"_s, u"ábaco"_s};
        QTest::newRow("digits as text")
            << QStringList{u"9 de mayo"_s, u"10 de mayo"_s} << QStringList{u"10 de mayo"_s, u"9 de mayo"_s};
        QTest::newRow("blanks count")
            << QStringList{u"b"_s, u"a"_s, u" z"_s} << QStringList{u" z"_s, u"a"_s, u"b"_s};
        QTest::newRow("prefix first") << QStringList{u"tareas"_s, u"tarea"_s, QString()}
                                      << QStringList{QString(), u"tarea"_s, u"tareas"_s};
        // A pair of surrogates counts as its units, which lie below the full-width tilde.
        QTest::newRow("beyond the basic plane")
            << QStringList{u"\uFF5E"_s, u"\U0001F335"_s} << QStringList{u"\U0001F335"_s, u"\uFF5E"_s};
    }

    void titlesAreOrderedByCodeUnits()
    {
        QFETCH(QStringList, titles);
        QFETCH(QStringList, ordered);

        QCOMPARE(rowsInOrder(tasksTitled(titles), TaskOrder::Title).titles, ordered);
    }

    void idsFollowTheirTitles()
    {
        const TaskRows rows = rowsInOrder(tasksTitled({u"beta"_s, u"Alfa"_s, u"Zeta"_s}), TaskOrder::Title);

        QCOMPARE(rows.ids, idsOf({u"Alfa"_s, u"Zeta"_s, u"beta"_s}));
    }

    void tasksOfOneTitleKeepTheirOwnIds()
    {
        const QJsonArray tasks{
            task(u"{1}"_s, u"Pagar"_s), task(u"{2}"_s, u"Comprar"_s), task(u"{3}"_s, u"Pagar"_s)};

        TaskRows rows = rowsInOrder(tasks, TaskOrder::Title);

        QCOMPARE(rows.titles, (QStringList{u"Comprar"_s, u"Pagar"_s, u"Pagar"_s}));
        // Equal titles come in no particular order.
        std::sort(rows.ids.begin() + 1, rows.ids.end());
        QCOMPARE(rows.ids, (QStringList{u"{2}"_s, u"{1}"_s, u"{3}"_s}));
    }

    void manyTasksOfOneTitleAllStay()
    {
        QJsonArray tasks;
        QStringList ids;
        for (int number = 0; number < 1000; ++number) {
            ids.append(u"{%1}"_s.arg(number, 3, 10, QLatin1Char('0')));
            tasks.append(task(ids.constLast(), u"Pagar"_s));
        }

        TaskRows rows = rowsInOrder(tasks, TaskOrder::Title);

        std::sort(rows.ids.begin(), rows.ids.end());
        QCOMPARE(rows.ids, ids);
    }

    void ranksUrgencies_data()
    {
        QTest::addColumn<QString>("urgency");
        QTest::addColumn<int>("rank");
        QTest::newRow("urgent") << u"Urgente"_s << 1;
        QTest::newRow("high") << u"Alta"_s << 2;
        QTest::newRow("medium") << u"Media"_s << 3;
        QTest::newRow("low") << u"Baja"_s << 4;
        QTest::newRow("very low") << u"Muy baja"_s << 5;
        QTest::newRow("none") << QString() << 0;
        QTest::newRow("other letter case") << u"urgente"_s << 0;
        QTest::newRow("blank behind") << u"Alta "_s << 0;
        QTest::newRow("unknown") << u"Altísima"_s << 0;
    }

    void ranksUrgencies()
    {
        QFETCH(QString, urgency);
        QFETCH(int, rank);

        QCOMPARE(urgencyRank(urgency), rank);
    }

    void urgenciesAreOrderedByRank()
    {
        const QJsonArray tasks{task(u"{5}"_s, u"a"_s, u"Muy baja"_s), task(u"{4}"_s, u"b"_s, u"Baja"_s),
            task(u"{3}"_s, u"c"_s, u"Media"_s), task(u"{2}"_s, u"d"_s, u"Alta"_s),
            task(u"{1}"_s, u"e"_s, u"Urgente"_s)};

        const TaskRows rows = rowsInOrder(tasks, TaskOrder::Urgency);

        QCOMPARE(rows.ids, (QStringList{u"{1}"_s, u"{2}"_s, u"{3}"_s, u"{4}"_s, u"{5}"_s}));
        QCOMPARE(rows.titles, (QStringList{u"e"_s, u"d"_s, u"c"_s, u"b"_s, u"a"_s}));
    }

    void unknownUrgenciesComeFirst()
    {
        QJsonObject withoutUrgency = task(u"{0}"_s, u"sin urgencia"_s);
        withoutUrgency.remove(u"urgency"_s);
        const QJsonArray tasks{task(u"{3}"_s, u"tres"_s, u"Baja"_s), task(u"{1}"_s, u"uno"_s, u"Urgente"_s),
            task(u"{2}"_s, u"dos"_s, u"Media"_s), withoutUrgency};

        QCOMPARE(rowsInOrder(tasks, TaskOrder::Urgency).titles,
            (QStringList{u"sin urgencia"_s, u"uno"_s, u"dos"_s, u"tres"_s}));
    }

    void manyTasksOfOneUrgencyAllStay()
    {
        QJsonArray tasks;
        QMap<QString, QString> titleOfId;
        for (int i = 0; i < 100; ++i) {
            const QString id = QString::number(i);
            titleOfId.insert(id, u"tarea "_s + id);
            tasks.append(task(id, titleOfId.value(id), i % 2 == 0 ? u"Baja"_s : u"Alta"_s));
        }

        const TaskRows rows = rowsInOrder(tasks, TaskOrder::Urgency);

        QCOMPARE(rows.ids.size(), 100);
        QMap<QString, QString> shown;
        for (qsizetype row = 0; row < rows.ids.size(); ++row) {
            QCOMPARE(rows.ids.at(row).toInt() % 2, row < 50 ? 1 : 0);
            shown.insert(rows.ids.at(row), rows.titles.at(row));
        }
        QCOMPARE(shown, titleOfId);
    }

    void everyOtherOrderIsFileOrder_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("recent") << 0;
        QTest::newRow("nothing chosen") << -1;
        QTest::newRow("beyond the choices") << 3;
    }

    void everyOtherOrderIsFileOrder()
    {
        QFETCH(int, index);
        const QJsonArray tasks{task(u"{2}"_s, u"Zeta"_s, u"Baja"_s), task(u"{1}"_s, u"Alfa"_s, u"Urgente"_s)};

        const TaskRows rows = rowsInOrder(tasks, static_cast<TaskOrder>(index));

        QCOMPARE(rows.titles, (QStringList{u"Zeta"_s, u"Alfa"_s}));
        QCOMPARE(rows.ids, (QStringList{u"{2}"_s, u"{1}"_s}));
    }

    void findsTitlesThatContainTheText_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("searched");
        QTest::addColumn<bool>("found");
        QTest::newRow("other letter case") << u"Mi tarea"_s << u"TAREA"_s << true;
        QTest::newRow("accented in other letter case") << u"revisión"_s << u"SIÓN"_s << true;
        QTest::newRow("start") << u"Mi tarea"_s << u"mi"_s << true;
        QTest::newRow("middle") << u"Mi tarea"_s << u"i t"_s << true;
        QTest::newRow("whole") << u"Mi tarea"_s << u"Mi tarea"_s << true;
        QTest::newRow("longer") << u"Mi tarea"_s << u"Mi tareas"_s << false;
        QTest::newRow("without its accent") << u"revisión"_s << u"revision"_s << false;
        QTest::newRow("no pattern") << u"Mi tarea"_s << u"t.rea"_s << false;
        QTest::newRow("no wildcard") << u"Mi tarea"_s << u"*"_s << false;
        QTest::newRow("literal point") << u"Versión 2.0"_s << u"2.0"_s << true;
        QTest::newRow("blank not trimmed") << u"tarea"_s << u"tarea "_s << false;
        QTest::newRow("no title") << QString() << u"a"_s << false;
    }

    void findsTitlesThatContainTheText()
    {
        QFETCH(QString, title);
        QFETCH(QString, searched);
        QFETCH(bool, found);

        QCOMPARE(rowsMatching({task(u"{1}"_s, title)}, searched).titles.size(), found ? 1 : 0);
    }

    void searchesTitlesOnly()
    {
        const QJsonArray tasks{
            QJsonObject{{u"id"_s, u"{clave}"_s}, {u"title"_s, u"Pagar"_s}, {u"description"_s, u"clave"_s},
                {u"category"_s, u"clave"_s}, {u"dateLimit"_s, u"clave"_s}, {u"urgency"_s, u"clave"_s}}};

        QCOMPARE(rowsMatching(tasks, u"clave"_s).titles, QStringList());
        QCOMPARE(rowsMatching(tasks, u"clave"_s).ids, QStringList());
        QCOMPARE(rowsMatching(tasks, u"pagar"_s).titles, QStringList{u"Pagar"_s});
    }

    void matchesKeepFileOrderAndTheirIds()
    {
        const QStringList titles{u"Zeta b"_s, u"Comprar"_s, u"alfa B"_s, u"nada"_s, u"b"_s};

        const TaskRows rows = rowsMatching(tasksTitled(titles), u"b"_s);

        QCOMPARE(rows.titles, (QStringList{u"Zeta b"_s, u"alfa B"_s, u"b"_s}));
        QCOMPARE(rows.ids, idsOf({u"Zeta b"_s, u"alfa B"_s, u"b"_s}));
    }

    void anEmptyTextMatchesEveryTask()
    {
        const QJsonArray tasks = tasksTitled({u"Zeta"_s, QString(), u"Alfa"_s});

        QVERIFY(rowsMatching(tasks, QString()) == rowsInFileOrder(tasks));
        QCOMPARE(rowsMatching(tasks, QString()).titles.size(), 3);
    }
};

NUBARIA_CORE_TEST_MAIN(TaskListTest)
#include "tasklisttest.moc"
