#include "support/failingopen.h"
#include "support/home.h"
#include "support/listedtasks.h"
#include "support/loglines.h"
#include "support/messageboxes.h"
#include "support/taskform.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What is told of a failure, in its order: critical lines of the log, boxes, and the advice in the list's
/// place.
class Telling final : public QObject
{
    Q_OBJECT
public:
    Telling(const MainWindow &window, const MessageBoxes &boxes)
    {
        advice(window)->installEventFilter(this);
        connect(&boxes, &MessageBoxes::opened, this, [this](const ShownBox &box) {
            note(u"box of %1: %2"_s.arg(QLatin1StringView(box.parent), box.text));
        });
    }

    QStringList steps()
    {
        noteLog();
        return m_steps;
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent) {
            note(event->type() == QEvent::ShowToParent ? u"advice shown"_s : u"advice hidden"_s);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void note(const QString &step)
    {
        noteLog();
        m_steps.append(step);
    }

    void noteLog()
    {
        const QList<LogLine> lines = LogLines::ofType(QtCriticalMsg);
        for (const LogLine &line : lines.mid(m_lines)) {
            m_steps.append(u"log of %1: %2"_s.arg(line.category, line.text));
        }
        m_lines = lines.size();
    }

    const LogLines m_log;
    QStringList m_steps;
    qsizetype m_lines = 0;
};

void act(MainWindow &window, const QByteArray &action)
{
    if (action == "details") {
        selectRow(window, 0);
    } else if (action == "save" || action == "first save") {
        click(window, "SaveTaskButton");
    } else if (action == "update" || action == "delete") {
        click(window, action == "update" ? "UpdateTaskBtn" : "DeleteTaskBtn");
    } else if (action == "checkTaskReminders") {
        callSlot(window, "checkTaskReminders");
    } else {
        fillListBy(window, action);
    }
}

} // namespace

/// How a task file that cannot be opened is told: where, in which words and in which order.
class ReportsTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void tellsAFailureInOrder_data()
    {
        QTest::addColumn<QByteArray>("action");
        QTest::addColumn<int>("failingMode");
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("notice");
        const QString reading = u"log of default: Failed to open file for reading: \"Permission denied\""_s;
        const QString writing = u"log of default: Failed to open file for writing: \"Permission denied\""_s;
        const QString making = u"log of default: Hubo un error al crear el archivo: \"Permission denied\""_s;
        const QString saving = u"log of default: Error al abrir el archivo: \"Permission denied\""_s;
        const QString savingBox = u"box of MainWindow: Error al abrir el archivo: Permission denied"_s;
        const QString question = u"box of : ¿Está seguro de que desea finalizar y eliminar esta tarea?"_s;
        const QString adviceShown = u"advice shown"_s;
        const auto row = [](const char *name, const char *action, int failingMode, const QStringList &steps,
                             const QString &notice = QString()) {
            QTest::newRow(name) << QByteArray(action) << failingMode << steps << notice;
        };

        row("loading", "loadTasks", O_RDONLY,
            {reading, u"box of MainWindow: Error al cargar el dato: Permission denied"_s, adviceShown});
        row("ordering", "orderTasks", O_RDONLY,
            {reading, u"box of MainWindow: Error el cargar el dato: Permission denied"_s});
        row("searching", "filterTasks", O_RDONLY,
            {reading, u"box of MainWindow: Error al cargar los datos: Permission denied"_s});
        row("making the file", "first save", O_WRONLY,
            {making, u"box of MainWindow: Hubo un error al crear el archivo: Permission denied"_s,
                adviceShown});
        row("reading, to save", "save", O_RDONLY, {saving, savingBox});
        row("writing, to save", "save", O_WRONLY, {saving, savingBox, adviceShown});
        row("details", "details", O_RDONLY,
            {reading, u"box of MainWindow: Failed to open file for reading: Permission denied"_s,
                adviceShown});
        row("reading, to update", "update", O_RDWR, {reading},
            u"Error el cargar los datos: Permission denied"_s);
        row("writing, to update", "update", O_WRONLY, {writing},
            u"Failed to open file for writing: Permission denied"_s);
        row("reading, to delete", "delete", O_RDWR,
            {question, reading, u"box of MainWindow: Failed to open file for reading: Permission denied"_s});
        row("writing, to delete", "delete", O_WRONLY,
            {question, writing, u"box of MainWindow: Failed to open file for writing: Permission denied"_s});
        row("reminders", "checkTaskReminders", O_RDONLY, {reading});
    }

    void tellsAFailureInOrder()
    {
        QFETCH(QByteArray, action);
        QFETCH(int, failingMode);
        QFETCH(QStringList, steps);
        QFETCH(QString, notice);
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        MainWindow window;
        QVERIFY(advice(window)->isHidden());
        widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);
        fillForm(window);
        if (action == "update" || action == "delete") {
            selectRow(window, 0);
        }
        if (action == "first save") {
            QVERIFY(QFile::remove(home::taskFile()));
        }
        const MessageBoxes boxes(QMessageBox::Yes);
        Telling told(window, boxes);
        const FailingOpen failing(failingMode);

        act(window, action);

        QCOMPARE(told.steps(), steps);
        if (notice.isEmpty()) {
            QCOMPARE(traymessages::all().size(), 0);
        } else {
            traymessages::compareOnly(u"Error"_s, notice);
        }
    }
};

NUBARIA_TEST_MAIN(ReportsTest)
#include "reportstest.moc"
