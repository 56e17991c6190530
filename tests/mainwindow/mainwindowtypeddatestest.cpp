#include "support/home.h"
#include "support/taskform.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QDateEdit>
#include <QLineEdit>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace {

QLineEdit *line(const QDateEdit *edit)
{
    return edit->findChild<QLineEdit *>(QString(), Qt::FindDirectChildrenOnly);
}

void clickDay(MainWindow &window, const QDateEdit *edit)
{
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
        line(edit)->mapTo(&window, QPoint(6, line(edit)->height() / 2)));
}

void type(const MainWindow &window, const QString &text)
{
    for (const QChar character : text) {
        QTest::keyClick(window.windowHandle(), character.toLatin1());
    }
}

QString storedDate(qsizetype task)
{
    return home::tasks().at(task)["dateLimit"_L1].toString();
}

void addSpellings()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored");
    for (const char *typed : {"05/03/27", "5/3/27", "05-03-27", "050327", "05/03/2027"}) {
        QTest::newRow(typed) << QString::fromLatin1(typed) << u"05-03-2027"_s;
    }
    QTest::newRow("no such day") << u"31/02/27"_s << u"28-02-2027"_s;
}

} // namespace

/// What is typed into the window's date editors is what is stored.
class MainWindowTypedDatesTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void areStoredWithANewTask_data() { addSpellings(); }

    void areStoredWithANewTask()
    {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        MainWindow window;
        QVERIFY(showActive(window));
        click(window, "NewTaskViewButton");
        QVERIFY(waitForSlides());
        fillForm(window);

        const auto *edit = widget<QDateEdit>(window, "DateLimitTask");
        clickDay(window, edit);
        QCOMPARE(line(edit)->selectedText(), edit->text().first(2));
        type(window, typed);
        QVERIFY(edit->hasFocus());
        const QDate shown = QDate::fromString(line(edit)->text(), u"dd/MM/yy"_s).addYears(100);
        click(window, "SaveTaskButton");

        QCOMPARE(storedDate(0), stored);
        QCOMPARE(shown.toString(u"dd-MM-yyyy"_s), stored);
    }

    void areStoredWithAnUpdatedTask_data() { addSpellings(); }

    void areStoredWithAnUpdatedTask()
    {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        home::writeTasks({home::completeRecord()});
        MainWindow window;
        QVERIFY(showActive(window));
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);

        clickDay(window, widget<QDateEdit>(window, "DateLimitTaskView"));
        type(window, typed);
        click(window, "UpdateTaskBtn");

        QCOMPARE(storedDate(0), stored);
    }

    void areTakenByEveryEditor()
    {
        MainWindow window;
        const QList<QDateEdit *> edits = window.findChildren<QDateEdit *>();
        QCOMPARE(edits.size(), 3);
        for (QDateEdit *edit : edits) {
            QTest::keyClicks(edit, u"5/3/2027"_s);
            QCOMPARE(edit->date(), QDate(2027, 3, 5));
        }
    }
};

NUBARIA_TEST_MAIN(MainWindowTypedDatesTest)
#include "mainwindowtypeddatestest.moc"
