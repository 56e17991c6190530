#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/taskform.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QLabel>
#include <QRegularExpression>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

/// What a saved task leaves in the file, and what comes of a file that cannot be opened.
class NewTaskTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void theFirstTaskMakesTheFile()
    {
        const MainWindow window;
        fillForm(window);

        click(window, "SaveTaskButton");

        const QByteArray id = home::tasks().first()["id"_L1].toString().toLatin1();
        QCOMPARE(home::bytes(),
            "[\n"
            "    {\n"
            "        \"category\": \"Trabajo\",\n"
            "        \"dateLimit\": \"05-03-2031\",\n"
            "        \"description\": \"Medio kilo\",\n"
            "        \"id\": \""
                + id
                + "\",\n"
                  "        \"title\": \"Comprar piñón\",\n"
                  "        \"urgency\": \"Alta\"\n"
                  "    }\n"
                  "]\n");
    }

    void aTaskHoldsSixTextsAndABracedUuid()
    {
        const MainWindow window;
        fillForm(window);

        click(window, "SaveTaskButton");

        const QJsonObject record = home::tasks().first().toObject();
        QCOMPARE(record.keys(),
            (QStringList{
                u"category"_s, u"dateLimit"_s, u"description"_s, u"id"_s, u"title"_s, u"urgency"_s}));
        for (const auto &value : record) {
            QVERIFY(value.isString());
        }
        static const QRegularExpression uuid(
            u"^\\{[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\\}$"_s);
        QVERIFY(uuid.match(record[u"id"_s].toString()).hasMatch());
    }

    void storesTheChosenTexts_data()
    {
        QTest::addColumn<int>("category");
        QTest::addColumn<QString>("categoryText");
        QTest::addColumn<int>("urgency");
        QTest::addColumn<QString>("urgencyText");
        QTest::newRow("first of each") << 0 << u"Personal"_s << 0 << u"Muy baja"_s;
        QTest::newRow("second of each") << 1 << u"Trabajo"_s << 1 << u"Baja"_s;
        QTest::newRow("third of each") << 2 << u"Escuela"_s << 2 << u"Media"_s;
        QTest::newRow("fourth of each") << 3 << u"Otro"_s << 3 << u"Alta"_s;
        QTest::newRow("last of each") << 3 << u"Otro"_s << 4 << u"Urgente"_s;
    }

    void storesTheChosenTexts()
    {
        QFETCH(int, category);
        QFETCH(QString, categoryText);
        QFETCH(int, urgency);
        QFETCH(QString, urgencyText);
        const MainWindow window;
        fillForm(window);
        widget<QComboBox>(window, "CategoryTaskBox")->setCurrentIndex(category);
        widget<QComboBox>(window, "UrgencyTaskBox")->setCurrentIndex(urgency);

        click(window, "SaveTaskButton");

        const QJsonValue record = home::tasks().first();
        QCOMPARE(record["category"_L1].toString(), categoryText);
        QCOMPARE(record["urgency"_L1].toString(), urgencyText);
    }

    void textsAreStoredAsTyped()
    {
        const MainWindow window;
        fillForm(window, u"  ¿Añadir \"índice\"?  "_s);
        widget<QTextEdit>(window, "TaskDescription")->setPlainText(u"\n <b>uno</b>\n\tdos \n"_s);

        click(window, "SaveTaskButton");

        const QJsonValue record = home::tasks().first();
        QCOMPARE(record["title"_L1].toString(), u"  ¿Añadir \"índice\"?  "_s);
        QCOMPARE(record["description"_L1].toString(), u"\n <b>uno</b>\n\tdos \n"_s);
    }

    void aTitleOfAnyLengthIsStoredWhole()
    {
        const MainWindow window;
        const QString title = QString(99'999, u'ñ') + u'!';
        fillForm(window, title);

        click(window, "SaveTaskButton");

        QCOMPARE(home::tasks().first()["title"_L1].toString(), title);
    }

    void aDueDateInThePastIsAccepted()
    {
        const MainWindow window;
        fillForm(window);
        widget<QDateEdit>(window, "DateLimitTask")->setDate(QDate(1999, 12, 31));
        const MessageBoxes boxes;

        click(window, "SaveTaskButton");

        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(home::tasks().first()["dateLimit"_L1].toString(), u"31-12-1999"_s);
    }

    void appendsAfterTheTasksOfTheFile()
    {
        const MainWindow window;
        QJsonObject withExtras = home::record(u"{a}"_s, u"uno"_s);
        withExtras.insert(u"notes"_s, 3);
        const QJsonArray before{withExtras, u"no object"_s, home::record(u"{b}"_s, u"dos"_s)};
        home::writeTasks(before);
        fillForm(window);

        click(window, "SaveTaskButton");

        QJsonArray tasks = home::tasks();
        QCOMPARE(tasks.takeAt(3)["title"_L1].toString(), u"Comprar piñón"_s);
        QCOMPARE(tasks, before);
    }

    void equalTasksGetDifferentIds()
    {
        const MainWindow window;

        for (int i = 0; i < 2; ++i) {
            fillForm(window);
            click(window, "SaveTaskButton");
        }

        const QJsonArray tasks = home::tasks();
        QCOMPARE(tasks.size(), 2);
        QCOMPARE(tasks[0]["title"_L1], tasks[1]["title"_L1]);
        QVERIFY(tasks[0]["id"_L1] != tasks[1]["id"_L1]);
    }

    void replacesAFileThatHoldsNoArray_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("no JSON") << QByteArray("lista de tareas");
        QTest::newRow("truncated") << QByteArray(R"([{"title": "uno"}, {)");
        QTest::newRow("object") << QByteArray(R"({"title": "uno"})");
        QTest::newRow("nothing") << QByteArray();
    }

    void replacesAFileThatHoldsNoArray()
    {
        QFETCH(QByteArray, bytes);
        home::writeBytes(bytes);
        const MainWindow window;
        fillForm(window);
        const MessageBoxes boxes;

        click(window, "SaveTaskButton");

        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(home::tasks().size(), 1);
        QCOMPARE(home::tasks().first()["title"_L1].toString(), u"Comprar piñón"_s);
        QCOMPARE(shownTitles(window), QStringList{u"Comprar piñón"_s});
    }

    void aFileThatCannotBeMadeIsReported()
    {
        const MainWindow window;
        advice(window)->hide();
        fillForm(window);
        const MessageBoxes boxes;
        const FailingOpen failing(O_WRONLY);
        QTest::ignoreMessage(QtCriticalMsg, "Hubo un error al crear el archivo: \"Permission denied\"");

        click(window, "SaveTaskButton");

        compareOnlyBox(boxes, QMessageBox::Critical, u"Error"_s,
            u"Hubo un error al crear el archivo: Permission denied"_s);
        QVERIFY(!advice(window)->isHidden());
        QVERIFY(!QFile::exists(home::taskFile()));
    }

    void aFileThatCannotBeReadIsReported_data()
    {
        QTest::addColumn<bool>("adviceHidden");
        QTest::newRow("hidden advice stays hidden") << true;
        QTest::newRow("shown advice stays shown") << false;
    }

    void aFileThatCannotBeReadIsReported()
    {
        QFETCH(bool, adviceHidden);
        const MainWindow window;
        const QByteArray bytes = R"([{"id":"{a}"}])";
        home::writeBytes(bytes);
        advice(window)->setHidden(adviceHidden);
        fillForm(window);
        const MessageBoxes boxes;
        {
            const FailingOpen failing(O_RDONLY);
            QTest::ignoreMessage(QtCriticalMsg, "Error al abrir el archivo: \"Permission denied\"");
            click(window, "SaveTaskButton");
        }

        compareOnlyBox(
            boxes, QMessageBox::Critical, u"Error"_s, u"Error al abrir el archivo: Permission denied"_s);
        QCOMPARE(advice(window)->isHidden(), adviceHidden);
        QCOMPARE(home::bytes(), bytes);
    }

    void aFileThatCannotBeWrittenIsReported()
    {
        const QByteArray bytes = R"([{"id":"{a}"}])";
        home::writeBytes(bytes);
        const MainWindow window;
        QVERIFY(advice(window)->isHidden());
        fillForm(window);
        const MessageBoxes boxes;
        const FailingOpen failing(O_WRONLY);
        QTest::ignoreMessage(QtCriticalMsg, "Error al abrir el archivo: \"Permission denied\"");

        click(window, "SaveTaskButton");

        compareOnlyBox(
            boxes, QMessageBox::Critical, u"Error"_s, u"Error al abrir el archivo: Permission denied"_s);
        QVERIFY(!advice(window)->isHidden());
        QCOMPARE(home::bytes(), bytes);
    }

    void aFailureKeepsFormPageAndList_data()
    {
        QTest::addColumn<bool>("filePresent");
        QTest::addColumn<int>("failingMode");
        QTest::addColumn<QByteArray>("log");
        QTest::newRow("not made") << false << O_WRONLY << QByteArray("Hubo un error al crear el archivo:");
        QTest::newRow("not read") << true << O_RDONLY << QByteArray("Error al abrir el archivo:");
        QTest::newRow("not written") << true << O_WRONLY << QByteArray("Error al abrir el archivo:");
    }

    void aFailureKeepsFormPageAndList()
    {
        QFETCH(bool, filePresent);
        QFETCH(int, failingMode);
        QFETCH(QByteArray, log);
        if (filePresent) {
            home::writeBytes(R"([{"id":"{a}","title":"uno"}])");
        }
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window);
        const QStringList titles = shownTitles(window);
        const QString savedTasks = widget<QLabel>(window, "SavedTasks")->text();
        const MessageBoxes boxes;
        const FailingOpen failing(failingMode);
        QTest::ignoreMessage(QtCriticalMsg, (log + " \"Permission denied\"").constData());

        click(window, "SaveTaskButton");

        QCOMPARE(formTexts(window), filledTexts());
        QVERIFY(widget<QAbstractButton>(window, "NewTaskViewButton")->isChecked());
        QVERIFY(!widget(window, "NewTasksPage")->isHidden());
        QVERIFY(widget(window, "TasksPage")->isHidden());
        QCOMPARE(shownTitles(window), titles);
        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), savedTasks);
        QCOMPARE(traymessages::all().size(), 0);
    }
};

NUBARIA_TEST_MAIN(NewTaskTest)
#include "newtasktest.moc"
