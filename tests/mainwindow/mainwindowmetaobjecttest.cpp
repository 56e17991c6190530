#include "mainwindow/mainwindow.h"
#include "support/windowtest.h"

#include <QMetaMethod>

using namespace Qt::Literals::StringLiterals;

namespace {

// A test builds its tables once, at its start.
// clazy:excludeall=non-pod-global-static
const QStringList slotsInOrder = {
    u"void onTaskViewButtonClicked()"_s,
    u"void onNewTaskViewButtonClicked()"_s,
    u"void onSettingsViewButtonClicked()"_s,
    u"void onProfileViewButtonClicked()"_s,
    u"void onPatchNoticesViewButtonClicked()"_s,
    u"void loadUserInfo()"_s,
    u"void loadTasks()"_s,
    u"void loadProfilePicture()"_s,
    u"void saveTask()"_s,
    u"void showTaskDetails(QModelIndex index)"_s,
    u"void cancelTask()"_s,
    u"void cleanTaskData()"_s,
    u"void closeTaskDetail()"_s,
    u"void updateTask()"_s,
    u"int countSavedTasks()"_s,
    u"qlonglong getJsonFileSize()"_s,
    u"void changeProfilePicture()"_s,
    u"void showEditProfile()"_s,
    u"void orderTasks(int)"_s,
    u"void filterTasks(QString searchText)"_s,
    u"void updateLabels(int)"_s,
    u"void loadDisplayMessageSetting()"_s,
    u"void updateTaskList()"_s,
    u"void onTaskAdded()"_s,
    u"void onTaskRemoved(QString taskTitle)"_s,
    u"void handleSimpleNotifyStateChanged(int state)"_s,
    u"void handleSoundThemeIndexChanged(int)"_s,
    u"void exitActionTriggered()"_s,
    u"void handleAdvancedNotifyStateChanged(int state)"_s,
    u"void checkTaskReminders()"_s,
    u"void handleChangeCloseStateChanged(int state)"_s,
    u"void trayIconActivated(QSystemTrayIcon::ActivationReason reason)"_s,
    u"void deleteTask()"_s,
    u"void checkVersion()"_s,
    u"void showUpdateMessage()"_s,
    u"void closeUpdateMessage()"_s,
    u"void launchUpdater()"_s,
    u"void saveProfileInfo()"_s,
    u"void applyColorTheme(int)"_s,
    u"void applyTextEmphasis(int)"_s,
    u"void restoreWindow()"_s,
    u"void flashTaskbarIcon()"_s,
    u"void handleNewInstanceConnection()"_s,
};

// As the method is written in a header, its arguments with their names.
QString declaration(const QMetaMethod &method)
{
    QStringList arguments;
    for (int i = 0; i < method.parameterCount(); ++i) {
        const QByteArray name = method.parameterNames().at(i);
        arguments.append(
            QString::fromLatin1(method.parameterTypeName(i) + (name.isEmpty() ? "" : " ") + name));
    }
    return u"%1 %2(%3)"_s.arg(
        QString::fromLatin1(method.typeName()), QString::fromLatin1(method.name()), arguments.join(", "_L1));
}

} // namespace

class MainWindowMetaObjectTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void declaresItsSlotsInOrder()
    {
        const QMetaObject &meta = MainWindow::staticMetaObject;
        QStringList found;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
            found.append(declaration(meta.method(i)));
        }

        QCOMPARE(found, slotsInOrder);
        QCOMPARE(found.size(), 43);
    }

    void declaresNoPropertyAndNoInvokableConstructor()
    {
        const QMetaObject &meta = MainWindow::staticMetaObject;

        QCOMPARE(meta.className(), "MainWindow");
        QCOMPARE(meta.superClass(), &QMainWindow::staticMetaObject);
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
        QCOMPARE(meta.constructorCount(), 0);
        QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    }
};

NUBARIA_TEST_MAIN(MainWindowMetaObjectTest)
#include "mainwindowmetaobjecttest.moc"
