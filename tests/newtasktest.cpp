#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/testmain.h"
#include "support/traymessages.h"
#include "support/window.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTextEdit>
#include <QVariantAnimation>

using namespace Qt::Literals::StringLiterals;

namespace {

void fillForm(const MainWindow &window, const QString &title = u"Comprar piñón"_s)
{
    widget<QLineEdit>(window, "TaskTitle")->setText(title);
    widget<QTextEdit>(window, "TaskDescription")->setPlainText(u"Medio kilo"_s);
    widget<QComboBox>(window, "CategoryTaskBox")->setCurrentIndex(1);
    widget<QDateEdit>(window, "DateLimitTask")->setDate(QDate(2031, 3, 5));
    widget<QComboBox>(window, "UrgencyTaskBox")->setCurrentIndex(3);
}

bool isFormAsFilled(const MainWindow &window)
{
    return widget<QLineEdit>(window, "TaskTitle")->text() == u"Comprar piñón"_s
        && widget<QTextEdit>(window, "TaskDescription")->toPlainText() == u"Medio kilo"_s
        && widget<QComboBox>(window, "CategoryTaskBox")->currentIndex() == 1
        && widget<QDateEdit>(window, "DateLimitTask")->date() == QDate(2031, 3, 5)
        && widget<QComboBox>(window, "UrgencyTaskBox")->currentIndex() == 3;
}

void click(const MainWindow &window, const char *button)
{
    widget<QAbstractButton>(window, button)->click();
}

QLabel *advice(const MainWindow &window)
{
    return widget<QLabel>(window, "TaskAdvise");
}

// Slides begun before are over when this one, as long as they are and begun last, is.
bool waitForSlides()
{
    QVariantAnimation last;
    last.setStartValue(0);
    last.setEndValue(1);
    last.setDuration(250);
    QSignalSpy finished(&last, &QVariantAnimation::finished);
    last.start();
    return finished.wait();
}

// Keeps whether a widget was shown or hidden, also where its page is not visible.
class ShowsAndHides final : public QObject
{
    Q_OBJECT
public:
    explicit ShowsAndHides(QWidget *watched) { watched->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent) {
            kept.append(event->type() == QEvent::ShowToParent ? u"show"_s : u"hide"_s);
        }
        return QObject::eventFilter(watched, event);
    }

    QStringList kept;
};

} // namespace

class NewTaskTest final : public QObject
{
    Q_OBJECT

    static void compareOnlyBox(const MessageBoxes &boxes, const QString &text);
    void note(const MainWindow &window, const QString &step);

    QStringList m_steps;

private slots:
    void init()
    {
        home::reset();
        traymessages::clear();
        m_steps.clear();
    }

    void theFirstTaskMakesTheFile();
    void aTaskHoldsSixTextsAndABracedUuid();
    void storesTheChosenTexts_data();
    void storesTheChosenTexts();
    void textsAreStoredAsTyped();
    void aDueDateInThePastIsAccepted();
    void appendsAfterTheTasksOfTheFile();
    void equalTasksGetDifferentIds();
    void replacesAFileThatHoldsNoArray_data();
    void replacesAFileThatHoldsNoArray();

    void showsAllTasksInFileOrder();
    void theNewRowDesignatesTheNewTask();
    void showsTheTasksPage();
    void leavesTheOtherPagesAndButtonsAlone();
    void doesNotSlideTheDetailPanel();
    void refreshesTheStatistics();
    void theNoticeIsGivenWhereWanted_data();
    void theNoticeIsGivenWhereWanted();
    void hidesTheAdvice();
    void showsTheAdviceWhileTheFirstFileIsMade();
    void hidesTheAdviceOnceTheFileWasRead();
    void actsInOrder();

    void aFileThatCannotBeMadeIsReported();
    void aFileThatCannotBeReadIsReported_data();
    void aFileThatCannotBeReadIsReported();
    void aFileThatCannotBeWrittenIsReported();
    void aFailureKeepsFormPageAndList_data();
    void aFailureKeepsFormPageAndList();
};

void NewTaskTest::compareOnlyBox(const MessageBoxes &boxes, const QString &text)
{
    QCOMPARE(boxes.shown().size(), 1);
    const ShownBox box = boxes.shown().constFirst();
    QCOMPARE(box.title, u"Error"_s);
    QCOMPARE(box.text, text);
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QVERIFY(box.hasParent);
}

void NewTaskTest::note(const MainWindow &window, const QString &step)
{
    m_steps.append(u"%1 (tasks %2, rows %3, notices %4, %5)"_s.arg(step)
                       .arg(home::tasks().size())
                       .arg(shownTitles(window).size())
                       .arg(traymessages::all().size())
                       .arg(widget<QLabel>(window, "SavedTasks")->text()));
}

void NewTaskTest::theFirstTaskMakesTheFile()
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

void NewTaskTest::aTaskHoldsSixTextsAndABracedUuid()
{
    const MainWindow window;
    fillForm(window);

    click(window, "SaveTaskButton");

    const QJsonObject record = home::tasks().first().toObject();
    QCOMPARE(record.keys(),
        (QStringList{u"category"_s, u"dateLimit"_s, u"description"_s, u"id"_s, u"title"_s, u"urgency"_s}));
    for (const auto &value : record) {
        QVERIFY(value.isString());
    }
    static const QRegularExpression uuid(
        u"^\\{[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\\}$"_s);
    QVERIFY(uuid.match(record[u"id"_s].toString()).hasMatch());
}

void NewTaskTest::storesTheChosenTexts_data()
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

void NewTaskTest::storesTheChosenTexts()
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

void NewTaskTest::textsAreStoredAsTyped()
{
    const MainWindow window;
    fillForm(window, u"  ¿Añadir \"índice\"?  "_s);
    widget<QTextEdit>(window, "TaskDescription")->setPlainText(u"\n <b>uno</b>\n\tdos \n"_s);

    click(window, "SaveTaskButton");

    const QJsonValue record = home::tasks().first();
    QCOMPARE(record["title"_L1].toString(), u"  ¿Añadir \"índice\"?  "_s);
    QCOMPARE(record["description"_L1].toString(), u"\n <b>uno</b>\n\tdos \n"_s);
}

void NewTaskTest::aDueDateInThePastIsAccepted()
{
    const MainWindow window;
    fillForm(window);
    widget<QDateEdit>(window, "DateLimitTask")->setDate(QDate(1999, 12, 31));
    const MessageBoxes boxes;

    click(window, "SaveTaskButton");

    QCOMPARE(boxes.shown().size(), 0);
    QCOMPARE(home::tasks().first()["dateLimit"_L1].toString(), u"31-12-1999"_s);
}

void NewTaskTest::appendsAfterTheTasksOfTheFile()
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

void NewTaskTest::equalTasksGetDifferentIds()
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

void NewTaskTest::replacesAFileThatHoldsNoArray_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("no JSON") << QByteArray("lista de tareas");
    QTest::newRow("truncated") << QByteArray(R"([{"title": "uno"}, {)");
    QTest::newRow("object") << QByteArray(R"({"title": "uno"})");
    QTest::newRow("nothing") << QByteArray();
}

void NewTaskTest::replacesAFileThatHoldsNoArray()
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

void NewTaskTest::showsAllTasksInFileOrder()
{
    home::writeTasks({home::record(u"{b}"_s, u"zeta"_s), home::record(u"{a}"_s, u"alfa"_s)});
    const MainWindow window;
    widget<QComboBox>(window, "OrderNotesBy")->setCurrentText(u"Titulo"_s);
    widget<QLineEdit>(window, "SearchTask")->setText(u"alfa"_s);
    fillForm(window);

    click(window, "SaveTaskButton");

    QCOMPARE(shownTitles(window), (QStringList{u"zeta"_s, u"alfa"_s, u"Comprar piñón"_s}));
    QCOMPARE(widget<QComboBox>(window, "OrderNotesBy")->currentText(), u"Titulo"_s);
    QCOMPARE(widget<QLineEdit>(window, "SearchTask")->text(), u"alfa"_s);
}

void NewTaskTest::theNewRowDesignatesTheNewTask()
{
    home::writeTasks({home::record(u"{a}"_s, u"Comprar piñón"_s)});
    const MainWindow window;
    fillForm(window);

    click(window, "SaveTaskButton");
    auto *list = widget<QListView>(window, "TaskListView");
    list->setCurrentIndex(list->model()->index(1, 0));

    QCOMPARE(widget<QTextEdit>(window, "TaskDescriptionView")->toPlainText(), u"Medio kilo"_s);
    list->setCurrentIndex(list->model()->index(0, 0));
    QCOMPARE(
        widget<QTextEdit>(window, "TaskDescriptionView")->toPlainText(), u"Descripción de Comprar piñón"_s);
}

void NewTaskTest::showsTheTasksPage()
{
    MainWindow window;
    click(window, "NewTaskViewButton");
    widget(window, "ProfilePage")->setVisible(true);
    fillForm(window);

    click(window, "SaveTaskButton");

    QVERIFY(widget<QAbstractButton>(window, "TaskViewButton")->isChecked());
    QVERIFY(!widget<QAbstractButton>(window, "NewTaskViewButton")->isChecked());
    QVERIFY(!widget(window, "TasksPage")->isHidden());
    QVERIFY(widget(window, "NewTasksPage")->isHidden());
    QVERIFY(widget(window, "ProfilePage")->isHidden());
}

void NewTaskTest::leavesTheOtherPagesAndButtonsAlone()
{
    const MainWindow window;
    click(window, "SettingsViewButton");
    widget(window, "PatchPage")->setVisible(true);
    fillForm(window);

    click(window, "SaveTaskButton");

    QVERIFY(widget<QAbstractButton>(window, "SettingsViewButton")->isChecked());
    QVERIFY(!widget(window, "SettingsPage")->isHidden());
    QVERIFY(!widget(window, "PatchPage")->isHidden());
}

void NewTaskTest::doesNotSlideTheDetailPanel()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    auto *list = widget<QListView>(window, "TaskListView");
    list->setCurrentIndex(list->model()->index(0, 0));
    QTRY_COMPARE(widget(window, "TaskDetail")->geometry(), QRect(0, 0, 1010, 700));
    fillForm(window);

    click(window, "SaveTaskButton");

    QVERIFY(waitForSlides());
    QCOMPARE(widget(window, "TaskDetail")->geometry(), QRect(0, 0, 1010, 700));
}

void NewTaskTest::refreshesTheStatistics()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    fillForm(window);
    widget<QTextEdit>(window, "TaskDescription")->setPlainText(QString(1000, u'a'));

    click(window, "SaveTaskButton");

    QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 2"_s);
    QCOMPARE(home::bytes().size(), 1424);
    QCOMPARE(widget<QLabel>(window, "StorageFile")->text(), u"Tamaño de almacenamiento ocupado: 1.39 KB"_s);
}

void NewTaskTest::theNoticeIsGivenWhereWanted_data()
{
    QTest::addColumn<bool>("wanted");
    QTest::newRow("wanted") << true;
    QTest::newRow("not wanted") << false;
}

void NewTaskTest::theNoticeIsGivenWhereWanted()
{
    QFETCH(bool, wanted);
    const MainWindow window;
    widget<QCheckBox>(window, "SimpleNotify")->setChecked(wanted);
    fillForm(window);

    click(window, "SaveTaskButton");

    const TrayMessage notice{u"Tarea agregada"_s, u"Una nueva tarea ha sido agregada."_s,
        QSystemTrayIcon::Information, 10000, true};
    QCOMPARE(home::tasks().size(), 1);
    QVERIFY(traymessages::all() == (wanted ? QList{notice} : QList<TrayMessage>()));
}

void NewTaskTest::hidesTheAdvice()
{
    const MainWindow window;
    QVERIFY(!advice(window)->isHidden());
    fillForm(window);

    click(window, "SaveTaskButton");

    QVERIFY(advice(window)->isHidden());
}

void NewTaskTest::showsTheAdviceWhileTheFirstFileIsMade()
{
    const MainWindow window;
    advice(window)->hide();
    const ShowsAndHides seen(advice(window));
    fillForm(window);

    click(window, "SaveTaskButton");

    QCOMPARE(seen.kept, (QStringList{u"show"_s, u"hide"_s}));
}

void NewTaskTest::hidesTheAdviceOnceTheFileWasRead()
{
    const MainWindow window;
    home::writeBytes("[]");
    const ShowsAndHides seen(advice(window));
    fillForm(window);
    const MessageBoxes boxes;
    const FailingOpen failing(O_WRONLY);
    QTest::ignoreMessage(QtCriticalMsg, "Error al abrir el archivo: \"Permission denied\"");

    click(window, "SaveTaskButton");

    QCOMPARE(seen.kept, (QStringList{u"hide"_s, u"show"_s}));
}

void NewTaskTest::actsInOrder()
{
    const MainWindow window;
    click(window, "NewTaskViewButton");
    fillForm(window);
    const MainWindow *const shown = &window;
    connect(widget<QListView>(window, "TaskListView")->model(), &QAbstractItemModel::modelReset, this,
        [this, shown] { note(*shown, u"list"_s); });
    connect(widget<QLineEdit>(window, "TaskTitle"), &QLineEdit::textChanged, this,
        [this, shown] { note(*shown, u"form"_s); });
    connect(widget<QAbstractButton>(window, "TaskViewButton"), &QAbstractButton::toggled, this,
        [this, shown] { note(*shown, u"page"_s); });

    click(window, "SaveTaskButton");

    QCOMPARE(m_steps,
        (QStringList{u"list (tasks 1, rows 1, notices 0, 0)"_s, u"form (tasks 1, rows 1, notices 0, 0)"_s,
            u"page (tasks 1, rows 1, notices 1, Tareas guardadas: 1)"_s}));
}

void NewTaskTest::aFileThatCannotBeMadeIsReported()
{
    const MainWindow window;
    advice(window)->hide();
    fillForm(window);
    const MessageBoxes boxes;
    const FailingOpen failing(O_WRONLY);
    QTest::ignoreMessage(QtCriticalMsg, "Hubo un error al crear el archivo: \"Permission denied\"");

    click(window, "SaveTaskButton");

    compareOnlyBox(boxes, u"Hubo un error al crear el archivo: Permission denied"_s);
    QVERIFY(!advice(window)->isHidden());
    QVERIFY(!QFile::exists(home::taskFile()));
}

void NewTaskTest::aFileThatCannotBeReadIsReported_data()
{
    QTest::addColumn<bool>("adviceHidden");
    QTest::newRow("hidden advice stays hidden") << true;
    QTest::newRow("shown advice stays shown") << false;
}

void NewTaskTest::aFileThatCannotBeReadIsReported()
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

    compareOnlyBox(boxes, u"Error al abrir el archivo: Permission denied"_s);
    QCOMPARE(advice(window)->isHidden(), adviceHidden);
    QCOMPARE(home::bytes(), bytes);
}

void NewTaskTest::aFileThatCannotBeWrittenIsReported()
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

    compareOnlyBox(boxes, u"Error al abrir el archivo: Permission denied"_s);
    QVERIFY(!advice(window)->isHidden());
    QCOMPARE(home::bytes(), bytes);
}

void NewTaskTest::aFailureKeepsFormPageAndList_data()
{
    QTest::addColumn<bool>("filePresent");
    QTest::addColumn<int>("failingMode");
    QTest::addColumn<QByteArray>("log");
    QTest::newRow("not made") << false << O_WRONLY << QByteArray("Hubo un error al crear el archivo:");
    QTest::newRow("not read") << true << O_RDONLY << QByteArray("Error al abrir el archivo:");
    QTest::newRow("not written") << true << O_WRONLY << QByteArray("Error al abrir el archivo:");
}

void NewTaskTest::aFailureKeepsFormPageAndList()
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

    QVERIFY(isFormAsFilled(window));
    QVERIFY(widget<QAbstractButton>(window, "NewTaskViewButton")->isChecked());
    QVERIFY(!widget(window, "NewTasksPage")->isHidden());
    QVERIFY(widget(window, "TasksPage")->isHidden());
    QCOMPARE(shownTitles(window), titles);
    QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), savedTasks);
    QCOMPARE(traymessages::all().size(), 0);
}

NUBARIA_TEST_MAIN(NewTaskTest)
#include "newtasktest.moc"
