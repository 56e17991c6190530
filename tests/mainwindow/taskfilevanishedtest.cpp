#include "support/home.h"
#include "support/loglines.h"
#include "support/messageboxes.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

/// A task file that was there when the window was built, and is not any more.
class TaskFileVanishedTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void isReportedWhenATaskIsOpened()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        QVERIFY(QFile::remove(home::taskFile()));
        const QString error = home::openError(QIODevice::ReadOnly);
        QVERIFY(!error.isEmpty());
        const MessageBoxes boxes;
        expectFileError("Failed to open file for reading:", error);

        selectRow(window, 0);

        compareOnlyBox(
            boxes, QMessageBox::Critical, u"Error"_s, u"Failed to open file for reading: "_s + error);
        QVERIFY(!advice(window)->isHidden());
        QCOMPARE(shownTitles(window), QStringList{u"uno"_s});
        QVERIFY(!QFile::exists(home::taskFile()));
        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), closedPanel);
    }

    void isMadeEmptyWhenATaskIsUpdated()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        QVERIFY(QFile::remove(home::taskFile()));

        click(window, "UpdateTaskBtn");

        QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
        traymessages::compareOnly(u"Tarea actualizada"_s, u"La tarea 'uno' ha sido actualizada."_s);
    }

    void isMadeEmptyWhenATaskIsDeleted()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        QVERIFY(QFile::remove(home::taskFile()));
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "DeleteTaskBtn");

        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(home::bytes(), QByteArray("[\n]\n"));
        traymessages::compareOnly(u"Tarea eliminada"_s, u"La tarea '' ha sido eliminada."_s);
        QCOMPARE(shownTitles(window), QStringList());
    }

    void isOnlyLoggedByTheReminders()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        MainWindow window;
        widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);
        QVERIFY(QFile::remove(home::taskFile()));
        const MessageBoxes boxes;
        expectFileError("Failed to open file for reading:", home::openError(QIODevice::ReadOnly));

        callSlot(window, "checkTaskReminders");

        QCOMPARE(traymessages::all().size(), 0);
        QCOMPARE(boxes.shown().size(), 0);
        QVERIFY(!QFile::exists(home::taskFile()));
    }
};

NUBARIA_TEST_MAIN(TaskFileVanishedTest)
#include "taskfilevanishedtest.moc"
