#include "support/home.h"
#include "support/loglines.h"
#include "support/messageboxes.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTextEdit>
#include <QTimer>

#ifndef Q_OS_WIN
#include <sys/resource.h>

#include <csignal>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

#ifndef Q_OS_WIN
/// While it lives, no file of this process grows beyond `bytes`, as on a disk that is full.
class FullDisk final
{
    Q_DISABLE_COPY_MOVE(FullDisk)
public:
    explicit FullDisk(rlim_t bytes)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_limit);
        const rlimit small{bytes, m_limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }

    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_limit);
        static_cast<void>(std::signal(SIGXFSZ, m_handler));
    }

private:
    rlimit m_limit{};
    void (*m_handler)(int) = SIG_DFL;
};
#endif

QJsonArray manyTasks(int count)
{
    QJsonArray tasks;
    for (int i = 0; i < count; ++i) {
        tasks.append(home::record(u"{%1}"_s.arg(i), u"Tarea número %1"_s.arg(i)));
    }
    return tasks;
}

} // namespace

class TaskFileHostileTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void readsEveryBrokenFileAsNoTasks_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("blank") << QByteArray(" \n");
        QTest::newRow("truncated") << QByteArray(R"([{"id": "{a}", "title": "Comprar"}])").chopped(5);
        QTest::newRow("no JSON") << QByteArray("Comprar pan");
        QTest::newRow("an object") << QByteArray(R"({"id": "{a}", "title": "Comprar pan"})");
        QTest::newRow("a text") << QByteArray(R"("Comprar pan")");
        QTest::newRow("a trailing comma") << QByteArray(R"([{"id": "{a}"},])");
        QTest::newRow("text after the array") << QByteArray(R"([{"id": "{a}"}] fin)");
        QTest::newRow("Latin-1") << QByteArray("[{\"id\": \"{a}\", \"title\": \"A\xf1o\"}]");
        QTest::newRow("NUL bytes") << QByteArray(100, '\0');
        QTest::newRow("random bytes") << QByteArray::fromHex("fffe00d8ff7f5b7b225d2c3a9f80c0af");
    }

    void readsEveryBrokenFileAsNoTasks()
    {
        QFETCH(QByteArray, content);
        home::writeBytes(content);
        QTest::failOnWarning(QRegularExpression(u"QJson"_s));

        const MainWindow window;

        QCOMPARE(shownTitles(window), QStringList());
        QVERIFY(widget(window, "TaskAdvise")->isHidden());
        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"0"_s);
        QCOMPARE(home::bytes(), content);
    }

    void showsAndKeepsUnusualTitles_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("100,000 characters") << QString(100000, u'ñ');
        QTest::newRow("several lines") << u"Primera línea\nsegunda línea\r\ntercera"_s;
        QTest::newRow("right-to-left marks") << u"\u202eoiránoc\u202c \u200fשלום"_s;
        QTest::newRow("quotes and escapes") << u"\"Comillas\" 'simples' \\ / \t %1 %2"_s;
        QTest::newRow("NUL") << QString(u"antes"_s + QChar(0) + u"después"_s);
        QTest::newRow("markup") << u"<b>negrita</b> &amp; <img src='x'>"_s;
        QTest::newRow("an unpaired surrogate") << QString(u"antes"_s + QChar(0xd800) + u"después"_s);
        QTest::newRow("emoji") << u"👩‍👩‍👧‍👦 família"_s;
        QTest::newRow("empty") << QString();
    }

    // An update takes the title from the field, so whatever the file holds must come through it whole.
    void showsAndKeepsUnusualTitles()
    {
        QFETCH(QString, title);
        home::writeTasks({home::record(u"{a}"_s, title), home::record(u"{b}"_s, u"Otra"_s)});
        const QString stored = home::tasks().at(0).toObject().value(u"title"_s).toString();
        const MainWindow window;
        QCOMPARE(shownTitles(window), QStringList({stored, u"Otra"_s}));

        selectRow(window, 0);
        click(window, "UpdateTaskBtn");

        QCOMPARE(home::tasks().at(0).toObject().value(u"title"_s).toString(), stored);
        QCOMPARE(
            traymessages::all().constLast().text, u"La tarea '"_s + stored + u"' ha sido actualizada."_s);
    }

    void findsUnusualTitles_data() { showsAndKeepsUnusualTitles_data(); }

    void findsUnusualTitles()
    {
        QFETCH(QString, title);
        home::writeTasks({home::record(u"{a}"_s, title), home::record(u"{b}"_s, u"zzz"_s)});
        const QString stored = home::tasks().at(0).toObject().value(u"title"_s).toString();
        MainWindow window;

        callSlot(window, "filterTasks", stored.first(qMin(stored.size(), 5)));

        QCOMPARE(shownTitles(window).constFirst(), stored);
    }

    void takesValuesOfWrongTypesForEmpty()
    {
        home::writeBytes(R"([{"id": "{a}", "title": 7, "description": null, "category": [], "dateLimit": {},
                          "urgency": true}, "texto", 5, null, [1, 2], {}])");
        QTest::ignoreMessage(QtInfoMsg, "rmc.json: se repararon ids faltantes en tareas antiguas.");
        MainWindow window;
        QCOMPARE(shownTitles(window), QStringList({{}, {}, {}, {}, {}, {}}));

        selectRow(window, 0);

        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), QString());
        QCOMPARE(widget<QTextEdit>(window, "TaskDescriptionView")->toPlainText(), QString());
        QCOMPARE(widget<QComboBox>(window, "CategoryTaskBoxView")->currentIndex(), -1);
        callSlot(window, "orderTasks", 1);
        callSlot(window, "orderTasks", 2);
        callSlot(window, "checkTaskReminders");
        QCOMPARE(shownTitles(window).size(), 6);
    }

    void survivesDeeplyNestedContent()
    {
        home::writeBytes(QByteArray(2'000'000, '['));

        const MainWindow window;

        QCOMPARE(shownTitles(window), QStringList());
    }

    void worksOnAHundredThousandTasks()
    {
        const int count = 100'000;
        home::writeTasks(manyTasks(count));
        MainWindow window;
        QCOMPARE(shownTitles(window).size(), count);

        callSlot(window, "filterTasks", u"NÚMERO 99999"_s);
        QCOMPARE(shownTitles(window), QStringList({u"Tarea número 99999"_s}));
        selectRow(window, 0);
        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), u"Tarea número 99999"_s);
        callSlot(window, "orderTasks", 1);
        QCOMPARE(shownTitles(window).at(1), u"Tarea número 1"_s);

        selectRow(window, count - 1);
        widget<QLineEdit>(window, "TaskTitleView")->setText(u"Cambiada"_s);
        click(window, "UpdateTaskBtn");

        QCOMPARE(home::tasks().size(), count);
        QCOMPARE(shownTitles(window).count(u"Cambiada"_s), 1);
        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 100000"_s);
    }

#ifndef Q_OS_WIN

    void leavesAnEmptyFileAndNoMessageWhenTheDiskIsFull()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Comprar pan"_s)});
        const MainWindow window;
        selectRow(window, 0);
        const MessageBoxes boxes;
        {
            const FullDisk full(0);
            click(window, "UpdateTaskBtn");
        }

        QCOMPARE(home::bytes(), QByteArray());
        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(traymessages::all().size(), 1);
        QCOMPARE(traymessages::all().constFirst().title, u"Tarea actualizada"_s);
    }

#endif

    void startsWithADirectoryInTheTaskFilesPlace()
    {
        home::blockTaskFile();
        expectFileError("No se pudo abrir rmc.json para reparar ids:", home::openError(QIODevice::ReadOnly));
        expectFileError("Failed to open file for reading:", home::openError(QIODevice::ReadOnly));
        const MessageBoxes boxes;

        const MainWindow window;

        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(boxes.shown().constFirst().text,
            u"Error al cargar el dato: "_s + home::openError(QIODevice::ReadOnly));
        QVERIFY(!widget(window, "TaskAdvise")->isHidden());
        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"0"_s);
    }

    void obeysTheTrayMenuWhileTheStartReportsAFailure()
    {
        home::blockTaskFile();
        expectFileError("No se pudo abrir rmc.json para reparar ids:", home::openError(QIODevice::ReadOnly));
        expectFileError("Failed to open file for reading:", home::openError(QIODevice::ReadOnly));
        bool triggered = false;
        QTimer::singleShot(0, qApp, [&triggered] {
            const QWidget *box = QApplication::activeModalWidget();
            for (QAction *action : box->parentWidget()->findChildren<QAction *>()) {
                if (action->text() == "Ajustes"_L1) {
                    action->trigger();
                    triggered = true;
                }
            }
        });
        const MessageBoxes boxes;

        const MainWindow window;

        QVERIFY(triggered);
        QCOMPARE(boxes.shown().size(), 1);
        QVERIFY(!widget(window, "TasksPage")->isHidden());
    }

    void startsWithEveryPreferenceOfTheWrongType()
    {
        for (const QString &key : {u"simpleNotify"_s, u"advancedNotify"_s, u"changeClose"_s,
                 u"textEmphasis"_s, u"displayMessageIndex"_s, u"firstName"_s, u"email"_s,
                 u"profilePicturePath"_s, u"lastActivityDate"_s}) {
            home::setPreference(key, QVariantMap{{u"clave"_s, 1}});
        }
        home::setThemePreference(u"colorIndex"_s, QByteArray::fromHex("00ff"));

        const MainWindow window;

        QVERIFY(!widget<QAbstractButton>(window, "SimpleNotify")->isChecked());
        QVERIFY(!widget<QAbstractButton>(window, "AdvancedNotify")->isChecked());
        QVERIFY(!widget<QAbstractButton>(window, "changeClose")->isChecked());
        QCOMPARE(widget<QComboBox>(window, "ChangeColorTheme")->currentIndex(), 0);
        QCOMPARE(widget<QComboBox>(window, "ChangeTextTheme")->currentIndex(), 0);
        QCOMPARE(widget<QComboBox>(window, "DisplayMessage")->currentIndex(), 0);
        QCOMPARE(widget<QLineEdit>(window, "UserName")->text(), u"Invitado(a)"_s);
    }
};

NUBARIA_TEST_MAIN(TaskFileHostileTest)
#include "taskfilehostiletest.moc"
