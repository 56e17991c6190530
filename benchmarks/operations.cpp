// Measures what a person does in the window, in processor time until it is painted.
//
// Usage: operations ROW RUNS [floor|own]   (in a home folder of its own, whose task file is put back before
// each run). Prints the floor and Nubaria's own time of each run, which alternate, or one of them.

#include "benchmarks/floors.h"
#include "benchmarks/measuring.h"
#include "core/colorthemes.h"
#include "support/window.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGraphicsEffect>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QStringListModel>
#include <QTextEdit>
#include <QTimer>

#include <algorithm>
#include <iostream>
#include <map>
#include <string>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

class Bench final
{
    Q_DISABLE_COPY_MOVE(Bench)
public:
    explicit Bench(const Runs &runs)
        : m_runs(runs)
        , m_tasks(read(m_path))
        , m_middle(QJsonDocument::fromJson(m_tasks).array().at(middleRow()).toObject()["id"_L1].toString())
    {
        restore();
        m_window.show();
        settle();
    }

    void search()
    {
        alternate(
            m_runs, [this] { return floorTime([this] { return floors::search(m_floorPath, u"a"_s); }); },
            [this] {
                type(widget<QLineEdit>(m_window, "SearchTask"), QString());
                settle();
                return untilPainted(
                    list(), [this] { press(widget<QLineEdit>(m_window, "SearchTask"), Qt::Key_A, u"a"_s); });
            });
    }

    /// The floor paints what it found as well.
    void searchPainted()
    {
        auto *model = qobject_cast<QStringListModel *>(taskList(m_window)->model());
        QStringList found;
        const auto tasks = QJsonDocument::fromJson(m_tasks).array();
        for (const auto &task : tasks) {
            const QString title = task.toObject()["title"_L1].toString();
            if (title.contains(u'a', Qt::CaseInsensitive)) {
                found.append(title);
            }
        }
        const auto showAll = [this] {
            type(widget<QLineEdit>(m_window, "SearchTask"), QString());
            settle();
        };
        alternate(
            m_runs,
            [&] {
                showAll();
                return floorTime([this] { return floors::search(m_floorPath, u"a"_s); })
                    + untilPainted(list(), [&] { model->setStringList(found); });
            },
            [&] {
                showAll();
                return untilPainted(
                    list(), [this] { press(widget<QLineEdit>(m_window, "SearchTask"), Qt::Key_A, u"a"_s); });
            });
    }

    void order()
    {
        auto *chooser = widget<QComboBox>(m_window, "OrderNotesBy");
        alternate(
            m_runs, [this] { return floorTime([this] { return floors::order(m_floorPath); }); },
            [this, chooser] {
                chooser->setCurrentIndex(0);
                settle();
                return untilPainted(list(), [chooser] { chooser->setCurrentIndex(1); });
            });
    }

    void save()
    {
        alternate(
            m_runs, [this] { return floorTime([this] { return floors::save(m_floorPath); }); },
            [this] {
                restore();
                click(m_window, "NewTaskViewButton");
                widget<QLineEdit>(m_window, "TaskTitle")->setText(u"Revisar el informe"_s);
                widget<QTextEdit>(m_window, "TaskDescription")->setPlainText(u"Antes del lunes"_s);
                widget<QComboBox>(m_window, "CategoryTaskBox")->setCurrentIndex(1);
                widget<QComboBox>(m_window, "UrgencyTaskBox")->setCurrentIndex(2);
                settle();
                return untilPainted(list(), [this] { click(m_window, "SaveTaskButton"); });
            });
    }

    void update()
    {
        alternate(
            m_runs, [this] { return floorTime([this] { return floors::update(m_floorPath, m_middle); }); },
            [this] {
                openMiddle();
                return untilPainted(list(), [this] { click(m_window, "UpdateTaskBtn"); });
            });
    }

    void finish()
    {
        alternate(
            m_runs, [this] { return floorTime([this] { return floors::finish(m_floorPath, m_middle); }); },
            [this] {
                openMiddle();
                double begin = 0; // from the answer on: how long the question stands is up to the person
                QTimer answer;
                QObject::connect(&answer, &QTimer::timeout, &answer, [&begin, &answer] {
                    if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                        answer.stop();
                        settle();
                        begin = processorTime();
                        box->button(QMessageBox::Yes)->click();
                    }
                });
                answer.start(10);
                untilPainted(list(), [this] { click(m_window, "FinishTaskBtn"); });
                return processorTime() - begin;
            });
    }

    void titleKey()
    {
        click(m_window, "NewTaskViewButton");
        auto *title = widget<QLineEdit>(m_window, "TaskTitle");
        title->setFocus();
        auto *shadow = widget(m_window, "frameNewTask")->graphicsEffect();
        const auto measure = [title, shadow](bool shadowed) {
            shadow->setEnabled(shadowed);
            type(title, u"Comprar"_s);
            settle();
            return untilPainted(title, [title] { press(title, Qt::Key_A, u"a"_s); });
        };
        alternate(
            m_runs, [&] { return measure(false); }, [&] { return measure(true); });
    }

    void theme()
    {
        auto *chooser = widget<QComboBox>(m_window, "ChangeColorTheme");
        chooser->setCurrentIndex(0); // whatever an earlier run has stored
        // The sheets as the form sets them.
        std::map<QWidget *, QString> sheets;
        const auto widgets = m_window.findChildren<QWidget *>();
        for (QWidget *child : widgets) {
            if (!child->styleSheet().isEmpty()) {
                sheets.emplace(child, child->styleSheet());
            }
        }
        sheets.erase(&m_window);
        click(m_window, "SettingsViewButton");
        settle();
        int index = 0;
        const auto next = [&index] {
            return index = index % 6 + 1;
        };
        alternate(
            m_runs,
            [&] {
                settle();
                const auto replacements = themeReplacements(next());
                return untilPainted(&m_window, [&] {
                    for (const auto &[child, sheet] : sheets) {
                        child->setStyleSheet(recolored(sheet, replacements));
                    }
                });
            },
            [&] {
                settle();
                return untilPainted(&m_window, [&] { chooser->setCurrentIndex(next()); });
            });
    }

    /// The floor is the mean frame: what is asked is that the longest does not stand out.
    void panel()
    {
        for (int run = 0; run <= m_runs.count; ++run) {
            click(m_window, "TaskViewButton");
            settle();
            taskList(m_window)->setCurrentIndex({});
            const std::vector<double> frames = framesOfOpening(run % 2);
            if (run > 0) {
                double sum = 0;
                for (const double frame : frames) {
                    sum += frame;
                }
                std::cout << sum / double(frames.size()) << ' ' << *std::ranges::max_element(frames)
                          << std::endl;
            }
        }
    }

private:
    static qsizetype middleRow() { return 3; }

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("[]");
    }

    void write(const QString &path) const
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(m_tasks) != m_tasks.size()) {
            qFatal("the task file cannot be put back");
        }
    }

    void restore() const
    {
        write(m_path);
        write(m_floorPath);
    }

    template <typename Floor> double floorTime(const Floor &floor) const
    {
        restore();
        const double begin = processorTime();
        const qsizetype rows = floor();
        const double time = processorTime() - begin;
        if (rows < 0) {
            qFatal("no rows");
        }
        return time;
    }

    QWidget *list() const { return taskList(m_window)->viewport(); }

    static void type(QLineEdit *edit, const QString &text) { edit->setText(text); }

    static void press(QWidget *edit, Qt::Key key, const QString &text)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(edit, &event);
    }

    void openMiddle()
    {
        restore();
        callSlot(m_window, "updateTaskList");
        settle();
        selectRow(m_window, int(middleRow()));
        settle();
    }

    std::vector<double> framesOfOpening(int row)
    {
        auto *panel = widget(m_window, "TaskDetail");
        if (taskList(m_window)->model()->rowCount() <= row) {
            qFatal("too few tasks to open one");
        }
        selectRow(m_window, row);
        std::vector<double> frames;
        Paints paints(panel);
        while (panel->geometry() != openPanel) {
            const double begin = processorTime();
            paints.forget();
            paints.await();
            frames.push_back(processorTime() - begin);
        }
        return frames;
    }

    const QString m_path = QDir::homePath() + "/rmc.json"_L1;
    const QString m_floorPath = QDir::homePath() + "/floor.json"_L1;
    const Runs m_runs;
    const QByteArray m_tasks;
    const QString m_middle;
    MainWindow m_window;
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const std::map<std::string, void (Bench::*)()> rows
        = {{"search", &Bench::search}, {"search-painted", &Bench::searchPainted}, {"order", &Bench::order},
            {"save", &Bench::save}, {"update", &Bench::update}, {"finish", &Bench::finish},
            {"title-key", &Bench::titleKey}, {"theme", &Bench::theme}, {"panel", &Bench::panel}};
    const auto row = argc == 3 || argc == 4 ? rows.find(argv[1]) : rows.end();
    if (row == rows.end()) {
        std::cerr << "usage: operations ROW RUNS [floor|own]\n";
        return 2;
    }
    const std::string only = argc == 4 ? argv[3] : "";
    Bench bench(
        {.count = QString::fromLatin1(argv[2]).toInt(), .floor = only != "own", .own = only != "floor"});
    (bench.*row->second)();
    return 0;
}
