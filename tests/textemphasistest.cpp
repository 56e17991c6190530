#include "mainwindow/textemphasis.h"

#include "support/home.h"
#include "support/testmain.h"
#include "support/window.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

/// How much of the widget is text: dark pixels on the light ground that the window gives it.
int darkPixels(QWidget *widget)
{
    QWidget *window = widget->window();
    const QRect place(widget->mapTo(window, QPoint()), widget->size());
    const QImage image = window->grab(place).toImage();
    int dark = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            dark += qGray(image.pixel(x, y)) < 128 ? 1 : 0;
        }
    }
    return dark;
}

struct Look
{
    int weight = 0;
    qreal pointSize = 0;
    QStringList families;

    bool operator==(const Look &other) const = default;
};

QMap<QString, Look> looks(const MainWindow &window)
{
    QMap<QString, Look> result;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (!widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_"_L1)) {
            const QFont font = widget->font();
            result.insert(widget->objectName(), {font.weight(), font.pointSizeF(), font.families()});
        }
    }
    return result;
}

} // namespace

class TextEmphasisTest final : public QObject
{
    Q_OBJECT
private slots:
    void init() { home::reset(); }

    void raisesLightWeightsOnly_data();
    void raisesLightWeightsOnly();
    void leavesSizesAndFamilies();
    void restoresEveryWeight();
    void restoresForAnyOtherMode_data();
    void restoresForAnyOtherMode();
    void storesTheModeInTheMainStore();
    void isSeenOnTheScreen();
    void isThereFromTheFirstFrameWhenStored();
    void staysWhenThePaletteChanges();
    void staysUnsetForAStoredModeOutOfRange();
};

void TextEmphasisTest::raisesLightWeightsOnly_data()
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

void TextEmphasisTest::raisesLightWeightsOnly()
{
    QFETCH(int, base);
    QFETCH(int, mode);
    QFETCH(int, weight);

    QCOMPARE(emphasisedWeight(base, mode), weight);
}

void TextEmphasisTest::leavesSizesAndFamilies()
{
    const MainWindow window;
    QMap<QString, Look> expected = looks(window);
    QVERIFY(expected.size() >= 137);
    for (Look &look : expected) {
        QCOMPARE(look.weight, 400);
        look.weight = 600;
    }

    widget<QComboBox>(window, "ChangeTextTheme")->setCurrentIndex(1);

    QCOMPARE(looks(window), expected);
    QCOMPARE(window.font().weight(), QFont::DemiBold);
}

void TextEmphasisTest::restoresEveryWeight()
{
    const MainWindow window;
    const QMap<QString, Look> before = looks(window);
    auto *chooser = widget<QComboBox>(window, "ChangeTextTheme");

    chooser->setCurrentIndex(1);
    chooser->setCurrentIndex(0);

    QCOMPARE(looks(window), before);
    QCOMPARE(window.font().weight(), QFont::Normal);
}

void TextEmphasisTest::restoresForAnyOtherMode_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("0") << 0;
    QTest::newRow("2") << 2;
    QTest::newRow("-1") << -1;
}

void TextEmphasisTest::restoresForAnyOtherMode()
{
    QFETCH(int, mode);
    MainWindow window;
    const QMap<QString, Look> before = looks(window);
    callSlot(window, "applyTextEmphasis", 1);
    QVERIFY(looks(window) != before);

    callSlot(window, "applyTextEmphasis", mode);

    QCOMPARE(looks(window), before);
    QCOMPARE(home::preference(u"textEmphasis"_s).toInt(), mode);
}

void TextEmphasisTest::storesTheModeInTheMainStore()
{
    const MainWindow window;
    QVERIFY(!home::preference(u"textEmphasis"_s).isValid());

    widget<QComboBox>(window, "ChangeTextTheme")->setCurrentIndex(1);

    QCOMPARE(home::preference(u"textEmphasis"_s).toInt(), 1);
    QVERIFY(!home::themePreference(u"textEmphasis"_s).isValid());
}

void TextEmphasisTest::isSeenOnTheScreen()
{
    MainWindow window;
    window.show();
    auto *label = widget<QLabel>(window, "LabelDayMonthTxt");
    auto *button = widget<QPushButton>(window, "NewTaskViewButton");
    const int labelInk = darkPixels(label);
    const int buttonInk = darkPixels(button);

    callSlot(window, "applyTextEmphasis", 1);

    QVERIFY2(darkPixels(label) > labelInk * 11 / 10,
        qPrintable(u"%1 against %2"_s.arg(darkPixels(label)).arg(labelInk)));
    QVERIFY2(darkPixels(button) > buttonInk,
        qPrintable(u"%1 against %2"_s.arg(darkPixels(button)).arg(buttonInk)));
    callSlot(window, "applyTextEmphasis", 0);
    QCOMPARE(darkPixels(label), labelInk);
}

void TextEmphasisTest::isThereFromTheFirstFrameWhenStored()
{
    QImage plain;
    {
        MainWindow window;
        window.show();
        plain = widget(window, "MainMenu")->grab().toImage();
    }
    home::setPreference(u"textEmphasis"_s, 1);

    MainWindow window;
    window.show();

    const QImage first = widget(window, "MainMenu")->grab().toImage();
    QVERIFY(first != plain);
    callSlot(window, "applyTextEmphasis", 1);
    QCOMPARE(widget(window, "MainMenu")->grab().toImage(), first);
    QCOMPARE(widget<QComboBox>(window, "ChangeTextTheme")->currentIndex(), 1);
}

void TextEmphasisTest::staysWhenThePaletteChanges()
{
    MainWindow window;
    window.show();
    widget<QComboBox>(window, "ChangeTextTheme")->setCurrentIndex(1);
    const QMap<QString, Look> emphasised = looks(window);
    auto *palettes = widget<QComboBox>(window, "ChangeColorTheme");

    for (const int index : {3, 1, 6, 0}) {
        palettes->setCurrentIndex(index);
        QCOMPARE(looks(window), emphasised);
    }
}

void TextEmphasisTest::staysUnsetForAStoredModeOutOfRange()
{
    home::setPreference(u"textEmphasis"_s, 9);

    const MainWindow window;

    // The chooser knows no ninth item, shows its placeholder and says so.
    QCOMPARE(widget<QComboBox>(window, "ChangeTextTheme")->currentIndex(), -1);
    QCOMPARE(home::preference(u"textEmphasis"_s).toInt(), -1);
    QCOMPARE(widget<QLabel>(window, "SubTitleLabelTxt")->font().weight(), QFont::Normal);
}

NUBARIA_TEST_MAIN(TextEmphasisTest)
#include "textemphasistest.moc"
