#include "support/home.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QTextEdit>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace {

QLocale mexican()
{
    return {QLocale::Spanish, QLocale::Mexico};
}

/// What the calendar shows in this cell of its table; row 0 names the days.
QString calendarCell(const QCalendarWidget &calendar, int row, int column)
{
    const auto *table = calendar.findChild<QAbstractItemView *>(u"qt_calendar_calendarview"_s);
    return table ? table->model()->index(row, column).data().toString() : QString();
}

} // namespace

class MainWindowLocaleTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        const QString asked = qEnvironmentVariable("NUBARIA_TEST_LOCALE", u"C.UTF-8"_s).section(u'.', 0, 0);
        QCOMPARE(QLocale::system().name(), asked);
        QCOMPARE(QLocale().name(), asked);
    }

    // As in a new process: an earlier window has changed the default.
    void init()
    {
        WindowTest::init();
        QLocale::setDefault(QLocale::system());
    }

    void makesMexicanSpanishTheDefault()
    {
        const MainWindow window;

        QCOMPARE(QLocale(), mexican());
        QCOMPARE(window.locale(), mexican());
    }

    void writesDatesAsInMexico_data()
    {
        QTest::addColumn<QByteArray>("editor");
        QTest::newRow("new task") << QByteArray("DateLimitTask");
        QTest::newRow("details") << QByteArray("DateLimitTaskView");
        QTest::newRow("second details") << QByteArray("DateLimitTaskView_2");
    }

    void writesDatesAsInMexico()
    {
        QFETCH(QByteArray, editor);
        const MainWindow window;
        auto *date = widget<QDateEdit>(window, editor.constData());

        date->setDate(QDate(2026, 3, 5));

        QCOMPARE(date->locale(), mexican());
        QCOMPARE(date->displayFormat(), u"dd/MM/yy"_s);
        QCOMPARE(date->text(), u"05/03/26"_s);
    }

    void readsATypedDateAsInMexico()
    {
        MainWindow window;
        window.show();
        widget<QPushButton>(window, "NewTaskViewButton")->click();
        auto *date = widget<QDateEdit>(window, "DateLimitTask");
        date->setDate(QDate(2026, 3, 5));
        date->setFocus();

        date->setSelectedSection(QDateTimeEdit::DaySection);
        QTest::keyClicks(date, u"241227"_s);

        QCOMPARE(date->date(), QDate(2027, 12, 24));
    }

    void namesMonthsInSpanish_data()
    {
        QTest::addColumn<int>("month");
        QTest::addColumn<QString>("name");
        const QStringList names = {u"enero"_s, u"febrero"_s, u"marzo"_s, u"abril"_s, u"mayo"_s, u"junio"_s,
            u"julio"_s, u"agosto"_s, u"septiembre"_s, u"octubre"_s, u"noviembre"_s, u"diciembre"_s};
        for (int month = 1; month <= names.size(); ++month) {
            QTest::addRow("month %d", month) << month << names.at(month - 1);
        }
    }

    void namesMonthsInSpanish()
    {
        QFETCH(int, month);
        QFETCH(QString, name);
        const MainWindow window;

        for (const char *editor : {"DateLimitTask", "DateLimitTaskView", "DateLimitTaskView_2"}) {
            auto *date = widget<QDateEdit>(window, editor);
            date->setDate(QDate(2026, month, 5));
            QCalendarWidget *calendar = date->calendarWidget();
            QVERIFY(calendar);
            calendar->setSelectedDate(date->date());
            QCOMPARE(widget<QToolButton>(*calendar, "qt_calendar_monthbutton")->text(), name);
        }
    }

    void namesDaysInSpanishFromSundayOn_data() { writesDatesAsInMexico_data(); }

    void namesDaysInSpanishFromSundayOn()
    {
        QFETCH(QByteArray, editor);
        const MainWindow window;
        const QCalendarWidget *calendar = widget<QDateEdit>(window, editor.constData())->calendarWidget();
        QVERIFY(calendar);

        QStringList days;
        for (int column = 0; column <= 7; ++column) {
            days.append(calendarCell(*calendar, 0, column));
        }

        QCOMPARE(calendar->firstDayOfWeek(), Qt::Sunday);
        QCOMPARE(days.filter(QRegularExpression(u"."_s)),
            QStringList({u"dom"_s, u"lun"_s, u"mar"_s, u"mié"_s, u"jue"_s, u"vie"_s, u"sáb"_s}));
    }

    void storesTheDueDateOfANewTaskWithFourDigitsOfTheYear()
    {
        home::writeTasks({});
        const MainWindow window;
        widget<QLineEdit>(window, "TaskTitle")->setText(u"Pagar la luz"_s);
        widget<QTextEdit>(window, "TaskDescription")->setPlainText(u"En el banco"_s);
        widget<QComboBox>(window, "CategoryTaskBox")->setCurrentIndex(0);
        widget<QComboBox>(window, "UrgencyTaskBox")->setCurrentIndex(0);
        widget<QDateEdit>(window, "DateLimitTask")->setDate(QDate(2026, 3, 5));

        widget<QPushButton>(window, "SaveTaskButton")->click();

        QCOMPARE(home::tasks().size(), 1);
        QCOMPARE(home::tasks().first()["dateLimit"_L1].toString(), u"05-03-2026"_s);
    }

    void storesTheDueDateOfAnUpdatedTaskWithFourDigitsOfTheYear()
    {
        home::writeTasks({home::record(u"{1}"_s, u"Pagar la luz"_s)});
        const MainWindow window;
        auto *list = widget<QListView>(window, "TaskListView");
        list->setCurrentIndex(list->model()->index(0, 0));
        auto *date = widget<QDateEdit>(window, "DateLimitTaskView");
        QCOMPARE(date->text(), u"05/03/26"_s);

        date->setDate(QDate(2027, 12, 24));
        widget<QPushButton>(window, "UpdateTaskBtn")->click();

        QCOMPARE(home::tasks().first()["dateLimit"_L1].toString(), u"24-12-2027"_s);
    }
};

NUBARIA_TEST_MAIN(MainWindowLocaleTest)
#include "mainwindowlocaletest.moc"
