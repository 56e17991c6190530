#include "support/home.h"
#include "support/testmain.h"
#include "support/window.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

// Closes the menus that open while it lives, and keeps what each one offered and where.
class PopupMenus final : public QObject
{
public:
    struct Menu
    {
        const QWidget *menu;
        QStringList actions;
        QPoint position;
    };

    PopupMenus()
    {
        connect(&m_poll, &QTimer::timeout, this, &PopupMenus::closeOpenMenu);
        m_poll.start(1);
    }

    QList<Menu> shown;

private:
    void closeOpenMenu()
    {
        QWidget *popup = QApplication::activePopupWidget();
        if (!popup) {
            return;
        }
        QStringList texts;
        const QList<QAction *> actions = popup->actions();
        for (const QAction *action : actions) {
            texts.append(action->text());
        }
        shown.append({popup, texts, popup->pos()});
        popup->close();
    }

    QTimer m_poll;
};

} // namespace

class EditMenusTest final : public QObject
{
    Q_OBJECT
private slots:
    void init() { home::reset(); }

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

        QTest::mouseClick(
            window.windowHandle(), Qt::RightButton, {}, edit->mapTo(&window, edit->rect().center()));

        QCOMPARE(menus.shown.size(), 1);
        QCOMPARE(menus.shown.first().actions, QStringList());
        QCOMPARE(menus.shown.first().position, QCursor::pos());
        // The tray's menu is the first one, this is the second and last.
        const auto ofTheWindow = window.findChildren<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(ofTheWindow.size(), 2);
        QCOMPARE(menus.shown.first().menu, ofTheWindow.last());
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

NUBARIA_TEST_MAIN(EditMenusTest)
#include "editmenustest.moc"
