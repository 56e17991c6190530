#include "support/qtversion.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

#include <chrono>

using namespace Qt::Literals::StringLiterals;

namespace {

// Keeps what each menu that opens while it lives offers and where, and closes one that stays open.
class PopupMenus final : public QObject
{
public:
    struct Menu
    {
        const QWidget *menu;
        QStringList actions;
        QPoint position;
    };

    PopupMenus() { QCoreApplication::instance()->installEventFilter(this); }

    QList<Menu> shown;
    bool stayedOpen = false;

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *menu = event->type() == QEvent::Show ? qobject_cast<QMenu *>(watched) : nullptr;
        if (menu) {
            QStringList texts;
            const QList<QAction *> actions = menu->actions();
            for (const QAction *action : actions) {
                texts.append(action->text());
            }
            shown.append({menu, texts, menu->pos()});
            QTimer::singleShot(std::chrono::seconds(2), menu, [this, menu] {
                stayedOpen = stayedOpen || menu->isVisible();
                menu->close();
            });
        }
        return QObject::eventFilter(watched, event);
    }
};

// The keys that reach a widget.
class KeyPresses final : public QObject
{
public:
    explicit KeyPresses(QWidget *widget) { widget->installEventFilter(this); }

    QList<int> pressed;

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress) {
            pressed.append(static_cast<QKeyEvent *>(event)->key());
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

class MainWindowEditMenusTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void opensNoEditMenu_data()
    {
        QTest::addColumn<QByteArray>("field");
        QTest::addColumn<QByteArray>("pageButton");
        for (const char *field : {"TaskTitle", "TaskDescription", "DateLimitTask"}) {
            QTest::newRow(field) << QByteArray(field) << QByteArray("NewTaskViewButton");
        }
        for (const char *field : {"TaskTitleView", "TaskDescriptionView", "DateLimitTaskView"}) {
            QTest::newRow(field) << QByteArray(field) << QByteArray("TaskViewButton");
        }
    }

    void opensNoEditMenu()
    {
        QFETCH(QByteArray, field);
        QFETCH(QByteArray, pageButton);
        MainWindow window;
        window.show();
        widget<QPushButton>(window, pageButton.constData())->click();
        QTRY_COMPARE(widget(window, "TaskDetail")->x(), 1010);
        widget(window, "TaskDetail")->move(0, 0);
        const QWidget *edit = widget(window, field.constData());
        QCursor::setPos(150, 120);
        const PopupMenus menus;
        const QSignalSpy requests(edit, &QWidget::customContextMenuRequested);

        QTest::mouseClick(
            window.windowHandle(), Qt::RightButton, {}, edit->mapTo(&window, edit->rect().center()));

        QCOMPARE(requests.size(), 1);
        // The tray's menu is the first one, this is the second and last.
        const auto ofTheWindow = window.findChildren<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(ofTheWindow.size(), 2);
        QVERIFY(ofTheWindow.last()->isEmpty());
        if (!qtversion::showsEmptyMenus()) {
            QCOMPARE(menus.shown.size(), 0);
            return;
        }
        QCOMPARE(menus.shown.size(), 1);
        QCOMPARE(menus.shown.first().actions, QStringList());
        QCOMPARE(menus.shown.first().position, QCursor::pos());
        QCOMPARE(menus.shown.first().menu, ofTheWindow.last());
    }

    void handsTheNextKeyToTheField_data() { opensNoEditMenu_data(); }

    void handsTheNextKeyToTheField()
    {
        QFETCH(QByteArray, field);
        QFETCH(QByteArray, pageButton);
        MainWindow window;
        QVERIFY(showActive(window));
        widget<QPushButton>(window, pageButton.constData())->click();
        QVERIFY(waitForSlides());
        widget(window, "TaskDetail")->move(0, 0);
        QWidget *edit = widget(window, field.constData());
        edit->setFocus();
        KeyPresses keys(edit);
        const PopupMenus menus;

        QTest::mouseClick(
            window.windowHandle(), Qt::RightButton, {}, edit->mapTo(&window, edit->rect().center()));
        QVERIFY(!menus.stayedOpen);
        QVERIFY(!QApplication::activePopupWidget());
        QTest::keyClick(window.windowHandle(), Qt::Key_7);

        QCOMPARE(keys.pressed, QList<int>{Qt::Key_7});
    }

    void leavesTheMenusOfOtherFieldsAlone()
    {
        const MainWindow window;

        QStringList withoutMenu;
        const QList<QWidget *> all = window.findChildren<QWidget *>();
        for (const QWidget *widget : all) {
            if (widget->contextMenuPolicy() == Qt::CustomContextMenu) {
                withoutMenu.append(widget->objectName());
            }
        }
        withoutMenu.sort();
        QCOMPARE(withoutMenu,
            QStringList({u"DateLimitTask"_s, u"DateLimitTaskView"_s, u"TaskDescription"_s,
                u"TaskDescriptionView"_s, u"TaskTitle"_s, u"TaskTitleView"_s}));
    }
};

NUBARIA_TEST_MAIN(MainWindowEditMenusTest)
#include "mainwindoweditmenustest.moc"
