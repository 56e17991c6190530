#include "support/home.h"
#include "support/replaced.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What the clock says to the program.
QDateTime &testTime()
{
    static QDateTime time;
    return time;
}

QDateTime at(int hour, int minute)
{
    return {QDate(2026, 3, 5), QTime(hour, minute)};
}

QStringList header(const MainWindow &window)
{
    return {
        widget<QLabel>(window, "LabelDayTxt")->text(), widget<QLabel>(window, "LabelDayMonthTxt")->text()};
}

void chooseMode(const MainWindow &window, int mode)
{
    widget<QComboBox>(window, "DisplayMessage")->setCurrentIndex(mode);
}

} // namespace

// The program's own definition wins over that of Qt's library when the test is linked.
QDateTime QDateTime::currentDateTime()
{
    return testTime();
}
NUBARIA_REPLACES("_ZN9QDateTime15currentDateTimeEv");

class GreetingTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        testTime() = at(11, 59);
    }

    void offersTheModesInTheirOrder()
    {
        const MainWindow window;
        const auto *modes = widget<QComboBox>(window, "DisplayMessage");

        QCOMPARE(modes->count(), 3);
        QCOMPARE(modes->itemText(0), u"Simplificado (Día y Fecha)"_s);
        QCOMPARE(modes->itemText(1), u"Formal (Bienvenida por Horario y Nombre)"_s);
        QCOMPARE(modes->itemText(2), u"Mensaje (Saludo, Nombre y Fecha)"_s);
    }

    void showsTheDateOnAFirstStart()
    {
        const MainWindow window;

        QCOMPARE(widget<QComboBox>(window, "DisplayMessage")->currentIndex(), 0);
        QCOMPARE(header(window), QStringList({u"Jueves"_s, u"5 de Marzo"_s}));
        QCOMPARE(home::preference(u"displayMessageIndex"_s), QVariant(0));
    }

    void storesTheModeAndGreetsAtOnceWhenOneIsChosen_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QStringList>("said");
        QTest::newRow("day and date") << 0 << QStringList{u"Jueves"_s, u"5 de Marzo"_s};
        QTest::newRow("hour and name") << 1 << QStringList{u"¡Buenos días!"_s, u"Ana"_s};
        QTest::newRow("salutation") << 2 << QStringList{u"¡Hola, Ana María!"_s, u"05/03/2026"_s};
    }

    void storesTheModeAndGreetsAtOnceWhenOneIsChosen()
    {
        QFETCH(int, mode);
        QFETCH(QStringList, said);
        home::setPreference(u"firstName"_s, u"Ana María"_s);
        home::setPreference(u"displayMessageIndex"_s, (mode + 1) % 3);
        const MainWindow window;
        QVERIFY(header(window) != said);

        chooseMode(window, mode);

        QCOMPARE(home::preference(u"displayMessageIndex"_s), QVariant(mode));
        QCOMPARE(header(window), said);
    }

    void storesAnIndexOutOfRangeAndKeepsTheLines_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("nothing chosen") << -1;
        QTest::newRow("one too many") << 3;
        QTest::newRow("far out") << 2147483647;
    }

    void storesAnIndexOutOfRangeAndKeepsTheLines()
    {
        QFETCH(int, mode);
        home::setPreference(u"displayMessageIndex"_s, 1);
        MainWindow window;
        testTime() = at(18, 0);

        callSlot(window, "updateLabels", mode);

        QCOMPARE(home::preference(u"displayMessageIndex"_s), QVariant(mode));
        QCOMPARE(header(window), QStringList({u"¡Buenos días!"_s, u"Invitado(a)"_s}));
    }

    void showsTheSameModeAtTheNextStart_data() { storesTheModeAndGreetsAtOnceWhenOneIsChosen_data(); }

    void showsTheSameModeAtTheNextStart()
    {
        QFETCH(int, mode);
        QFETCH(QStringList, said);
        home::setPreference(u"firstName"_s, u"Ana María"_s);
        {
            const MainWindow window;
            chooseMode(window, (mode + 1) % 3);
            chooseMode(window, mode);
        }

        const MainWindow window;

        QCOMPARE(widget<QComboBox>(window, "DisplayMessage")->currentIndex(), mode);
        QCOMPARE(header(window), said);
        QCOMPARE(home::preference(u"displayMessageIndex"_s), QVariant(mode));
    }

    void selectsTheStoredModeOnDemand()
    {
        MainWindow window;
        home::setPreference(u"displayMessageIndex"_s, 2);

        callSlot(window, "loadDisplayMessageSetting");

        QCOMPARE(widget<QComboBox>(window, "DisplayMessage")->currentIndex(), 2);
        QCOMPARE(header(window), QStringList({u"¡Hola, Invitado(a)!"_s, u"05/03/2026"_s}));
    }

    void keepsTheFormsTextsWhenTheStoredModeIsOutOfRange()
    {
        home::setPreference(u"displayMessageIndex"_s, 9);

        const MainWindow window;

        QCOMPARE(widget<QComboBox>(window, "DisplayMessage")->currentIndex(), -1);
        QCOMPARE(header(window), QStringList({u"currentDay()"_s, u"numberMonth()"_s}));
        QCOMPARE(home::preference(u"displayMessageIndex"_s), QVariant(-1));
    }

    void greetsByTheNewNameOnceTheProfileIsSaved_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QStringList>("said");
        QTest::newRow("day and date") << 0 << QStringList{u"Jueves"_s, u"5 de Marzo"_s};
        QTest::newRow("hour and name") << 1 << QStringList{u"¡Buenas noches!"_s, u"Luz"_s};
        QTest::newRow("salutation") << 2 << QStringList{u"¡Hola, Luz Elena!"_s, u"05/03/2026"_s};
    }

    void greetsByTheNewNameOnceTheProfileIsSaved()
    {
        QFETCH(int, mode);
        QFETCH(QStringList, said);
        home::setPreference(u"firstName"_s, u"Ana María"_s);
        home::setPreference(u"displayMessageIndex"_s, mode);
        const MainWindow window;
        testTime() = at(18, 0);

        widget<QLineEdit>(window, "UserName")->setText(u"Luz Elena"_s);
        QVERIFY(!header(window).join(u' ').contains("Luz"_L1));
        widget<QPushButton>(window, "SaveProfileInfo")->click();

        QCOMPARE(header(window), said);
        QCOMPARE(home::preference(u"displayMessageIndex"_s), QVariant(mode));
    }

    void keepsTheLinesWhileTheHoursPass()
    {
        home::setPreference(u"displayMessageIndex"_s, 1);
        MainWindow window;
        testTime() = at(18, 0);

        window.show();
        widget<QPushButton>(window, "SettingsViewButton")->click();
        widget<QPushButton>(window, "TaskViewButton")->click();
        QCoreApplication::processEvents();
        QCOMPARE(header(window).constFirst(), u"¡Buenos días!"_s);

        callSlot(window, "updateLabels", 1);
        QCOMPARE(header(window).constFirst(), u"¡Buenas noches!"_s);
    }
};

NUBARIA_TEST_MAIN(GreetingTest)
#include "greetingtest.moc"
