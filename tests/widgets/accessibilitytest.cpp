#include "support/window.h"
#include "support/windowtest.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

class AccessibilityTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void pressesAPageButtonAsAClickDoes_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QByteArray>("page");
        QTest::newRow("tasks") << QByteArray("TaskViewButton") << QByteArray("TasksPage");
        QTest::newRow("new task") << QByteArray("NewTaskViewButton") << QByteArray("NewTasksPage");
        QTest::newRow("settings") << QByteArray("SettingsViewButton") << QByteArray("SettingsPage");
        QTest::newRow("profile") << QByteArray("ProfileViewButton") << QByteArray("ProfilePage");
        QTest::newRow("release notes") << QByteArray("PatchNoticesViewButton") << QByteArray("PatchPage");
    }

    void pressesAPageButtonAsAClickDoes()
    {
        QFETCH(QByteArray, button);
        QFETCH(QByteArray, page);
        const MainWindow window;
        QAccessibleInterface *told
            = QAccessible::queryAccessibleInterface(widget(window, button.constData()));
        QVERIFY(told && told->actionInterface());
        QCOMPARE(
            told->actionInterface()->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});

        told->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

        QVERIFY(widget<QPushButton>(window, button.constData())->isChecked());
        QVERIFY(!widget(window, page.constData())->isHidden());
    }

    void tellsWhichPageIsChosen()
    {
        const MainWindow window;
        const QAccessibleInterface *told
            = QAccessible::queryAccessibleInterface(widget(window, "ProfileViewButton"));
        QCOMPARE(told->role(), QAccessible::RadioButton);
        QCOMPARE(told->text(QAccessible::Name), u"Perfil"_s);
        QVERIFY(!told->state().checked);

        widget<QPushButton>(window, "ProfileViewButton")->click();

        QVERIFY(told->state().checkable);
        QVERIFY(told->state().checked);
    }

    void leavesOtherButtonsToQt()
    {
        const MainWindow window;
        for (const char *name : {"SaveTaskButton", "CloseDetailTaskBtn"}) {
            QCOMPARE(
                QAccessible::queryAccessibleInterface(widget(window, name))->role(), QAccessible::Button);
        }
        QCOMPARE(QAccessible::queryAccessibleInterface(widget(window, "TaskViewButton_2"))->role(),
            QAccessible::CheckBox);
    }

    void namesTheButtonThatClearsAnEdit_data()
    {
        QTest::addColumn<QByteArray>("edit");
        for (const char *name : {"SearchTask", "TaskTitle", "UserName", "UserMail"}) {
            QTest::newRow(name) << QByteArray(name);
        }
    }

    void namesTheButtonThatClearsAnEdit()
    {
        QFETCH(QByteArray, edit);
        const MainWindow window;
        // Twice, as the profile's edits get a new one each time.
        for (int time = 0; time < 2; ++time) {
            widget<QPushButton>(window, "SetProfileInfo")->click();
            const auto *button = widget<QLineEdit>(window, edit.constData())->findChild<QToolButton *>();
            QVERIFY(button);
            QCOMPARE(button->accessibleName(), u"Borrar el texto"_s);
            widget<QPushButton>(window, "SaveProfileInfo")->click();
        }
    }
};

NUBARIA_TEST_MAIN(AccessibilityTest)
#include "accessibilitytest.moc"
