#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/taskform.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

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
            Q_EMIT happened(kept.constLast());
        }
        return QObject::eventFilter(watched, event);
    }

    QStringList kept;

Q_SIGNALS:
    void happened(const QString &what);
};

} // namespace

/// What the window does once a new task is saved.
class NewTaskEffectsTest final : public WindowTest
{
    Q_OBJECT

    void note(const MainWindow &window, const QString &step)
    {
        m_steps.append(u"%1 (tasks %2, rows %3, notices %4, %5)"_s.arg(step)
                           .arg(home::tasks().size())
                           .arg(shownTitles(window).size())
                           .arg(traymessages::all().size())
                           .arg(widget<QLabel>(window, "SavedTasks")->text()));
    }

    QStringList m_steps;

private slots:
    void init()
    {
        WindowTest::init();
        m_steps.clear();
    }

    void showsAllTasksInFileOrder()
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

    void theNewRowDesignatesTheNewTask()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Comprar piñón"_s)});
        const MainWindow window;
        fillForm(window);

        click(window, "SaveTaskButton");
        selectRow(window, 1);

        QCOMPARE(widget<QTextEdit>(window, "TaskDescriptionView")->toPlainText(), u"Medio kilo"_s);
        selectRow(window, 0);
        QCOMPARE(widget<QTextEdit>(window, "TaskDescriptionView")->toPlainText(),
            u"Descripción de Comprar piñón"_s);
    }

    void showsTheTasksPage()
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

    void leavesTheOtherPagesAndButtonsAlone()
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

    void doesNotSlideTheDetailPanel()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);
        fillForm(window);

        click(window, "SaveTaskButton");

        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), openPanel);
    }

    void refreshesTheStatistics()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        fillForm(window);
        widget<QTextEdit>(window, "TaskDescription")->setPlainText(QString(1000, u'a'));

        click(window, "SaveTaskButton");

        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"Tareas guardadas: 2"_s);
        QCOMPARE(home::bytes().size(), 1424);
        QCOMPARE(
            widget<QLabel>(window, "StorageFile")->text(), u"Tamaño de almacenamiento ocupado: 1.39 KB"_s);
    }

    void theNoticeIsGivenWhereWanted_data()
    {
        QTest::addColumn<bool>("wanted");
        QTest::newRow("wanted") << true;
        QTest::newRow("not wanted") << false;
    }

    void theNoticeIsGivenWhereWanted()
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

    void hidesTheAdvice()
    {
        const MainWindow window;
        QVERIFY(!advice(window)->isHidden());
        fillForm(window);

        click(window, "SaveTaskButton");

        QVERIFY(advice(window)->isHidden());
    }

    void showsTheAdviceWhileTheFirstFileIsMade()
    {
        const MainWindow window;
        advice(window)->hide();
        const ShowsAndHides seen(advice(window));
        fillForm(window);

        click(window, "SaveTaskButton");

        QCOMPARE(seen.kept, (QStringList{u"show"_s, u"hide"_s}));
    }

    void hidesTheAdviceOnceTheFileWasRead()
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

    void actsInOrder()
    {
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window);
        const MainWindow *const shown = &window;
        connect(taskList(window)->model(), &QAbstractItemModel::modelReset, this,
            [this, shown] { note(*shown, u"list"_s); });
        connect(widget<QLineEdit>(window, "TaskTitle"), &QLineEdit::textChanged, this,
            [this, shown] { note(*shown, u"form"_s); });
        const ShowsAndHides ofAdvice(advice(window));
        connect(&ofAdvice, &ShowsAndHides::happened, this,
            [this, shown](const QString &what) { note(*shown, u"advice, "_s + what); });
        connect(widget<QAbstractButton>(window, "TaskViewButton"), &QAbstractButton::toggled, this,
            [this, shown] { note(*shown, u"page"_s); });

        click(window, "SaveTaskButton");

        QCOMPARE(m_steps,
            (QStringList{u"list (tasks 1, rows 1, notices 0, 0)"_s, u"form (tasks 1, rows 1, notices 0, 0)"_s,
                u"advice, hide (tasks 1, rows 1, notices 0, 0)"_s,
                u"page (tasks 1, rows 1, notices 1, Tareas guardadas: 1)"_s}));
    }
};

NUBARIA_TEST_MAIN(NewTaskEffectsTest)
#include "newtaskeffectstest.moc"
