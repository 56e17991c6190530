#include "support/home.h"
#include "support/window.h"
#include "support/windowtest.h"
#include "widgets/titledelegate.h"

#include <QAction>
#include <QComboBox>
#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QNetworkProxy>
#include <QPushButton>
#include <QScopeGuard>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

bool shows(const QIcon &icon, const QString &file)
{
    const QImage expected = QIcon(file).pixmap(32).toImage();
    return !expected.isNull() && icon.pixmap(32).toImage() == expected;
}

QSystemTrayIcon &trayIcon(const MainWindow &window)
{
    return *window.findChild<QSystemTrayIcon *>();
}

QStringList styleSheets(const MainWindow &window)
{
    QStringList sheets;
    const QList<QWidget *> all = window.findChildren<QWidget *>();
    for (const QWidget *widget : all) {
        sheets.append(widget->styleSheet());
    }
    return sheets;
}

} // namespace

class MainWindowTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void takesTheGivenParentAndNoWindowFlags()
    {
        QWidget parent;
        const MainWindow child(&parent);
        const MainWindow window;
        const QMainWindow plain;

        QCOMPARE(child.parentWidget(), &parent);
        QCOMPARE(window.parentWidget(), nullptr);
        QCOMPARE(window.windowFlags(), plain.windowFlags());
    }

    // Children stand in the order in which they were made.
    void createsItsHelpersInOrder()
    {
        const MainWindow window;
        const QStringList helpers
            = {u"QStringListModel"_s, u"QGraphicsDropShadowEffect"_s, u"QSystemTrayIcon"_s, u"QMenu"_s,
                u"QAction"_s, u"QTimer"_s, u"QLocalServer"_s, u"QNetworkAccessManager"_s};

        QStringList found;
        for (const QObject *child : window.children()) {
            const QString name = QString::fromLatin1(child->metaObject()->className());
            if (helpers.contains(name)) {
                found.append(name);
            }
        }

        const QStringList expected = {u"QStringListModel"_s, u"QGraphicsDropShadowEffect"_s,
            u"QGraphicsDropShadowEffect"_s, u"QGraphicsDropShadowEffect"_s, u"QSystemTrayIcon"_s, u"QMenu"_s,
            u"QAction"_s, u"QAction"_s, u"QMenu"_s, u"QTimer"_s, u"QLocalServer"_s};
        QCOMPARE(found, expected);
        QVERIFY(window.findChildren<QNetworkAccessManager *>().isEmpty());
    }

    void listsTasksThroughItsOwnModel()
    {
        const MainWindow window;

        const auto *model = window.findChild<QStringListModel *>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(model);
        QCOMPARE(widget<QListView>(window, "TaskListView")->model(), model);
    }

    void measuresTheTitlesOfTheListByItsOwnDelegate()
    {
        const MainWindow window;

        const QAbstractItemDelegate *delegate = widget<QListView>(window, "TaskListView")->itemDelegate();

        QVERIFY(dynamic_cast<const TitleDelegate *>(delegate));
    }

    void offersSevenColourThemes()
    {
        const MainWindow window;

        const auto *themes = widget<QComboBox>(window, "ChangeColorTheme");
        QStringList names;
        for (int i = 0; i < themes->count(); ++i) {
            names.append(themes->itemText(i));
            QVERIFY(themes->itemIcon(i).isNull());
            QVERIFY(!themes->itemData(i).isValid());
        }
        const QStringList expected = {u"Bugambilia"_s, u"Myosotis"_s, u"Helianthus"_s, u"Amapola"_s,
            u"Orchidaceae"_s, u"Jasminum"_s, u"Hydrangea"_s};
        QCOMPARE(names, expected);
        QVERIFY(themes->isEnabled());
    }

    void takesTheFormsColoursBeforeItAppliesTheStoredTheme()
    {
        const QStringList formSheets = styleSheets(MainWindow());
        home::setThemePreference(u"colorIndex"_s, 3);
        const MainWindow window;
        auto *themes = widget<QComboBox>(window, "ChangeColorTheme");
        const QString themed = widget(window, "SaveTaskButton")->styleSheet();
        QVERIFY2(themed.contains("#e3393d"_L1) && !themed.contains("#9D39E3"_L1), qPrintable(themed));

        themes->setCurrentIndex(0);

        QVERIFY(widget(window, "SaveTaskButton")->styleSheet().contains("#9D39E3"_L1));
        // A themed combo has made its popup, so there are more widgets than in an untouched window.
        QStringList sheets = styleSheets(window);
        sheets.removeAll(QString());
        QStringList expected = formSheets;
        expected.removeAll(QString());
        QCOMPARE(sheets, expected);
    }

    void takesTheFormsFontWeightsBeforeItEmphasisesTexts()
    {
        home::setPreference(u"textEmphasis"_s, 1);
        const MainWindow window;
        const auto *label = widget<QLabel>(window, "FrameLabelTxt");
        QCOMPARE(label->font().weight(), 600);
        QCOMPARE(window.font().weight(), 600);

        widget<QComboBox>(window, "ChangeTextTheme")->setCurrentIndex(0);

        QCOMPARE(label->font().weight(), 400);
        QCOMPARE(window.font().weight(), 400);
    }

    void parksTheUpdateBannerLeftOfTheWindow()
    {
        const MainWindow window;

        QCOMPARE(widget(window, "FrameUpdater")->geometry(), QRect(-230, 595, 220, 90));
        QVERIFY(!widget(window, "FrameUpdater")->isHidden());
    }

    void asksForTheLatestVersion()
    {
        const QNetworkProxy proxyOfAllTests = QNetworkProxy::applicationProxy();
        const auto restore
            = qScopeGuard([proxyOfAllTests] { QNetworkProxy::setApplicationProxy(proxyOfAllTests); });
        QTcpServer proxy;
        proxy.setProxy(QNetworkProxy::NoProxy);
        QVERIFY(proxy.listen(QHostAddress::LocalHost));
        QNetworkProxy::setApplicationProxy(
            QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, proxy.serverPort()));

        const MainWindow window;

        QTRY_VERIFY(proxy.hasPendingConnections());
        QTcpSocket *request = proxy.nextPendingConnection();
        QTRY_VERIFY(request->canReadLine());
        const QByteArray line = request->readLine();
        QVERIFY2(line.startsWith("CONNECT ") && line.endsWith(":443 HTTP/1.1\r\n"), line.constData());
    }

    void givesThreePanelsADropShadow_data()
    {
        QTest::addColumn<QByteArray>("panel");
        QTest::addColumn<qreal>("blurRadius");
        QTest::addColumn<int>("alpha");
        QTest::newRow("sidebar") << QByteArray("MainMenu") << 30.0 << 45;
        QTest::newRow("new-task form") << QByteArray("frameNewTask") << 10.0 << 60;
        QTest::newRow("profile") << QByteArray("frameProfileSty") << 10.0 << 60;
    }

    void givesThreePanelsADropShadow()
    {
        QFETCH(QByteArray, panel);
        QFETCH(qreal, blurRadius);
        QFETCH(int, alpha);
        const MainWindow window;

        const auto *shadow
            = qobject_cast<QGraphicsDropShadowEffect *>(widget(window, panel.constData())->graphicsEffect());
        QVERIFY(shadow);
        QCOMPARE(shadow->blurRadius(), blurRadius);
        QCOMPARE(shadow->offset(), QPointF(0, 0));
        QCOMPARE(shadow->color(), QColor(0, 0, 0, alpha));
        QCOMPARE(shadow->parent(), &window);
    }

    void showsATrayIconWithoutToolTip()
    {
        const MainWindow window;

        QVERIFY(shows(trayIcon(window).icon(), u":/imageres/quenoliicon.png"_s));
        QVERIFY(trayIcon(window).isVisible());
        QCOMPARE(trayIcon(window).toolTip(), QString());
        QCOMPARE(trayIcon(window).parent(), &window);
    }

    void offersSettingsAndExitInTheTray()
    {
        const MainWindow window;

        const QMenu *menu = trayIcon(window).contextMenu();
        QVERIFY(menu);
        QCOMPARE(menu->parent(), &window);
        QCOMPARE(menu->styleSheet(),
            u"QMenu { background-color: white; color: black; } "
            "QMenu::item:selected { background-color: #357ABD; color: white; }"_s);
        const QList<QAction *> actions = menu->actions();
        QCOMPARE(actions.size(), 2);
        QCOMPARE(actions.at(0)->text(), u"Ajustes"_s);
        QVERIFY(shows(actions.at(0)->icon(), u":/imageres/settings.png"_s));
        QCOMPARE(actions.at(0)->parent(), &window);
        QCOMPARE(actions.at(1)->text(), u"Salir"_s);
        QVERIFY(shows(actions.at(1)->icon(), u":/imageres/unchecked.png"_s));
        QCOMPARE(actions.at(1)->parent(), &window);
    }

    void keepsTheFormsSize()
    {
        MainWindow window;

        window.resize(800, 600);

        QCOMPARE(window.size(), QSize(1250, 700));
        QCOMPARE(window.minimumSize(), QSize(1250, 700));
        QCOMPARE(window.maximumSize(), QSize(1250, 700));
    }

    void remindsOnceADay()
    {
        const MainWindow window;

        const auto timers = window.findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(timers.size(), 1);
        QCOMPARE(timers.first()->interval(), 86400000);
        QVERIFY(timers.first()->isActive());
        QVERIFY(!timers.first()->isSingleShot());
    }
};

NUBARIA_TEST_MAIN(MainWindowTest)
#include "mainwindowtest.moc"
