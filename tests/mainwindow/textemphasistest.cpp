#include "core/textemphasis.h"

#include "support/home.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>

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

/// The widgets of the form.
QList<QWidget *> named(const MainWindow &window)
{
    QList<QWidget *> widgets = window.findChildren<QWidget *>();
    widgets.removeIf([](const QWidget *widget) {
        return widget->objectName().isEmpty() || widget->objectName().startsWith("qt_"_L1);
    });
    return widgets;
}

QMap<QString, Look> looks(const MainWindow &window)
{
    QMap<QString, Look> result;
    for (const QWidget *widget : named(window)) {
        const QFont font = widget->font();
        result.insert(widget->objectName(), {font.weight(), font.pointSizeF(), font.families()});
    }
    return result;
}

QStringList sheets(const MainWindow &window)
{
    QStringList result;
    for (const QWidget *widget : named(window)) {
        result.append(widget->styleSheet());
    }
    return result;
}

QList<QImage> pictures(MainWindow &window)
{
    QList<QImage> result;
    for (const char *page :
        {"NewTaskViewButton", "ProfileViewButton", "SettingsViewButton", "PatchNoticesViewButton"}) {
        click(window, page);
        result.append(window.grab().toImage());
    }
    return result;
}

} // namespace

class TextEmphasisTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void leavesSizesAndFamilies()
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

    void restoresEveryWeight()
    {
        const MainWindow window;
        const QMap<QString, Look> before = looks(window);
        auto *chooser = widget<QComboBox>(window, "ChangeTextTheme");

        chooser->setCurrentIndex(1);
        chooser->setCurrentIndex(0);

        QCOMPARE(looks(window), before);
        QCOMPARE(window.font().weight(), QFont::Normal);
    }

    void restoresForAnyOtherMode_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("0") << 0;
        QTest::newRow("2") << 2;
        QTest::newRow("-1") << -1;
    }

    void restoresForAnyOtherMode()
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

    void storesTheModeInTheMainStore()
    {
        const MainWindow window;
        QVERIFY(!home::preference(u"textEmphasis"_s).isValid());

        widget<QComboBox>(window, "ChangeTextTheme")->setCurrentIndex(1);

        QCOMPARE(home::preference(u"textEmphasis"_s).toInt(), 1);
        QVERIFY(!home::themePreference(u"textEmphasis"_s).isValid());
    }

    void isSeenOnTheScreen()
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

    void isThereFromTheFirstFrameWhenStored()
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

    void staysWhenThePaletteChanges()
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

    void staysUnsetForAStoredModeOutOfRange()
    {
        home::setPreference(u"textEmphasis"_s, 9);

        const MainWindow window;

        // The chooser knows no ninth item, shows its placeholder and says so.
        QCOMPARE(widget<QComboBox>(window, "ChangeTextTheme")->currentIndex(), -1);
        QCOMPARE(home::preference(u"textEmphasis"_s).toInt(), -1);
        QCOMPARE(widget<QLabel>(window, "SubTitleLabelTxt")->font().weight(), QFont::Normal);
    }

    void isThereTogetherWithAStoredPalette()
    {
        QMap<QString, Look> plain;
        QStringList chosenSheets;
        QList<QImage> chosen;
        {
            MainWindow window;
            window.show();
            plain = looks(window);
            widget<QComboBox>(window, "ChangeColorTheme")->setCurrentIndex(3);
            widget<QComboBox>(window, "ChangeTextTheme")->setCurrentIndex(1);
            chosenSheets = sheets(window);
            chosen = pictures(window);
        }
        QCOMPARE(home::themePreference(u"colorIndex"_s).toInt(), 3);
        QCOMPARE(home::preference(u"textEmphasis"_s).toInt(), 1);

        MainWindow window;
        window.show();

        QCOMPARE(widget<QComboBox>(window, "ChangeColorTheme")->currentIndex(), 3);
        QCOMPARE(widget<QComboBox>(window, "ChangeTextTheme")->currentIndex(), 1);
        QCOMPARE(sheets(window), chosenSheets);
        QVERIFY(pictures(window) == chosen);
        QMap<QString, Look> emphasised = plain;
        for (Look &look : emphasised) {
            look.weight = 600;
        }
        QCOMPARE(looks(window), emphasised);
        widget<QComboBox>(window, "ChangeTextTheme")->setCurrentIndex(0);
        QCOMPARE(looks(window), plain);
        QCOMPARE(sheets(window), chosenSheets);
    }

    // The sheets of a palette have the choosers make their lists, and the weights are taken after that.
    void emphasisesTheListsThatAStoredPaletteHasMade()
    {
        home::setThemePreference(u"colorIndex"_s, 3);
        home::setPreference(u"textEmphasis"_s, 1);
        const MainWindow window;

        QList<QWidget *> lists = window.findChildren<QWidget *>();
        erase_if(lists, [](const QWidget *widget) { return !widget->inherits("QComboBoxListView"); });

        QVERIFY(!lists.isEmpty());
        for (const QWidget *list : std::as_const(lists)) {
            QCOMPARE(list->font().weight(), QFont::DemiBold);
        }
    }

    void keepsABoldBaseThroughEveryMode()
    {
        const QFont usual = QApplication::font("QLabel");
        const auto restore = qScopeGuard([&usual] { QApplication::setFont(usual, "QLabel"); });
        QFont bold = usual;
        bold.setWeight(QFont::Bold);
        QApplication::setFont(bold, "QLabel");
        MainWindow window;
        const auto *label = widget<QLabel>(window, "SubTitleLabelTxt");
        const auto *button = widget<QPushButton>(window, "SaveTaskButton");
        QCOMPARE(label->font().weight(), QFont::Bold);
        QCOMPARE(button->font().weight(), QFont::Normal);

        for (const int mode : {1, 0, 1, -1}) {
            callSlot(window, "applyTextEmphasis", mode);

            QCOMPARE(label->font().weight(), QFont::Bold);
            QCOMPARE(button->font().weight(), mode == 1 ? QFont::DemiBold : QFont::Normal);
        }
    }

    void setsEveryFontOnEveryCall_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("on") << 1;
        QTest::newRow("off") << 0;
    }

    void setsEveryFontOnEveryCall()
    {
        QFETCH(int, mode);
        MainWindow window;
        const QList<QWidget *> own = named(window);
        QVERIFY(own.size() >= 137);
        callSlot(window, "applyTextEmphasis", mode);
        // Every font stays as it is to be, but Qt forgets that it was set.
        for (QWidget *widget : own) {
            widget->setAttribute(Qt::WA_SetFont, false);
        }

        callSlot(window, "applyTextEmphasis", mode);

        for (const QWidget *widget : own) {
            QVERIFY2(widget->testAttribute(Qt::WA_SetFont), qPrintable(widget->objectName()));
        }
    }
};

NUBARIA_TEST_MAIN(TextEmphasisTest)
#include "textemphasistest.moc"
