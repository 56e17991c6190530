#include "support/failingopen.h"
#include "support/home.h"
#include "support/loglines.h"
#include "support/messageboxes.h"
#include "support/taskform.h"
#include "support/traymessages.h"
#include "support/updateserver.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

/// Every message that the tray icon can show, each caused as a person or the world causes it.
class ReportsNotificationsTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void announcesAnAddedTask()
    {
        const MainWindow window;
        fillForm(window);

        click(window, "SaveTaskButton");

        compareWith(u"Tarea agregada"_s, u"Una nueva tarea ha sido agregada."_s);
    }

    void announcesARemovedTask()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Año %1"_s)});
        const MainWindow window;
        selectRow(window, 0);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, "FinishTaskBtn");

        compareWith(u"Tarea eliminada"_s, u"La tarea 'Año %1' ha sido eliminada."_s);
    }

    void announcesAnUpdatedTask()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Antes"_s)});
        const MainWindow window;
        selectRow(window, 0);
        widget<QLineEdit>(window, "TaskTitleView")->setText(u"Después %1"_s);

        click(window, "UpdateTaskBtn");

        compareWith(u"Tarea actualizada"_s, u"La tarea 'Después %1' ha sido actualizada."_s);
    }

    void warnsOfAnUpdateWithoutATask()
    {
        const MainWindow window;

        click(window, "UpdateTaskBtn");

        compareWith(u"Advertencia"_s, u"Por favor, seleccione una tarea para actualizar."_s);
    }

    void reportsATaskFileThatCannotBeOpened_data()
    {
        QTest::addColumn<int>("failingMode");
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<QString>("text");
        QTest::newRow("for reading and writing")
            << O_RDWR << QByteArray("Failed to open file for reading:") << u"Error el cargar los datos: "_s;
        QTest::newRow("for writing") << O_WRONLY << QByteArray("Failed to open file for writing:")
                                     << u"Failed to open file for writing: "_s;
    }

    void reportsATaskFileThatCannotBeOpened()
    {
        QFETCH(int, failingMode);
        QFETCH(QByteArray, log);
        QFETCH(QString, text);
        home::writeTasks({home::record(u"{a}"_s, u"Antes"_s)});
        const MainWindow window;
        selectRow(window, 0);
        const FailingOpen failing(failingMode);
        expectFileError(log.constData(), FailingOpen::errorString());

        click(window, "UpdateTaskBtn");

        compareWith(u"Error"_s, text + FailingOpen::errorString());
    }

    void announcesTasksThatFallDue()
    {
        QJsonObject task = home::record(u"{a}"_s, u"Pagar la luz"_s);
        task.insert(u"dateLimit"_s, QDate::currentDate().addDays(2).toString(u"dd-MM-yyyy"));
        home::writeTasks({task});
        MainWindow window;
        widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);

        callSlot(window, "checkTaskReminders");

        compareWith(u"Tareas por vencer"_s, u"Hay 1 tarea(s) por vencer dentro de 2 días:\nPagar la luz"_s);
    }

    void confirmsASavedProfile()
    {
        const MainWindow window;
        click(window, "SetProfileInfo");

        click(window, "SaveProfileInfo");

        compareWith(u"Perfil actualizado"_s, u"La información del perfil ha sido guardada exitosamente."_s);
    }

    void announcesANewVersion()
    {
        UpdateServer server;
        server.answerWith(http::response(http::versionDocument("2.0.2028")));

        const MainWindow window;

        compareWith(u"Nueva versión encontrada"_s,
            u"La actualización de la versión V2.0.2028 está disponible para ser instalada."_s);
    }

    void reportsAFailedUpdateCheck()
    {
        UpdateServer server;
        server.answerWith(http::response("no es JSON"));

        const MainWindow window;

        compareWith(u"Aviso de actualización"_s, u"Hubo un problema al verificar la actualización."_s);
    }

private:
    static void compareWith(const QString &title, const QString &text)
    {
        const QList<TrayMessage> expected = {{title, text, QSystemTrayIcon::Information, 10000, true}};
        QTRY_COMPARE(traymessages::all(), expected);
    }
};

NUBARIA_TEST_MAIN(ReportsNotificationsTest)
#include "reportsnotificationstest.moc"
