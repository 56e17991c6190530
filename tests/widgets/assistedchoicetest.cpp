#include "support/home.h"
#include "support/messageboxes.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QRegularExpression>

#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What a screen reader has to choose an item with.
void toggle(QWidget *view, int row)
{
    QAccessibleInterface *told = QAccessible::queryAccessibleInterface(view);
    QVERIFY(told);
    QAccessibleInterface *item = told->child(row);
    QVERIFY(item && item->actionInterface());
    item->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
}

QString openTask(const MainWindow &window)
{
    return widget<QLineEdit>(window, "TaskTitleView")->text();
}

} // namespace

class AssistedChoiceTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s), home::record(u"{b}"_s, u"Dos"_s),
            home::record(u"{c}"_s, u"Tres"_s)});
    }

    void opensARow()
    {
        const MainWindow window;
        QAccessible::setActive(true);

        toggle(taskList(window), 1);

        QTRY_COMPARE(panelPlace(window), openPanel);
        QCOMPARE(openTask(window), u"Dos"_s);
        QCOMPARE(taskList(window)->currentIndex().row(), 1);
    }

    void opensAnotherRowWhileOneIsOpen()
    {
        const MainWindow window;
        QAccessible::setActive(true);
        toggle(taskList(window), 0);
        QTRY_COMPARE(openTask(window), u"Uno"_s);

        toggle(taskList(window), 2);

        QTRY_COMPARE(openTask(window), u"Tres"_s);
        QTRY_COMPARE(panelPlace(window), openPanel);
    }

    void opensTheSameRowAgain()
    {
        const MainWindow window;
        QAccessible::setActive(true);
        toggle(taskList(window), 1);
        QTRY_COMPARE(panelPlace(window), openPanel);
        click(window, "CloseDetailTaskBtn");
        QTRY_COMPARE(panelPlace(window), closedPanel);

        toggle(taskList(window), 1);

        QTRY_COMPARE(panelPlace(window), openPanel);
        QCOMPARE(openTask(window), u"Dos"_s);
    }

    void leavesAClickToQt()
    {
        MainWindow window;
        QAccessible::setActive(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        selectRow(window, 1);
        click(window, "CloseDetailTaskBtn");
        QTRY_COMPARE(panelPlace(window), closedPanel);

        const QRect row = taskList(window)->visualRect(taskList(window)->currentIndex());
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
            taskList(window)->viewport()->mapTo(&window, row.center()));

        QVERIFY(taskList(window)->selectionModel()->isRowSelected(1));
        QCoreApplication::processEvents();
        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), closedPanel);
    }

    void tellsOnceWhatCannotBeOpened_data()
    {
        QTest::addColumn<std::function<void(const MainWindow &)>>("choose");
        using Choose = std::function<void(const MainWindow &)>;
        QTest::newRow("by assistive technology")
            << Choose([](const MainWindow &window) { toggle(taskList(window), 0); });
        QTest::newRow("by a key") << Choose(
            [](const MainWindow &window) { QTest::keyClick(window.windowHandle(), Qt::Key_Down); });
        QTest::newRow("by the program") << Choose([](const MainWindow &window) { selectRow(window, 0); });
    }

    void tellsOnceWhatCannotBeOpened()
    {
        QFETCH(std::function<void(const MainWindow &)>, choose);
        MainWindow window;
        QAccessible::setActive(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QVERIFY(QFile::remove(home::taskFile()));
        home::blockTaskFile();
        const MessageBoxes boxes;
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u".+"_s));

        choose(window);

        QTRY_COMPARE(boxes.shown().size(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(boxes.shown().size(), 1);
    }

    void choosesAnItem_data()
    {
        QTest::addColumn<QByteArray>("chooser");
        QTest::addColumn<bool>("open");
        for (const char *name : {"OrderNotesBy", "CategoryTaskBox", "UrgencyTaskBox", "CategoryTaskBoxView",
                 "UrgencyTaskBoxView", "DisplayMessage", "ChangeTextTheme", "ChangeColorTheme"}) {
            QTest::addRow("%s, closed", name) << QByteArray(name) << false;
            QTest::addRow("%s, open", name) << QByteArray(name) << true;
        }
    }

    void choosesAnItem()
    {
        QFETCH(QByteArray, chooser);
        QFETCH(bool, open);
        MainWindow window;
        QAccessible::setActive(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *box = widget<QComboBox>(window, chooser.constData());
        for (QWidget *place = box; place != &window; place = place->parentWidget()) {
            place->show();
        }
        if (open) {
            box->showPopup();
            QTRY_VERIFY(box->view()->isVisible());
        }

        toggle(box->view(), 1);

        QTRY_COMPARE(box->currentIndex(), 1);
        QTRY_VERIFY(!box->view()->isVisible());
    }

    void choosesWhatWasChosenBefore()
    {
        const MainWindow window;
        QAccessible::setActive(true);
        auto *box = widget<QComboBox>(window, "CategoryTaskBox");
        toggle(box->view(), 1);
        QTRY_COMPARE(box->currentIndex(), 1);
        box->setCurrentIndex(3);

        toggle(box->view(), 1);

        QTRY_COMPARE(box->currentIndex(), 1);
    }

    void leavesTheKeysOfAnOpenListToQt()
    {
        MainWindow window;
        QAccessible::setActive(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *box = widget<QComboBox>(window, "OrderNotesBy");
        box->setCurrentIndex(0);
        box->showPopup();
        QTRY_VERIFY(box->view()->isVisible());

        QTest::keyClick(box->view(), Qt::Key_Down);
        QCoreApplication::processEvents();
        QCOMPARE(box->currentIndex(), 0);
        QVERIFY(box->view()->isVisible());

        QTest::keyClick(box->view(), Qt::Key_Return);
        QCOMPARE(box->currentIndex(), 1);
    }
};

NUBARIA_TEST_MAIN(AssistedChoiceTest)
#include "assistedchoicetest.moc"
