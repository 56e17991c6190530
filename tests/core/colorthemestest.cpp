#include "core/colorthemes.h"

#include "support/coretest.h"
#include "support/palettes.h"

using namespace Qt::Literals::StringLiterals;

class ColorThemesTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void hasFifteenReplacementsInOrder_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 1; i < paletteNames().size(); ++i) {
            QTest::newRow(qPrintable(paletteNames().at(i))) << i;
        }
    }

    void hasFifteenReplacementsInOrder()
    {
        QFETCH(int, index);

        QStringList from;
        QStringList to;
        for (const ColorReplacement &replacement : themeReplacements(index)) {
            from.append(replacement.from);
            to.append(replacement.to);
        }

        QCOMPARE(from, paletteColors(u"Bugambilia"_s));
        QCOMPARE(to, paletteColors(paletteNames().at(index)));
    }

    void hasNoReplacementsForAnyOtherIndex_data()
    {
        QTest::addColumn<int>("index");
        for (const int index : {0, -1, 7, 9, INT_MIN, INT_MAX}) {
            QTest::addRow("%d", index) << index;
        }
    }

    void hasNoReplacementsForAnyOtherIndex()
    {
        QFETCH(int, index);

        QCOMPARE(themeReplacements(index).size(), 0);
    }

    void recoloursEveryOccurrenceInItsLetterCaseOnly()
    {
        const QString sheet
            = u"a: #9D39E3; b: #9d39e3; c: #9D39E3; d: rgba(74, 20, 140, 255); e: rgba(74,20,140,255);"_s;

        QCOMPARE(recolored(sheet, themeReplacements(1)),
            u"a: #2ba9e0; b: #9d39e3; c: #2ba9e0; d: rgba(20, 90, 140, 255); e: rgba(74,20,140,255);"_s);
        QCOMPARE(recolored(sheet, themeReplacements(0)), sheet);
    }
};

NUBARIA_CORE_TEST_MAIN(ColorThemesTest)
#include "colorthemestest.moc"
