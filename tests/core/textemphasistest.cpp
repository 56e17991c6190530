#include "core/textemphasis.h"

#include "support/coretest.h"

using namespace Qt::Literals::StringLiterals;

class TextEmphasisTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void raisesLightWeightsOnly_data()
    {
        QTest::addColumn<int>("base");
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("weight");
        QTest::newRow("normal, on") << 400 << 1 << 600;
        QTest::newRow("normal, off") << 400 << 0 << 400;
        QTest::newRow("just below, on") << 599 << 1 << 600;
        QTest::newRow("at the weight, on") << 600 << 1 << 600;
        QTest::newRow("bold, on") << 700 << 1 << 700;
        QTest::newRow("bold, off") << 700 << 0 << 700;
        QTest::newRow("thin, on") << 1 << 1 << 600;
        QTest::newRow("black, on") << 1000 << 1 << 1000;
        QTest::newRow("mode 2") << 400 << 2 << 400;
        QTest::newRow("mode -1") << 400 << -1 << 400;
    }

    void raisesLightWeightsOnly()
    {
        QFETCH(int, base);
        QFETCH(int, mode);
        QFETCH(int, weight);

        QCOMPARE(emphasisedWeight(base, static_cast<TextEmphasis>(mode)), weight);
    }
};

NUBARIA_CORE_TEST_MAIN(TextEmphasisTest)
#include "textemphasistest.moc"
