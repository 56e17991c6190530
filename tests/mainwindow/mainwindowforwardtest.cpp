#include "support/replaced.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAction>
#include <QMenu>
#include <QSystemTrayIcon>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What is done to bring a window forward, in its order: only the calls tell, for the platform answers later.
QStringList &calls()
{
    static QStringList names;
    return names;
}

/// Notes when these pages are shown.
class PageLog final : public QObject
{
    Q_DISABLE_COPY_MOVE(PageLog)
public:
    explicit PageLog(const MainWindow &window)
    {
        for (const char *page : {"TasksPage", "SettingsPage"}) {
            widget(window, page)->installEventFilter(this);
        }
    }
    ~PageLog() override = default;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::ShowToParent) {
            calls().append(watched->objectName());
        }
        return false;
    }
};

void choose(const MainWindow &window, const QString &text)
{
    const QList<QAction *> actions = window.findChild<QSystemTrayIcon *>()->contextMenu()->actions();
    for (QAction *action : actions) {
        if (action->text() == text) {
            action->trigger();
        }
    }
}

} // namespace

// These definitions win over Qt's.
void QWidget::showNormal()
{
    calls().append(u"showNormal"_s);
    setWindowState(Qt::WindowNoState);
    setVisible(true);
}
NUBARIA_REPLACES("_ZN7QWidget10showNormalEv");

void QWidget::raise()
{
    if (isWindow()) {
        calls().append(u"raise"_s);
    }
}
NUBARIA_REPLACES("_ZN7QWidget5raiseEv");

void QWidget::activateWindow()
{
    calls().append(u"activateWindow"_s);
}
NUBARIA_REPLACES("_ZN7QWidget14activateWindowEv");

void QApplication::alert(QWidget *, int)
{
    calls().append(u"alert"_s);
}
NUBARIA_REPLACES("_ZN12QApplication5alertEP7QWidgeti");

/// In which order the window comes forward.
class MainWindowForwardTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void theTrayShowsTheTasksPageThenTheWindowAndRaisesItLast_data() { addStates(); }

    void theTrayShowsTheTasksPageThenTheWindowAndRaisesItLast()
    {
        MainWindow window;
        callSlot(window, "onProfileViewButtonClicked");
        bringIntoState(window);
        const PageLog pages(window);
        calls().clear();

        emit window.findChild<QSystemTrayIcon *>()->activated(QSystemTrayIcon::DoubleClick);

        QCOMPARE(calls(), QStringList({u"TasksPage"_s, u"showNormal"_s, u"activateWindow"_s, u"raise"_s}));
    }

    void theTrayRestoresOnlyAMinimisedWindowBeforeItShowsTheSettings_data() { addStates(); }

    void theTrayRestoresOnlyAMinimisedWindowBeforeItShowsTheSettings()
    {
        QFETCH(bool, minimised);
        QFETCH(bool, hidden);
        MainWindow window;
        bringIntoState(window);
        const PageLog pages(window);
        calls().clear();

        choose(window, u"Ajustes"_s);

        QCOMPARE(calls(),
            minimised ? QStringList({u"showNormal"_s, u"SettingsPage"_s}) : QStringList(u"SettingsPage"_s));
        QCOMPARE(window.isVisible(), minimised || !hidden);
    }

    void aFurtherStartRaisesTheWindowBeforeItActivatesIt_data() { addStates(); }

    void aFurtherStartRaisesTheWindowBeforeItActivatesIt()
    {
        QFETCH(bool, minimised);
        QFETCH(bool, hidden);
        MainWindow window;
        bringIntoState(window);
        QWidget other;
        other.show();
        QTRY_VERIFY(other.isActiveWindow());
        const PageLog pages(window);
        calls().clear();

        callSlot(window, "handleNewInstanceConnection");

        QStringList expected = {u"raise"_s, u"activateWindow"_s, u"alert"_s};
        if (minimised || hidden) {
            expected.prepend(u"showNormal"_s);
        }
        QCOMPARE(calls(), expected);
    }

private:
    static void addStates()
    {
        QTest::addColumn<bool>("minimised");
        QTest::addColumn<bool>("hidden");
        QTest::newRow("covered") << false << false;
        QTest::newRow("hidden") << false << true;
        QTest::newRow("minimised") << true << false;
        QTest::newRow("minimised and hidden") << true << true;
    }

    static void bringIntoState(MainWindow &window)
    {
        QFETCH(bool, minimised);
        QFETCH(bool, hidden);
        minimised ? window.showMinimized() : window.show();
        window.setVisible(!hidden);
    }
};

NUBARIA_TEST_MAIN(MainWindowForwardTest)
#include "mainwindowforwardtest.moc"
