#include "support/home.h"
#include "support/replaced.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAccessible>

using namespace Qt::Literals::StringLiterals;

namespace {

using Told = QPair<QByteArray, QAccessible::Event>;

/// Shown, hidden and focused widgets that have a name.
QList<Told> &told()
{
    static QList<Told> list;
    return list;
}

void note(const QAccessibleEvent *event)
{
    const QList<QAccessible::Event> kinds{
        QAccessible::ObjectShow, QAccessible::ObjectHide, QAccessible::Focus};
    if (event->object() && kinds.contains(event->type())) {
        told().append({event->object()->objectName().toLatin1(), event->type()});
    }
}

qsizetype countOf(const Told &event)
{
    return told().count(event);
}

QAccessibleInterface *interfaceOf(const MainWindow &window, const char *name)
{
    return QAccessible::queryAccessibleInterface(widget(window, name));
}

bool isTold(const MainWindow &window, const char *name)
{
    const QAccessible::State state = interfaceOf(window, name)->state();
    return !state.invisible && !state.offscreen;
}

} // namespace

// Only a platform that assistive technology listens to would hand the events on.
void QAccessible::updateAccessibility(QAccessibleEvent *event)
{
    note(event);
}
NUBARIA_REPLACES("_ZN11QAccessible19updateAccessibilityEP16QAccessibleEvent");

class ParkedPanelTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s), home::record(u"{b}"_s, u"Dos"_s)});
        told().clear();
    }

    void isOutOfSightWhileParked_data()
    {
        QTest::addColumn<QByteArray>("panel");
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QByteArray>("child");
        QTest::newRow("details") << QByteArray("TaskDetail") << QByteArray("TaskViewButton")
                                 << QByteArray("UpdateTaskBtn");
        QTest::newRow("banner") << QByteArray("FrameUpdater") << QByteArray("TaskViewButton")
                                << QByteArray("StartUpdate");
        QTest::newRow("details of the release notes")
            << QByteArray("TaskDetail_2") << QByteArray("PatchNoticesViewButton")
            << QByteArray("UpdateTaskBtn_2");
    }

    void isOutOfSightWhileParked()
    {
        QFETCH(QByteArray, panel);
        QFETCH(QByteArray, button);
        QFETCH(QByteArray, child);
        MainWindow window;
        QAccessible::setActive(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        click(window, button.constData());

        QVERIFY(!isTold(window, panel.constData()));
        QAccessibleInterface *parked = interfaceOf(window, panel.constData());
        QCOMPARE(parked->childCount(), 0);
        QCOMPARE(parked->child(0), nullptr);
        QCOMPARE(parked->indexOfChild(interfaceOf(window, child.constData())), -1);
    }

    void isToldWhileOpen()
    {
        MainWindow window;
        QAccessible::setActive(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));

        selectRow(window, 1);

        QVERIFY(isTold(window, "TaskDetail")); // with the focus, before it has begun to slide
        QTRY_COMPARE(panelPlace(window), openPanel);
        QVERIFY(isTold(window, "TaskDetail"));
        QAccessibleInterface *panel = interfaceOf(window, "TaskDetail");
        QCOMPARE(panel->text(QAccessible::Name), u"Detalles de la tarea"_s);
        QCOMPARE(panel->text(QAccessible::Description), u"Dos"_s);
        QVERIFY(panel->state().focusable && panel->state().focused);
        const int place = panel->indexOfChild(interfaceOf(window, "UpdateTaskBtn"));
        QVERIFY(place >= 0);
        QCOMPARE(panel->child(place)->object(), widget(window, "UpdateTaskBtn"));
        click(window, "CloseDetailTaskBtn");
        QTRY_VERIFY(!isTold(window, "TaskDetail"));
        QCOMPARE(panelPlace(window), closedPanel);
    }

    void announcesThePanelBeforeItsFocus()
    {
        MainWindow window;
        QAccessible::setActive(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTRY_COMPARE(countOf({"TaskDetail", QAccessible::ObjectHide}), 1);
        told().clear();

        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);
        const Told shown{"TaskDetail", QAccessible::ObjectShow};
        const Told focused{"TaskDetail", QAccessible::Focus};
        QCOMPARE(countOf(shown), 1);
        QCOMPARE(countOf(focused), 1);
        QVERIFY(told().indexOf(shown) < told().indexOf(focused));

        // Another task in the same panel.
        selectRow(window, 1);
        QCOMPARE(countOf(shown), 1);
        QCOMPARE(countOf(focused), 2);

        click(window, "CloseDetailTaskBtn");
        QTRY_COMPARE(panelPlace(window), closedPanel);
        QTRY_VERIFY(!isTold(window, "TaskDetail"));
        QCOMPARE(countOf({"TaskDetail", QAccessible::ObjectHide}), 1);
    }

    void staysOutOfSightWhenItsPageAppears()
    {
        MainWindow window;
        QAccessible::setActive(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        click(window, "SettingsViewButton");
        told().clear();

        click(window, "TaskViewButton");

        const Told shown{"TaskDetail", QAccessible::ObjectShow};
        const Told hidden{"TaskDetail", QAccessible::ObjectHide};
        QTRY_COMPARE(countOf(hidden), countOf(shown));
        QCOMPARE(countOf(shown), 1);
        QVERIFY(told().indexOf(hidden) > told().indexOf(shown));
    }

    void announcesTheBanner()
    {
        MainWindow window;
        QAccessible::setActive(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));

        QTRY_COMPARE(countOf({"FrameUpdater", QAccessible::ObjectHide}), 1);
        told().clear();

        callSlot(window, "showUpdateMessage");
        QTRY_COMPARE(bannerOf(window), openBanner);
        QVERIFY(isTold(window, "FrameUpdater"));
        QCOMPARE(countOf({"FrameUpdater", QAccessible::ObjectShow}), 1);

        click(window, "CancelUpdate");
        QTRY_COMPARE(bannerOf(window), closedBanner);
        QVERIFY(!isTold(window, "FrameUpdater"));
        QCOMPARE(countOf({"FrameUpdater", QAccessible::ObjectHide}), 1);
    }
};

NUBARIA_TEST_MAIN(ParkedPanelTest)
#include "parkedpaneltest.moc"
