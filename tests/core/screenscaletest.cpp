#include "core/screenscale.h"

#include "support/coretest.h"

class ScreenScaleTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void lowersTheScaleUntilTheWindowFits_data()
    {
        QTest::addColumn<QSize>("area");
        QTest::addColumn<double>("screenScale");
        QTest::addColumn<double>("scale");
        QTest::newRow("Full HD at 150 %") << QSize(1920, 1008) << 1.5 << 1.25;
        QTest::newRow("Full HD at 125 %") << QSize(1920, 1020) << 1.25 << 1.25;
        QTest::newRow("1920 x 1200 at 175 %") << QSize(1920, 1116) << 1.75 << 1.5;
        QTest::newRow("2560 x 1440 at 200 %") << QSize(2560, 1344) << 2.0 << 1.75;
        QTest::newRow("4K at 300 %") << QSize(3840, 2016) << 3.0 << 2.5;
        QTest::newRow("as high as the window") << QSize(2000, 1110) << 1.5 << 1.5;
        QTest::newRow("one pixel less") << QSize(2000, 1109) << 1.5 << 1.25;
        QTest::newRow("as wide as the window") << QSize(1899, 2000) << 1.5 << 1.5;
        QTest::newRow("one pixel narrower") << QSize(1898, 2000) << 1.5 << 1.25;
        QTest::newRow("no quarter") << QSize(1920, 1008) << 1.35 << 1.35;
        QTest::newRow("no quarter, too large") << QSize(1920, 1008) << 1.4 << 1.25;
        QTest::newRow("just above a quarter") << QSize(1500, 1000) << 1.26 << 1.0;
    }

    void lowersTheScaleUntilTheWindowFits()
    {
        QFETCH(QSize, area);
        QFETCH(double, screenScale);
        QFETCH(double, scale);

        QCOMPARE(fittingScale(QSize(1266, 740), area, screenScale), scale);
    }

    void neverGoesBelowOne_data()
    {
        QTest::addColumn<QSize>("area");
        QTest::addColumn<double>("screenScale");
        QTest::addColumn<double>("scale");
        QTest::newRow("1366 x 768") << QSize(1366, 728) << 1.0 << 1.0;
        QTest::newRow("1366 x 768 at 125 %") << QSize(1366, 720) << 1.25 << 1.0;
        QTest::newRow("1024 x 600 at 110 %") << QSize(1024, 560) << 1.1 << 1.0;
        QTest::newRow("a scale of its own below 1") << QSize(1024, 560) << 0.75 << 0.75;
        QTest::newRow("nothing is known") << QSize(0, 0) << 2.0 << 1.0;
    }

    void neverGoesBelowOne() { lowersTheScaleUntilTheWindowFits(); }
};

NUBARIA_CORE_TEST_MAIN(ScreenScaleTest)
#include "screenscaletest.moc"
