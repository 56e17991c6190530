#include "core/greeting.h"

#include "support/coretest.h"

#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace {

QDateTime at(int hour, int minute)
{
    return {QDate(2026, 3, 5), QTime(hour, minute)};
}

QStringList lines(int mode, const QDateTime &now, const QString &firstName)
{
    const std::optional<GreetingLines> said = greetingLines(static_cast<GreetingMode>(mode), now, firstName);
    return said ? QStringList{said->first, said->second} : QStringList();
}

} // namespace

class GreetingTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void namesEveryWeekday_data()
    {
        QTest::addColumn<int>("day");
        QTest::addColumn<QString>("weekday");
        QTest::newRow("Monday") << 2 << u"Lunes"_s;
        QTest::newRow("Tuesday") << 3 << u"Martes"_s;
        QTest::newRow("Wednesday") << 4 << u"Miércoles"_s;
        QTest::newRow("Thursday") << 5 << u"Jueves"_s;
        QTest::newRow("Friday") << 6 << u"Viernes"_s;
        QTest::newRow("Saturday") << 7 << u"Sábado"_s;
        QTest::newRow("Sunday") << 8 << u"Domingo"_s;
    }

    void namesEveryWeekday()
    {
        QFETCH(int, day);
        QFETCH(QString, weekday);

        QCOMPARE(lines(0, QDate(2026, 3, day).startOfDay(), u"Ana"_s).constFirst(), weekday);
    }

    void namesEveryMonth_data()
    {
        QTest::addColumn<int>("month");
        QTest::addColumn<QString>("text");
        const QStringList texts = {u"17 de Enero"_s, u"17 de Febrero"_s, u"17 de Marzo"_s, u"17 de Abril"_s,
            u"17 de Mayo"_s, u"17 de Junio"_s, u"17 de Julio"_s, u"17 de Agosto"_s, u"17 de Septiembre"_s,
            u"17 de Octubre"_s, u"17 de Noviembre"_s, u"17 de Diciembre"_s};
        for (int month = 1; month <= texts.size(); ++month) {
            QTest::addRow("month %d", month) << month << texts.at(month - 1);
        }
    }

    void namesEveryMonth()
    {
        QFETCH(int, month);
        QFETCH(QString, text);

        QCOMPARE(lines(0, QDate(2026, month, 17).startOfDay(), u"Ana"_s).constLast(), text);
    }

    void writesTheDayWithoutLeadingZero_data()
    {
        QTest::addColumn<QDate>("day");
        QTest::addColumn<QStringList>("said");
        QTest::newRow("5 March") << QDate(2026, 3, 5) << QStringList{u"Jueves"_s, u"5 de Marzo"_s};
        QTest::newRow("1 January") << QDate(2027, 1, 1) << QStringList{u"Viernes"_s, u"1 de Enero"_s};
        QTest::newRow("29 February") << QDate(2028, 2, 29) << QStringList{u"Martes"_s, u"29 de Febrero"_s};
        QTest::newRow("31 December") << QDate(2026, 12, 31) << QStringList{u"Jueves"_s, u"31 de Diciembre"_s};
    }

    void writesTheDayWithoutLeadingZero()
    {
        QFETCH(QDate, day);
        QFETCH(QStringList, said);

        QCOMPARE(lines(0, QDateTime(day, QTime(0, 0)), u"Ana"_s), said);
        QCOMPARE(lines(0, QDateTime(day, QTime(23, 59, 59)), QString()), said);
    }

    void greetsByTheHour_data()
    {
        QTest::addColumn<QTime>("time");
        QTest::addColumn<QString>("greeting");
        QTest::newRow("00:00") << QTime(0, 0) << u"¡Buenos días!"_s;
        QTest::newRow("00:30") << QTime(0, 30) << u"¡Buenos días!"_s;
        QTest::newRow("11:59") << QTime(11, 59, 59, 999) << u"¡Buenos días!"_s;
        QTest::newRow("12:00") << QTime(12, 0) << u"¡Buenas tardes!"_s;
        QTest::newRow("17:59") << QTime(17, 59, 59, 999) << u"¡Buenas tardes!"_s;
        QTest::newRow("18:00") << QTime(18, 0) << u"¡Buenas noches!"_s;
        QTest::newRow("23:59") << QTime(23, 59, 59, 999) << u"¡Buenas noches!"_s;
    }

    void greetsByTheHour()
    {
        QFETCH(QTime, time);
        QFETCH(QString, greeting);

        QCOMPARE(lines(1, QDateTime(QDate(2026, 3, 5), time), u"Ana"_s), QStringList({greeting, u"Ana"_s}));
    }

    void showsTheNameUpToItsFirstBlank_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("shown");
        QTest::newRow("no name") << QString() << u"Invitado(a)"_s;
        QTest::newRow("one word") << u"Ana"_s << u"Ana"_s;
        QTest::newRow("two words") << u"Ana María"_s << u"Ana"_s;
        QTest::newRow("three words") << u"José Ángel Ñu"_s << u"José"_s;
        QTest::newRow("two blanks between") << u"Ana  María"_s << u"Ana"_s;
        QTest::newRow("blank behind") << u"Ana "_s << u"Ana"_s;
        QTest::newRow("blank in front") << u" Ana"_s << QString();
        QTest::newRow("nothing but a blank") << u" "_s << QString();
        QTest::newRow("a tab is no blank") << u"Ana\tMaría"_s << u"Ana\tMaría"_s;
        QTest::newRow("nor is a no-break space") << u"Ana\u00a0María"_s << u"Ana\u00a0María"_s;
        QTest::newRow("as typed") << u"aNA mARÍA"_s << u"aNA"_s;
    }

    void showsTheNameUpToItsFirstBlank()
    {
        QFETCH(QString, name);
        QFETCH(QString, shown);

        QCOMPARE(lines(1, at(18, 0), name), QStringList({u"¡Buenas noches!"_s, shown}));
    }

    void salutesWithTheWholeNameAndTheDate_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("salutation");
        QTest::newRow("no name") << QString() << u"¡Hola, Invitado(a)!"_s;
        QTest::newRow("one word") << u"Ana"_s << u"¡Hola, Ana!"_s;
        QTest::newRow("two words") << u"Ana María"_s << u"¡Hola, Ana María!"_s;
        QTest::newRow("blanks around") << u" Ana "_s << u"¡Hola,  Ana !"_s;
        QTest::newRow("nothing but a blank") << u" "_s << u"¡Hola,  !"_s;
        QTest::newRow("a placeholder's sign") << u"%1"_s << u"¡Hola, %1!"_s;
    }

    void salutesWithTheWholeNameAndTheDate()
    {
        QFETCH(QString, name);
        QFETCH(QString, salutation);

        for (const QDateTime &moment : {at(0, 30), at(11, 59), at(12, 0), at(17, 59), at(18, 0)}) {
            QCOMPARE(lines(2, moment, name), QStringList({salutation, u"05/03/2026"_s}));
        }
    }

    void saysNothingInAnyOtherMode_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("nothing chosen") << -1;
        QTest::newRow("one too many") << 3;
        QTest::newRow("far out") << 2147483647;
    }

    void saysNothingInAnyOtherMode()
    {
        QFETCH(int, mode);

        QVERIFY(!greetingLines(static_cast<GreetingMode>(mode), at(12, 0), u"Ana"_s));
    }

    void speaksSpanishWhateverTheDefaultLocale()
    {
        for (const QLocale &locale : {QLocale(QLocale::English, QLocale::UnitedStates),
                 QLocale(QLocale::Arabic, QLocale::Egypt), QLocale::c()}) {
            QLocale::setDefault(locale);

            QCOMPARE(lines(0, at(12, 0), QString()), QStringList({u"Jueves"_s, u"5 de Marzo"_s}));
            QCOMPARE(lines(2, at(12, 0), QString()).constLast(), u"05/03/2026"_s);
        }
    }
};

NUBARIA_CORE_TEST_MAIN(GreetingTest)
#include "greetingtest.moc"
