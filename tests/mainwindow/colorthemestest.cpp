#include "support/home.h"
#include "support/paintcounter.h"
#include "support/palettes.h"
#include "support/replaced.h"
#include "support/window.h"
#include "support/windowtest.h"
#include "ui_mainwindow.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include <algorithm>
#include <functional>

#ifndef Q_OS_WIN
#include <dlfcn.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

/// The style sheet of each widget of the form, by its name.
using Sheets = QMap<QString, QString>;

Sheets sheets(const QWidget &window)
{
    Sheets result;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (!widget->styleSheet().isEmpty()) {
            result.insert(widget->objectName(), widget->styleSheet());
        }
    }
    return result;
}

/// A picture of the window on each of its pages.
QMap<QByteArray, QImage> pictures(MainWindow &window)
{
    QMap<QByteArray, QImage> result;
    for (const char *button : {"TaskViewButton", "NewTaskViewButton", "SettingsViewButton",
             "ProfileViewButton", "PatchNoticesViewButton"}) {
        widget<QPushButton>(window, button)->click();
        result.insert(button, window.grab().toImage());
    }
    return result;
}

QString recoloredByTable(QString sheet, const QString &theme)
{
    const QStringList from = paletteColors(u"Bugambilia"_s);
    const QStringList to = paletteColors(theme);
    for (qsizetype i = 0; i < from.size(); ++i) {
        sheet.replace(from.at(i), to.at(i));
    }
    return sheet;
}

/// Every call of `QWidget::setStyleSheet` since the list was cleared.
QList<std::pair<QWidget *, QString>> &sheetCalls()
{
    static QList<std::pair<QWidget *, QString>> calls;
    return calls;
}

} // namespace

#ifndef Q_OS_WIN
// A sheet that is set once more shows nowhere.
void QWidget::setStyleSheet(const QString &sheet)
{
    sheetCalls().append({this, sheet});
    using Call = void (*)(QWidget *, const QString &);
    static const auto real
        = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "_ZN7QWidget13setStyleSheetERK7QString"));
    real(this, sheet);
}
NUBARIA_REPLACES("_ZN7QWidget13setStyleSheetERK7QString");
#endif

class ColorThemesTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void offersTheSevenPalettesInOrder()
    {
        const MainWindow window;
        const auto *chooser = widget<QComboBox>(window, "ChangeColorTheme");

        QStringList names;
        for (int i = 0; i < chooser->count(); ++i) {
            names.append(chooser->itemText(i));
            QVERIFY(chooser->itemIcon(i).isNull());
            QVERIFY(!chooser->itemData(i).isValid());
        }
        QCOMPARE(names, paletteNames());
        QVERIFY(chooser->isEnabled());
    }

    void recoloursEverySheetFromAnyPaletteToAnyOther_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        for (int from = 0; from < paletteNames().size(); ++from) {
            for (int to = 0; to < paletteNames().size(); ++to) {
                if (from != to) {
                    QTest::addRow(
                        "%s to %s", qPrintable(paletteNames().at(from)), qPrintable(paletteNames().at(to)))
                        << from << to;
                }
            }
        }
    }

    void recoloursEverySheetFromAnyPaletteToAnyOther()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        const MainWindow window;
        Sheets expected = sheets(window);
        QVERIFY(expected.size() > 100);
        for (QString &sheet : expected) {
            sheet = recoloredByTable(sheet, paletteNames().at(to));
        }
        auto *chooser = widget<QComboBox>(window, "ChangeColorTheme");

        chooser->setCurrentIndex(from);
        chooser->setCurrentIndex(to);

        QCOMPARE(sheets(window), expected);
    }

    void restoresTheFormByteForByte()
    {
        const MainWindow window;
        const Sheets form = sheets(window);
        auto *chooser = widget<QComboBox>(window, "ChangeColorTheme");
        for (int index = 1; index < paletteNames().size(); ++index) {
            chooser->setCurrentIndex(index);
            QVERIFY(sheets(window) != form);
        }

        chooser->setCurrentIndex(0);

        QCOMPARE(sheets(window), form);
    }

    void restoresTheFormForAnIndexOutOfRange_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("9") << 9;
        QTest::newRow("7") << 7;
        QTest::newRow("-1") << -1;
    }

    void restoresTheFormForAnIndexOutOfRange()
    {
        QFETCH(int, index);
        MainWindow window;
        const Sheets form = sheets(window);
        callSlot(window, "applyColorTheme", 3);

        callSlot(window, "applyColorTheme", index);

        QCOMPARE(sheets(window), form);
        QCOMPARE(home::themePreference(u"colorIndex"_s).toInt(), index);
    }

    void honoursTheStoredIndexAtTheStart_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < paletteNames().size(); ++i) {
            QTest::newRow(qPrintable(paletteNames().at(i))) << i;
        }
    }

    void honoursTheStoredIndexAtTheStart()
    {
        QFETCH(int, index);
        Sheets expected;
        {
            const MainWindow window;
            expected = sheets(window);
        }
        for (QString &sheet : expected) {
            sheet = index == 0 ? sheet : recoloredByTable(sheet, paletteNames().at(index));
        }
        home::setThemePreference(u"colorIndex"_s, index);

        const MainWindow window;

        QCOMPARE(widget<QComboBox>(window, "ChangeColorTheme")->currentText(), paletteNames().at(index));
        QCOMPARE(sheets(window), expected);
    }

    void handsAStoredIndexOutOfRangeToTheChooser()
    {
        home::setThemePreference(u"colorIndex"_s, 9);

        const MainWindow window;

        QCOMPARE(widget<QComboBox>(window, "ChangeColorTheme")->currentIndex(), -1);
        QCOMPARE(home::themePreference(u"colorIndex"_s).toInt(), -1);
        QVERIFY(widget(window, "SaveTaskButton")->styleSheet().contains("#9D39E3"_L1));
    }

    void storesTheIndexInTheThemeStoreOnly()
    {
        const MainWindow window;

        widget<QComboBox>(window, "ChangeColorTheme")->setCurrentIndex(4);

        QCOMPARE(home::themePreference(u"colorIndex"_s).toInt(), 4);
        QVERIFY(!home::preference(u"colorIndex"_s).isValid());
    }

    void storesNothingForTheFirstStart()
    {
        const MainWindow window;

        QVERIFY(!home::themePreference(u"colorIndex"_s).isValid());
    }

    void leavesWidgetsWithoutASheetOfTheFormAlone()
    {
        const MainWindow window;
        const QString own = u"background-color: #9D39E3;"_s;
        widget(window, "TasksPage")->setStyleSheet(own);
        auto *chooser = widget<QComboBox>(window, "ChangeColorTheme");

        for (const int index : {2, 5, 0}) {
            chooser->setCurrentIndex(index);
            QCOMPARE(widget(window, "TasksPage")->styleSheet(), own);
            QCOMPARE(window.styleSheet(), u"QWidget { font-family: Gantari ; background-color: white; }"_s);
        }
    }

    void givesAWidgetItsOwnSheetBack()
    {
        const MainWindow window;
        auto *button = widget(window, "SaveTaskButton");
        const QString form = button->styleSheet();
        button->setStyleSheet(u"color: green;"_s);

        widget<QComboBox>(window, "ChangeColorTheme")->setCurrentIndex(3);

        QCOMPARE(button->styleSheet(), recoloredByTable(form, u"Amapola"_s));
    }

    void leavesTheGreysOfTheSidebar()
    {
        const MainWindow window;
        auto *chooser = widget<QComboBox>(window, "ChangeColorTheme");

        for (int index = 0; index < paletteNames().size(); ++index) {
            chooser->setCurrentIndex(index);
            const QString sheet = widget(window, "MainMenu")->styleSheet();
            QVERIFY(sheet.contains("rgba(242, 242, 242, 255)"_L1));
            QVERIFY(sheet.contains("rgba(241, 241, 241, 255)"_L1));
            QCOMPARE(sheet.contains("rgba(218, 212, 255, 255)"_L1), index == 0);
            QCOMPARE(widget(window, "FrameUpdater")->styleSheet().contains("rgba(198, 141, 224, 255)"_L1),
                index == 0);
            QCOMPARE(widget(window, "CodeNameProgram")->styleSheet().contains("rgba(74, 20, 140, 255)"_L1),
                index == 0);
        }
    }

    void looksTheSameWhetherChosenOrStored_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 1; i < paletteNames().size(); ++i) {
            QTest::newRow(qPrintable(paletteNames().at(i))) << i;
        }
    }

    void looksTheSameWhetherChosenOrStored()
    {
        QFETCH(int, index);
        QMap<QByteArray, QImage> chosen;
        {
            MainWindow window;
            window.show();
            pictures(window); // every page has been shown, and so polished, in the form's colours
            widget<QComboBox>(window, "ChangeColorTheme")->setCurrentIndex(7 - index);
            pictures(window);
            widget<QComboBox>(window, "ChangeColorTheme")->setCurrentIndex(index);
            chosen = pictures(window);
        }
        QCOMPARE(home::themePreference(u"colorIndex"_s).toInt(), index);

        MainWindow window;
        window.show();
        const QMap<QByteArray, QImage> stored = pictures(window);

        for (auto page = stored.cbegin(); page != stored.cend(); ++page) {
            QVERIFY2(chosen.value(page.key()) == page.value(), page.key().constData());
        }
    }

    void paintsNothingBetweenTwoPalettes()
    {
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCoreApplication::processEvents();
        const PaintCounter painted(qApp);

        callSlot(window, "applyColorTheme", 3);

        QCOMPARE(painted.count(), 0);
        QTRY_VERIFY(painted.count() > 0);
    }

#ifndef Q_OS_WIN
    void setsEverySheetOfTheFormOnEveryCall_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("index");
        QTest::newRow("the form's own colours once more") << 0 << 0;
        QTest::newRow("Amapola once more") << 3 << 3;
        QTest::newRow("Amapola to Myosotis") << 3 << 1;
        QTest::newRow("out of range") << 0 << 9;
    }

    void setsEverySheetOfTheFormOnEveryCall()
    {
        QFETCH(int, before);
        QFETCH(int, index);
        QMainWindow bare;
        Ui_MainWindow form{};
        form.setupUi(&bare);
        Sheets expected = sheets(bare);
        QVERIFY(expected.size() > 100);
        for (QString &sheet : expected) {
            sheet = recoloredByTable(sheet, paletteNames().value(index, u"Bugambilia"_s));
        }
        MainWindow window;
        callSlot(window, "applyColorTheme", before);
        sheetCalls().clear();

        callSlot(window, "applyColorTheme", index);

        QList<QWidget *> widgets;
        Sheets set;
        for (const auto &[widget, sheet] : std::as_const(sheetCalls())) {
            widgets.append(widget);
            set.insert(widget->objectName(), sheet);
        }
        QCOMPARE(set, expected);
        QCOMPARE(widgets.size(), expected.size());
        QVERIFY(std::ranges::is_sorted(widgets, std::less<>()));
    }
#endif
};

NUBARIA_TEST_MAIN(ColorThemesTest)
#include "colorthemestest.moc"
