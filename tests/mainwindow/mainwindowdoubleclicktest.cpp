#include "support/home.h"
#include "support/messageboxes.h"
#include "support/taskform.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QLineEdit>
#include <QTextEdit>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace {

QPoint center(const MainWindow &window, const char *name)
{
    const QWidget *hit = widget(window, name);
    return hit->mapTo(&window, hit->rect().center());
}

void press(const MainWindow &window, QPoint place)
{
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, place);
}

void pressSoon(const MainWindow &window, QPoint place)
{
    QTest::lastMouseTimestamp -= QTest::mouseDoubleClickInterval;
    press(window, place);
}

void showTasks(MainWindow &window)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

} // namespace

/// What a double click does, and above all what it does not.
class MainWindowDoubleClickTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        // As many as fill the list down to the buttons that come over it.
        QJsonArray tasks;
        for (int number = 0; number < 20; ++number) {
            tasks.append(home::record(u"{%1}"_s.arg(number), u"tarea %1"_s.arg(number)));
        }
        home::writeTasks(tasks);
    }

    void onARowOpensTheTaskAndDoesNothingElse_data()
    {
        QTest::addColumn<QByteArray>("covered");
        for (const char *name : {"UpdateTaskBtn", "FinishTaskBtn", "DeleteTaskBtn", "TaskDescriptionView",
                 "DateLimitTaskView", "UrgencyTaskBoxView"}) {
            QTest::newRow(name) << QByteArray(name);
        }
    }

    void onARowOpensTheTaskAndDoesNothingElse()
    {
        QFETCH(QByteArray, covered);
        MainWindow window;
        showTasks(window);
        const MessageBoxes boxes(QMessageBox::No);
        const QByteArray before = home::bytes();
        const QWidget *field = widget(window, covered.constData());
        const QPoint place = widget(window, "TasksPage")->mapTo(&window, field->geometry().center());

        press(window, place);
        QTRY_COMPARE(panelPlace(window), openPanel);
        const QWidget *focus = QApplication::focusWidget();
        pressSoon(window, place);

        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), openPanel);
        QVERIFY(taskList(window)->currentIndex().isValid());
        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(),
            taskList(window)->currentIndex().data().toString());
        QCOMPARE(home::bytes(), before);
        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(traymessages::all(), QList<TrayMessage>());
        QCOMPARE(QApplication::focusWidget(), focus);
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(!widget<QTextEdit>(window, "TaskDescriptionView")->textCursor().hasSelection());
    }

    void onARowOpensTheTaskAlsoWhenItWasTheCurrentOne()
    {
        MainWindow window;
        showTasks(window);
        const QPoint place = taskList(window)->mapTo(&window, QPoint(100, 300));
        press(window, place);
        click(window, "CloseDetailTaskBtn");
        QTRY_COMPARE(panelPlace(window), closedPanel);

        press(window, place);
        pressSoon(window, place);

        QTRY_COMPARE(panelPlace(window), openPanel);
    }

    void onSaveTaskSavesOneTaskAndOpensNone()
    {
        MainWindow window;
        showTasks(window);
        click(window, "NewTaskViewButton");
        fillForm(window);
        QVERIFY(waitForSlides());
        const qsizetype before = home::tasks().size();

        press(window, center(window, "SaveTaskButton"));
        QVERIFY(widget(window, "TasksPage")->isVisible());
        pressSoon(window, center(window, "SaveTaskButton"));

        QVERIFY(waitForSlides());
        QCOMPARE(home::tasks().size(), before + 1);
        QCOMPARE(panelPlace(window), closedPanel);
        QVERIFY(!taskList(window)->currentIndex().isValid());
    }

    void onUpdateTaskUpdatesOnce()
    {
        MainWindow window;
        showTasks(window);
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);

        press(window, center(window, "UpdateTaskBtn"));
        pressSoon(window, center(window, "UpdateTaskBtn"));

        QCOMPARE(traymessages::titled(u"Advertencia"_s), QList<TrayMessage>());
        QTRY_COMPARE(panelPlace(window), closedPanel);
        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), closedPanel);
    }

    void onEditProfileStoresNothing()
    {
        MainWindow window;
        showTasks(window);
        click(window, "ProfileViewButton");
        QVERIFY(waitForSlides());

        press(window, center(window, "SetProfileInfo"));
        QVERIFY(widget(window, "SaveProfileInfo")->isVisible());
        pressSoon(window, center(window, "SetProfileInfo"));

        QVERIFY(widget(window, "SaveProfileInfo")->isVisible());
        QVERIFY(!home::preference(u"firstName"_s).isValid());
        QVERIFY(!home::preference(u"email"_s).isValid());
    }

    void onFinishTaskAsksAndAnswersNothing()
    {
        MainWindow window;
        showTasks(window);
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);
        bool asked = false;
        const QPoint place = center(window, "FinishTaskBtn");
        QTimer::singleShot(0, &window, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            asked = box;
            auto *yes = qobject_cast<QPushButton *>(box->button(QMessageBox::Yes));
            const QPoint center = yes->mapTo(box, yes->rect().center());
            box->move(window.mapToGlobal(place) - center);
            // Soon after: the first release has not returned yet.
            QTest::mouseClick(box->windowHandle(), Qt::LeftButton, {}, center);
            if (box->isVisible()) {
                box->reject();
            }
        });

        press(window, place);

        QVERIFY(asked);
        QCOMPARE(home::tasks().size(), 20);
    }

    void isNotAQuickClickOnAnotherButton()
    {
        MainWindow window;
        showTasks(window);

        press(window, center(window, "SettingsViewButton"));
        pressSoon(window, center(window, "ProfileViewButton"));

        QVERIFY(widget(window, "ProfilePage")->isVisible());
    }
};

NUBARIA_TEST_MAIN(MainWindowDoubleClickTest)
#include "mainwindowdoubleclicktest.moc"
