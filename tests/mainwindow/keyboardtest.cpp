#include "support/keyboard.h"
#include "support/home.h"
#include "support/listedtasks.h"
#include "support/messageboxes.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

QString shownPage(const MainWindow &window)
{
    for (const char *name : {"TasksPage", "NewTasksPage", "ProfilePage", "SettingsPage", "PatchPage"}) {
        if (widget(window, name)->isVisible()) {
            return QLatin1StringView(name);
        }
    }
    return {};
}

void fillNewTaskForm(const MainWindow &window)
{
    widget<QLineEdit>(window, "TaskTitle")->setText(u"Nueva"_s);
    widget<QTextEdit>(window, "TaskDescription")->setPlainText(u"con detalle"_s);
    widget<QComboBox>(window, "CategoryTaskBox")->setCurrentIndex(0);
    widget<QComboBox>(window, "UrgencyTaskBox")->setCurrentIndex(0);
}

} // namespace

class KeyboardTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        home::writeTasks(manyTasks());
    }

    void opensAPageByItsNumber_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<QString>("page");
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("1") << Qt::Key_1 << u"TasksPage"_s << QByteArray("TaskViewButton");
        QTest::newRow("2") << Qt::Key_2 << u"NewTasksPage"_s << QByteArray("NewTaskViewButton");
        QTest::newRow("3") << Qt::Key_3 << u"ProfilePage"_s << QByteArray("ProfileViewButton");
        QTest::newRow("4") << Qt::Key_4 << u"SettingsPage"_s << QByteArray("SettingsViewButton");
        QTest::newRow("5") << Qt::Key_5 << u"PatchPage"_s << QByteArray("PatchNoticesViewButton");
    }

    void opensAPageByItsNumber()
    {
        QFETCH(Qt::Key, key);
        QFETCH(QString, page);
        QFETCH(QByteArray, button);
        MainWindow window;
        QVERIFY(showActive(window));
        for (const Qt::Key from : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5}) {
            press(window, from, Qt::ControlModifier);

            press(window, key, Qt::ControlModifier);

            QCOMPARE(shownPage(window), page);
            QVERIFY(widget<QPushButton>(window, button.constData())->isChecked());
        }
    }

    void putsTheCursorIntoTheTitleOfANewTask()
    {
        MainWindow window;
        QVERIFY(showActive(window));

        press(window, Qt::Key_N, Qt::ControlModifier);
        press(window, Qt::Key_A);
        QCOMPARE(textOf(window, "TaskTitle"), u"a"_s);

        // And leaves there what has been written.
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_N, Qt::ControlModifier);
        press(window, Qt::Key_B);
        QCOMPARE(textOf(window, "TaskTitle"), u"ab"_s);
    }

    void findsTheSearchFieldFromEverywhere_data()
    {
        QTest::addColumn<QByteArray>("button");
        for (const char *button : {"TaskViewButton", "NewTaskViewButton", "ProfileViewButton",
                 "SettingsViewButton", "PatchNoticesViewButton"}) {
            QTest::newRow(button) << QByteArray(button);
        }
        QTest::newRow("open panel") << QByteArray();
    }

    void findsTheSearchFieldFromEverywhere()
    {
        QFETCH(QByteArray, button);
        MainWindow window;
        QVERIFY(showActive(window));
        if (button.isEmpty()) {
            selectRow(window, 0);
            press(window, Qt::Key_Tab);
        } else {
            click(window, button.constData());
            press(window, Qt::Key_Tab);
        }

        press(window, Qt::Key_F, Qt::ControlModifier);

        QCOMPARE(shownPage(window), u"TasksPage"_s);
        press(window, Qt::Key_9);
        QCOMPARE(textOf(window, "SearchTask"), u"9"_s);
        QTRY_COMPARE(panelPlace(window), closedPanel);
    }

    void emptiesTheSearchField()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        press(window, Qt::Key_9);
        QCOMPARE(shownTitles(window), QStringList({u"Tarea 9"_s, u"Tarea 19"_s, u"Tarea 29"_s}));

        press(window, Qt::Key_Escape);

        QCOMPARE(textOf(window, "SearchTask"), QString());
        QCOMPARE(shownTitles(window).size(), manyTasks().size());
        press(window, Qt::Key_Escape);
        QCOMPARE(focused(window), u"SearchTask"_s);
    }

    void closesAnOpenListAndNotThePanel()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        press(window, Qt::Key_Down);
        QTRY_COMPARE(panelPlace(window), openPanel);
        auto *category = widget<QComboBox>(window, "CategoryTaskBoxView");
        category->setFocus();
        category->showPopup();
        QTRY_VERIFY(category->view()->isVisible());

        press(window, Qt::Key_Escape);

        QTRY_VERIFY(!category->view()->isVisible());
        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), openPanel);
    }

    void savesANewTask()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        press(window, Qt::Key_N, Qt::ControlModifier);
        fillNewTaskForm(window);

        press(window, Qt::Key_S, Qt::ControlModifier);

        QCOMPARE(home::tasks().size(), manyTasks().size() + 1);
        QCOMPARE(home::tasks().last()["title"_L1].toString(), u"Nueva"_s);
        QCOMPARE(shownPage(window), u"TasksPage"_s);
        QCOMPARE(focused(window), u"SearchTask"_s);
    }

    void updatesATask()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        press(window, Qt::Key_Down);
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Z);

        press(window, Qt::Key_S, Qt::ControlModifier);

        QCOMPARE(home::tasks().first()["title"_L1].toString(), u"z"_s);
        traymessages::compareOnly(u"Tarea actualizada"_s, u"La tarea 'z' ha sido actualizada."_s);
        // The panel that slides away counts no more.
        press(window, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(traymessages::all().size(), 1);
    }

    void savesNothingElse()
    {
        const QByteArray bytes = home::bytes();
        MainWindow window;
        QVERIFY(showActive(window));
        fillNewTaskForm(window);
        // Closing the panel leaves its row the current one, and what was written in it.
        selectRow(window, 1);
        widget<QLineEdit>(window, "TaskTitleView")->setText(u"De nadie"_s);
        press(window, Qt::Key_Escape);
        const MessageBoxes boxes;
        for (const Qt::Key page : {Qt::Key_1, Qt::Key_3, Qt::Key_4, Qt::Key_5}) {
            press(window, page, Qt::ControlModifier);
            for (const Qt::Key key : {Qt::Key_S, Qt::Key_T, Qt::Key_L}) {
                press(window, key, Qt::ControlModifier);
            }
        }

        QCOMPARE(home::bytes(), bytes);
        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(traymessages::all().size(), 0);
        QCOMPARE(textOf(window, "TaskTitle"), u"Nueva"_s);
    }

    void finishesATask()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        press(window, Qt::Key_Down);
        press(window, Qt::Key_Down);
        const MessageBoxes boxes(QMessageBox::Yes);

        press(window, Qt::Key_T, Qt::ControlModifier);

        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(home::tasks().size(), manyTasks().size() - 1);
        QCOMPARE(home::tasks().at(1)["title"_L1].toString(), u"Tarea 2"_s);
    }

    void clearsTheForm()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        fillNewTaskForm(window);
        press(window, Qt::Key_L, Qt::ControlModifier); // not on this page
        QCOMPARE(textOf(window, "TaskTitle"), u"Nueva"_s);
        press(window, Qt::Key_2, Qt::ControlModifier);

        press(window, Qt::Key_L, Qt::ControlModifier);

        QCOMPARE(textOf(window, "TaskTitle"), QString());
        QCOMPARE(widget<QComboBox>(window, "UrgencyTaskBox")->currentIndex(), -1);
        QCOMPARE(shownPage(window), u"NewTasksPage"_s);
    }

    void namesTheKeys_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QString>("toolTip");
        QTest::addColumn<QString>("told");
        const auto row = [](const char *button, const QString &toolTip, const QString &told) {
            QTest::newRow(button) << QByteArray(button) << toolTip << told;
        };
        row("TaskViewButton", u"Lista de tareas (Ctrl+1)"_s,
            u"Abre la página con la lista de tareas. Tecla: Ctrl+1."_s);
        row("NewTaskViewButton", u"Nueva tarea (Ctrl+2)"_s,
            u"Abre la página para escribir una tarea nueva. Tecla: Ctrl+2."_s);
        row("ProfileViewButton", u"Perfil (Ctrl+3)"_s, u"Abre la página de tu perfil. Tecla: Ctrl+3."_s);
        row("SettingsViewButton", u"Ajustes (Ctrl+4)"_s, u"Abre la página de los ajustes. Tecla: Ctrl+4."_s);
        row("PatchNoticesViewButton", u"Notas de parche (Ctrl+5)"_s,
            u"Abre la página con las notas de esta versión. Tecla: Ctrl+5."_s);
        row("SaveTaskButton", u"Guardar tarea (Ctrl+S)"_s,
            u"Guarda la tarea y vuelve a la lista de tareas. Tecla: Ctrl+S."_s);
        row("UpdateTaskBtn", u"Actualizar tarea (Ctrl+S)"_s,
            u"Guarda los cambios de la tarea. Tecla: Ctrl+S."_s);
        row("FinishTaskBtn", u"Finalizar tarea (Ctrl+T)"_s,
            u"Finaliza la tarea y la elimina de la lista, después de preguntar. Tecla: Ctrl+T."_s);
        row("CleanTaskButton", u"Limpiar campos (Ctrl+L)"_s,
            u"Borra lo escrito sin salir de esta página. Tecla: Ctrl+L."_s);
        row("CloseDetailTaskBtn", u"Cerrar los detalles (Esc)"_s,
            u"Vuelve a la lista sin guardar los cambios. Tecla: Esc."_s);
    }

    void namesTheKeys()
    {
        QFETCH(QByteArray, button);
        QFETCH(QString, toolTip);
        QFETCH(QString, told);
        const MainWindow window;

        QCOMPARE(widget(window, button.constData())->toolTip(), toolTip);
        const auto *accessible = QAccessible::queryAccessibleInterface(widget(window, button.constData()));
        QCOMPARE(accessible->text(QAccessible::Description), told);
    }
};

NUBARIA_TEST_MAIN(KeyboardTest)
#include "keyboardtest.moc"
