#include "support/home.h"
#include "support/loglines.h"
#include "support/messageboxes.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QPushButton>
#include <QTimer>

#include <memory>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

// A test builds its tables once, at its start.
// clazy:excludeall=non-pod-global-static
const QStringList buttonNames = {u"TaskViewButton"_s, u"NewTaskViewButton"_s, u"SettingsViewButton"_s,
    u"ProfileViewButton"_s, u"PatchNoticesViewButton"_s};
const QStringList pageNames
    = {u"TasksPage"_s, u"NewTasksPage"_s, u"SettingsPage"_s, u"ProfilePage"_s, u"PatchPage"_s};

QStringList checkedButtons(const MainWindow &window)
{
    QStringList checked;
    for (const QString &name : buttonNames) {
        if (window.findChild<QPushButton *>(name)->isChecked()) {
            checked.append(name);
        }
    }
    return checked;
}

QStringList shownPages(const MainWindow &window)
{
    QStringList shown;
    for (const QString &name : pageNames) {
        if (!window.findChild<QWidget *>(name)->isHidden()) {
            shown.append(name);
        }
    }
    return shown;
}

/// Notes, when a page is hidden, whether another one is shown.
class PageChange final : public QObject
{
    Q_DISABLE_COPY_MOVE(PageChange)
public:
    PageChange(QWidget *former, const QWidget *next)
        : m_next(next)
    {
        former->installEventFilter(this);
    }
    ~PageChange() override = default;

    std::optional<bool> nextWasShown;

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Hide) {
            nextWasShown = m_next->isVisible();
        }
        return QObject::eventFilter(watched, event);
    }

    const QWidget *m_next;
};

/// Asks a window that is still being built for a page, while it reports that the task file cannot be read.
class PageAskedForAtTheStart final : public QObject
{
    Q_DISABLE_COPY_MOVE(PageAskedForAtTheStart)
public:
    explicit PageAskedForAtTheStart(const QByteArray &slot)
    {
        QTimer::singleShot(0, this, [this, slot] {
            auto *window = qobject_cast<MainWindow *>(QApplication::activeModalWidget()->parentWidget());
            hadASelection = taskList(*window)->selectionModel() != nullptr;
            widget(*window, "TaskDetail")->setGeometry(openPanel); // as if it stood in the way
            callSlot(*window, slot.constData());
            checked = checkedButtons(*window);
            shown = shownPages(*window);
        });
    }
    ~PageAskedForAtTheStart() override = default;

    bool hadASelection = true;
    QStringList checked;
    QStringList shown;
};

} // namespace

class NavigationTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void showsOnePageForEachButton_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("page");
        QTest::newRow("tasks") << QByteArray("onTaskViewButtonClicked") << u"TaskViewButton"_s
                               << u"TasksPage"_s;
        QTest::newRow("new task") << QByteArray("onNewTaskViewButtonClicked") << u"NewTaskViewButton"_s
                                  << u"NewTasksPage"_s;
        QTest::newRow("settings") << QByteArray("onSettingsViewButtonClicked") << u"SettingsViewButton"_s
                                  << u"SettingsPage"_s;
        QTest::newRow("profile") << QByteArray("onProfileViewButtonClicked") << u"ProfileViewButton"_s
                                 << u"ProfilePage"_s;
        QTest::newRow("release notes")
            << QByteArray("onPatchNoticesViewButtonClicked") << u"PatchNoticesViewButton"_s << u"PatchPage"_s;
    }

    void showsOnePageForEachButton()
    {
        QFETCH(QByteArray, slot);
        QFETCH(QString, button);
        QFETCH(QString, page);
        MainWindow window;
        for (const QString &from : buttonNames) {
            window.findChild<QPushButton *>(from)->click();

            callSlot(window, slot.constData());

            QCOMPARE(checkedButtons(window), QStringList(button));
            QCOMPARE(shownPages(window), QStringList(page));
            window.findChild<QPushButton *>(from)->click();
            window.findChild<QPushButton *>(button)->click();
            QCOMPARE(checkedButtons(window), QStringList(button));
            QCOMPARE(shownPages(window), QStringList(page));
        }
    }

    void showsAPageBeforeItHidesTheFormer()
    {
        MainWindow window;
        window.show();
        const PageChange change(widget(window, "TasksPage"), widget(window, "PatchPage"));

        callSlot(window, "onPatchNoticesViewButtonClicked");

        QCOMPARE(change.nextWasShown, std::optional(true));
    }

    void resetsTheSelectionThenTheButtonsInOrder()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
        MainWindow window;
        selectRow(window, 0);
        const auto log = std::make_shared<QStringList>();
        auto *selection = widget<QListView>(window, "TaskListView")->selectionModel();
        connect(
            selection, &QItemSelectionModel::selectionChanged, this, [log] { log->append(u"selection"_s); });
        for (const QString &name : buttonNames) {
            auto *button = window.findChild<QPushButton *>(name);
            button->setChecked(true);
            connect(button, &QPushButton::toggled, this,
                [log, name](bool checked) { log->append(name + (checked ? " on"_L1 : " off"_L1)); });
        }

        callSlot(window, "onProfileViewButtonClicked");

        const QStringList expected = {u"selection"_s, u"TaskViewButton off"_s, u"NewTaskViewButton off"_s,
            u"SettingsViewButton off"_s, u"ProfileViewButton off"_s, u"PatchNoticesViewButton off"_s,
            u"ProfileViewButton on"_s};
        QCOMPARE(*log, expected);
    }

    void changesPagesBeforeTheListHasASelection_data() { showsOnePageForEachButton_data(); }

    void changesPagesBeforeTheListHasASelection()
    {
        QFETCH(QByteArray, slot);
        QFETCH(QString, button);
        QFETCH(QString, page);
        home::blockTaskFile();
        expectFileError("No se pudo abrir rmc.json para reparar ids:", home::openError(QIODevice::ReadOnly));
        expectFileError("Failed to open file for reading:", home::openError(QIODevice::ReadOnly));
        const PageAskedForAtTheStart asked(slot);
        const MessageBoxes boxes;

        const MainWindow window;

        QVERIFY(!asked.hadASelection);
        // The others cannot be checked as yet.
        QCOMPARE(asked.checked, button == "TaskViewButton"_L1 ? QStringList(button) : QStringList());
        QCOMPARE(asked.shown, QStringList(page));
        QCOMPARE(boxes.shown().size(), 1);
        QTRY_COMPARE(panelPlace(window), closedPanel);
    }

    void slidesThePanelOutAndClearsTheSelectionWhenThePageChanges_data()
    {
        QTest::addColumn<QString>("button");
        for (const QString &name : buttonNames) {
            QTest::newRow(qPrintable(name)) << name;
        }
    }

    void slidesThePanelOutAndClearsTheSelectionWhenThePageChanges()
    {
        QFETCH(QString, button);
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
        MainWindow window;
        window.show();
        const auto *list = widget<QListView>(window, "TaskListView");
        selectRow(window, 0);
        QTRY_COMPARE(widget(window, "TaskDetail")->geometry(), openPanel);
        QVERIFY(list->selectionModel()->hasSelection());

        window.findChild<QPushButton *>(button)->click();

        QVERIFY(!list->selectionModel()->hasSelection());
        QTRY_COMPARE(widget(window, "TaskDetail")->geometry(), closedPanel);
    }

    void slidesTheBannerInAndOut()
    {
        MainWindow window;
        window.show();

        callSlot(window, "showUpdateMessage");
        QTRY_COMPARE(widget(window, "FrameUpdater")->geometry(), openBanner);
        widget<QPushButton>(window, "CancelUpdate")->click();
        QTRY_COMPARE(widget(window, "FrameUpdater")->geometry(), closedBanner);
    }
};

NUBARIA_TEST_MAIN(NavigationTest)
#include "navigationtest.moc"
