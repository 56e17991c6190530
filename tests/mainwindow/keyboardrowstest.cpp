#include "support/home.h"
#include "support/keyboard.h"
#include "support/listedtasks.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QShortcut>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

class KeyboardRowsTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        home::writeTasks(manyTasks());
    }

    void stepsThroughTheRows()
    {
        MainWindow window;
        QVERIFY(showActive(window));

        const QList<QPair<Qt::Key, QString>> steps
            = {{Qt::Key_Down, u"Tarea 0"_s}, {Qt::Key_Down, u"Tarea 1"_s}, {Qt::Key_Down, u"Tarea 2"_s},
                {Qt::Key_Up, u"Tarea 1"_s}, {Qt::Key_Up, u"Tarea 0"_s}, {Qt::Key_Up, u"Tarea 0"_s}};
        for (const auto &[key, title] : steps) {
            press(window, key);
            QCOMPARE(textOf(window, "TaskTitleView"), title);
            QCOMPARE(focused(window), u"TaskDetail"_s);
        }
        QTRY_COMPARE(panelPlace(window), openPanel);

        // From the field the same, after the panel was closed, and in what was found.
        press(window, Qt::Key_Escape);
        press(window, Qt::Key_Down);
        QCOMPARE(textOf(window, "TaskTitleView"), u"Tarea 1"_s);
        press(window, Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(widget(window, "SearchTask"), u"2"_s);
        press(window, Qt::Key_Down);
        QCOMPARE(textOf(window, "TaskTitleView"), u"Tarea 2"_s);
        press(window, Qt::Key_Down);
        QCOMPARE(textOf(window, "TaskTitleView"), u"Tarea 12"_s);
    }

    void stepsByPages()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        press(window, Qt::Key_Down);

        press(window, Qt::Key_PageDown);
        const int row = taskList(window)->currentIndex().row();
        QVERIFY2(row >= 10 && row <= 14, qPrintable(QString::number(row)));
        for (int page = 0; page < 3; ++page) {
            press(window, Qt::Key_PageDown);
        }
        QCOMPARE(textOf(window, "TaskTitleView"), u"Tarea 29"_s);
        QVERIFY(taskList(window)->viewport()->rect().contains(
            taskList(window)->visualRect(taskList(window)->currentIndex()).center()));

        press(window, Qt::Key_PageUp);
        QCOMPARE(taskList(window)->currentIndex().row(), manyTasks().size() - 1 - row);
        for (int page = 0; page < 3; ++page) {
            press(window, Qt::Key_PageUp);
        }
        QCOMPARE(textOf(window, "TaskTitleView"), u"Tarea 0"_s);
    }

    void opensARowAnew()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Sola"_s)});
        MainWindow window;
        QVERIFY(showActive(window));
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp}) {
            press(window, key);
            QTRY_COMPARE(panelPlace(window), openPanel);
            QCOMPARE(textOf(window, "TaskTitleView"), u"Sola"_s);
            QVERIFY(taskList(window)->selectionModel()->isRowSelected(0));
            press(window, Qt::Key_Escape);
            QTRY_COMPARE(panelPlace(window), closedPanel);
        }
    }

    void stepsThroughNothing()
    {
        home::writeTasks({});
        MainWindow window;
        QVERIFY(showActive(window));
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp}) {
            press(window, key);
            QCOMPARE(focused(window), u"SearchTask"_s);
        }
        QCOMPARE(panelPlace(window), closedPanel);
    }

    void keepsTheArrowsOfOtherFields()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        selectRow(window, 3);
        auto *urgency = widget<QComboBox>(window, "UrgencyTaskBoxView");
        urgency->setCurrentIndex(1);
        urgency->setFocus();
        press(window, Qt::Key_Down);
        QCOMPARE(urgency->currentIndex(), 2);
        auto *description = widget<QTextEdit>(window, "TaskDescriptionView");
        description->setPlainText(u"uno\ndos"_s);
        description->setFocus();
        press(window, Qt::Key_Down);
        QCOMPARE(description->textCursor().blockNumber(), 1);
        widget(window, "TaskTitleView")->setFocus();
        press(window, Qt::Key_Down);

        QCOMPARE(textOf(window, "TaskTitleView"), u"Tarea 3"_s);
        QCOMPARE(focused(window), u"TaskTitleView"_s);
    }

    void takesNoStandardKeyOfATextField()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        press(window, Qt::Key_2, Qt::ControlModifier);
        const QList<QShortcut *> shortcuts = window.findChildren<QShortcut *>();
        QVERIFY(shortcuts.size() >= 10);
        for (const char *field : {"TaskTitle", "TaskDescription", "DateLimitTask"}) {
            for (const QShortcut *shortcut : shortcuts) {
                // A field that wants a key for itself accepts this.
                const QKeyCombination keys = shortcut->key()[0];
                QKeyEvent event(QEvent::ShortcutOverride, keys.key(), keys.keyboardModifiers());
                event.ignore();
                QCoreApplication::sendEvent(widget(window, field), &event);
                QVERIFY2(!event.isAccepted(), qPrintable(shortcut->key().toString()));
            }
        }
    }
};

NUBARIA_TEST_MAIN(KeyboardRowsTest)
#include "keyboardrowstest.moc"
