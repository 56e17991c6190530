#include "support/browser.h"
#include "support/home.h"
#include "support/patience.h"
#include "support/traymessages.h"
#include "support/updateserver.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QPropertyAnimation>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

class UpdateCheckBannerTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void opensTheDownloadPageOnceTheWindowIsGone_data()
    {
        QTest::addColumn<bool>("hides");
        QTest::addColumn<int>("ends");
        QTest::newRow("closed") << false << 1;
        QTest::newRow("hidden") << true << 0;
    }

    void opensTheDownloadPageOnceTheWindowIsGone()
    {
        QFETCH(bool, hides);
        QFETCH(int, ends);
        home::setPreference(u"changeClose"_s, hides);
        MainWindow window;
        window.show();
        const Browser browser(u"https"_s, window);
        const QSignalSpy lastWindowClosed(qApp, &QGuiApplication::lastWindowClosed);
        auto *button = widget<QPushButton>(window, "StartUpdate");
        // The end of the program is only decided while its event loop runs.
        QTimer::singleShot(0, button, [button] {
            QTest::mouseClick(button, Qt::LeftButton);
            QCoreApplication::exit();
        });

        QApplication::exec();

        const QString host = QString::fromLatin1(UpdateServer::host());
        QCOMPARE(browser.opened(), QList<QUrl>{QUrl(u"https://%1/updates/nubaria/version"_s.arg(host))});
        QVERIFY(!browser.windowWasVisible());
        QVERIFY(!window.isVisible());
        QCOMPARE(lastWindowClosed.count(), ends);
        QCOMPARE(traymessages::all(), QList<TrayMessage>());
    }

    void slidesTheBannerOutWhenTheUpdateIsIgnored()
    {
        UpdateServer server;
        server.answerWith(http::response(http::versionDocument("2.0.2028")));
        MainWindow window;
        window.show();
        const Browser browser(u"https"_s, window);
        QTRY_COMPARE_WITH_TIMEOUT(bannerOf(window), openBanner, patience);

        QTest::mouseClick(widget(window, "CancelUpdate"), Qt::LeftButton);

        QTRY_COMPARE_WITH_TIMEOUT(bannerOf(window), closedBanner, patience);
        QVERIFY(window.isVisible());
        QCOMPARE(browser.opened(), QList<QUrl>());
        QCOMPARE(server.requests().size(), 1);
    }
};

NUBARIA_TEST_MAIN(UpdateCheckBannerTest)
#include "updatecheckbannertest.moc"
