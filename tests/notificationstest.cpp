#include "support/failingopen.h"
#include "support/home.h"
#include "support/loglines.h"
#include "support/messageboxes.h"
#include "support/testmain.h"
#include "support/traymessages.h"
#include "support/updateserver.h"
#include "support/window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

/// Every message that the tray icon can show, each caused as a person or the world causes it.
class NotificationsTest final : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void announcesAnAddedTask();
    void announcesARemovedTask();
    void announcesAnUpdatedTask();
    void warnsOfAnUpdateWithoutATask();
    void reportsATaskThatCannotBeWritten();
    void reportsATaskThatCannotBeRead();
    void announcesTasksThatFallDue();
    void confirmsASavedProfile();
    void announcesANewVersion();
    void reportsAFailedUpdateCheck();

private:
    static void compareWith(const QString &title, const QString &text);
    static void selectFirstTask(const MainWindow &window);
};

void NotificationsTest::init()
{
    home::reset();
    traymessages::clear();
}

void NotificationsTest::compareWith(const QString &title, const QString &text)
{
    const QList<TrayMessage> expected = {{title, text, QSystemTrayIcon::Information, 10000, true}};
    QTRY_COMPARE(traymessages::all(), expected);
}

void NotificationsTest::selectFirstTask(const MainWindow &window)
{
    auto *list = widget<QListView>(window, "TaskListView");
    list->setCurrentIndex(list->model()->index(0, 0));
}

void NotificationsTest::announcesAnAddedTask()
{
    const MainWindow window;
    widget<QLineEdit>(window, "TaskTitle")->setText(u"Revisión del año"_s);
    widget<QTextEdit>(window, "TaskDescription")->setPlainText(u"Con acentos"_s);
    widget<QComboBox>(window, "CategoryTaskBox")->setCurrentIndex(1);
    widget<QComboBox>(window, "UrgencyTaskBox")->setCurrentIndex(4);

    widget<QPushButton>(window, "SaveTaskButton")->click();

    compareWith(u"Tarea agregada"_s, u"Una nueva tarea ha sido agregada."_s);
}

void NotificationsTest::announcesARemovedTask()
{
    home::writeTasks({home::record(u"{a}"_s, u"Año %1"_s)});
    const MainWindow window;
    selectFirstTask(window);
    const MessageBoxes boxes(QMessageBox::Yes);

    widget<QPushButton>(window, "FinishTaskBtn")->click();

    compareWith(u"Tarea eliminada"_s, u"La tarea 'Año %1' ha sido eliminada."_s);
}

void NotificationsTest::announcesAnUpdatedTask()
{
    home::writeTasks({home::record(u"{a}"_s, u"Antes"_s)});
    const MainWindow window;
    selectFirstTask(window);
    widget<QLineEdit>(window, "TaskTitleView")->setText(u"Después %1"_s);

    widget<QPushButton>(window, "UpdateTaskBtn")->click();

    compareWith(u"Tarea actualizada"_s, u"La tarea 'Después %1' ha sido actualizada."_s);
}

void NotificationsTest::warnsOfAnUpdateWithoutATask()
{
    const MainWindow window;

    widget<QPushButton>(window, "UpdateTaskBtn")->click();

    compareWith(u"Advertencia"_s, u"Por favor, seleccione una tarea para actualizar."_s);
}

void NotificationsTest::reportsATaskThatCannotBeWritten()
{
    home::writeTasks({home::record(u"{a}"_s, u"Antes"_s)});
    const MainWindow window;
    selectFirstTask(window);
    const FailingOpen failing(O_WRONLY);
    expectFileError("Failed to open file for writing:", FailingOpen::errorString());

    widget<QPushButton>(window, "UpdateTaskBtn")->click();

    compareWith(u"Error"_s, u"Failed to open file for writing: "_s + FailingOpen::errorString());
}

void NotificationsTest::reportsATaskThatCannotBeRead()
{
    home::writeTasks({home::record(u"{a}"_s, u"Antes"_s)});
    const MainWindow window;
    selectFirstTask(window);
    const FailingOpen failing(O_RDWR);
    expectFileError("Failed to open file for reading:", FailingOpen::errorString());

    widget<QPushButton>(window, "UpdateTaskBtn")->click();

    compareWith(u"Error"_s, u"Error el cargar los datos: "_s + FailingOpen::errorString());
}

void NotificationsTest::announcesTasksThatFallDue()
{
    QJsonObject task = home::record(u"{a}"_s, u"Pagar la luz"_s);
    task.insert(u"dateLimit"_s, QDate::currentDate().addDays(2).toString(u"dd-MM-yyyy"));
    home::writeTasks({task});
    MainWindow window;
    widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);

    callSlot(window, "checkTaskReminders");

    compareWith(u"Tareas por vencer"_s, u"Hay 1 tarea(s) por vencer dentro de 2 días:\nPagar la luz"_s);
}

void NotificationsTest::confirmsASavedProfile()
{
    const MainWindow window;
    widget<QPushButton>(window, "SetProfileInfo")->click();

    widget<QPushButton>(window, "SaveProfileInfo")->click();

    compareWith(u"Perfil actualizado"_s, u"La información del perfil ha sido guardada exitosamente."_s);
}

void NotificationsTest::announcesANewVersion()
{
    UpdateServer server;
    server.answerWith(http::response(http::versionDocument("2.0.2028")));

    const MainWindow window;

    compareWith(u"Nueva versión encontrada"_s,
        u"La actualización de la versión V2.0.2028 está disponible para ser instalada."_s);
}

void NotificationsTest::reportsAFailedUpdateCheck()
{
    UpdateServer server;
    server.answerWith(http::response("no es JSON"));

    const MainWindow window;

    compareWith(u"Aviso de actualización"_s, u"Hubo un problema al verificar la actualización."_s);
}

NUBARIA_TEST_MAIN(NotificationsTest)
#include "notificationstest.moc"
