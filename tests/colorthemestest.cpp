#include "mainwindow/colorthemes.h"

#include "support/home.h"
#include "support/testmain.h"
#include "support/window.h"

#include <QComboBox>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

// A test builds its tables once, at its start.
// clazy:excludeall=non-pod-global-static
const QStringList themeNames = {u"Bugambilia"_s, u"Myosotis"_s, u"Helianthus"_s, u"Amapola"_s,
    u"Orchidaceae"_s, u"Jasminum"_s, u"Hydrangea"_s};

/// The style sheet of each widget of the form, by its name.
using Sheets = QMap<QString, QString>;

Sheets sheets(const MainWindow &window)
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

/// Counts how often any widget is painted.
class PaintCounter final : public QObject
{
public:
    int count() const { return m_count; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

private:
    int m_count = 0;
};

} // namespace

class ColorThemesTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { home::reset(); }

    void hasFifteenReplacementsInOrder_data();
    void hasFifteenReplacementsInOrder();
    void hasNoReplacementsForAnyOtherIndex_data();
    void hasNoReplacementsForAnyOtherIndex();
    void recoloursEveryOccurrenceInItsLetterCaseOnly();
    void offersTheSevenPalettesInOrder();
    void recoloursEverySheetFromAnyPaletteToAnyOther_data();
    void recoloursEverySheetFromAnyPaletteToAnyOther();
    void restoresTheFormByteForByte();
    void restoresTheFormForAnIndexOutOfRange_data();
    void restoresTheFormForAnIndexOutOfRange();
    void honoursTheStoredIndexAtTheStart_data();
    void honoursTheStoredIndexAtTheStart();
    void handsAStoredIndexOutOfRangeToTheChooser();
    void storesTheIndexInTheThemeStoreOnly();
    void storesNothingForTheFirstStart();
    void leavesWidgetsWithoutASheetOfTheFormAlone();
    void givesAWidgetItsOwnSheetBack();
    void leavesTheGreysOfTheSidebar();
    void looksTheSameWhetherChosenOrStored_data() { hasFifteenReplacementsInOrder_data(); }
    void looksTheSameWhetherChosenOrStored();
    void paintsNothingBetweenTwoPalettes();

private:
    QStringList colors(const QString &theme) const;
    QString recoloredByTable(QString sheet, const QString &theme) const;

    QJsonObject m_palettes;
};

void ColorThemesTest::initTestCase()
{
    QFile file(QFINDTESTDATA("data/palettes.json"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_palettes = QJsonDocument::fromJson(file.readAll()).object();
    for (const QString &name : themeNames) {
        QCOMPARE(colors(name).size(), 15);
    }
}

QStringList ColorThemesTest::colors(const QString &theme) const
{
    QStringList result;
    const QJsonArray named = m_palettes.value(theme).toArray();
    for (const auto &color : named) {
        result.append(color.toString());
    }
    return result;
}

QString ColorThemesTest::recoloredByTable(QString sheet, const QString &theme) const
{
    const QStringList from = colors(u"Bugambilia"_s);
    const QStringList to = colors(theme);
    for (qsizetype i = 0; i < from.size(); ++i) {
        sheet.replace(from.at(i), to.at(i));
    }
    return sheet;
}

void ColorThemesTest::hasFifteenReplacementsInOrder_data()
{
    QTest::addColumn<int>("index");
    for (int i = 1; i < themeNames.size(); ++i) {
        QTest::newRow(qPrintable(themeNames.at(i))) << i;
    }
}

void ColorThemesTest::hasFifteenReplacementsInOrder()
{
    QFETCH(int, index);

    QStringList from;
    QStringList to;
    for (const ColorReplacement &replacement : themeReplacements(index)) {
        from.append(replacement.from);
        to.append(replacement.to);
    }

    QCOMPARE(from, colors(u"Bugambilia"_s));
    QCOMPARE(to, colors(themeNames.at(index)));
}

void ColorThemesTest::hasNoReplacementsForAnyOtherIndex_data()
{
    QTest::addColumn<int>("index");
    for (const int index : {0, -1, 7, 9, INT_MIN, INT_MAX}) {
        QTest::addRow("%d", index) << index;
    }
}

void ColorThemesTest::hasNoReplacementsForAnyOtherIndex()
{
    QFETCH(int, index);

    QCOMPARE(themeReplacements(index).size(), 0);
}

void ColorThemesTest::recoloursEveryOccurrenceInItsLetterCaseOnly()
{
    const QString sheet
        = u"a: #9D39E3; b: #9d39e3; c: #9D39E3; d: rgba(74, 20, 140, 255); e: rgba(74,20,140,255);"_s;

    QCOMPARE(recolored(sheet, themeReplacements(1)),
        u"a: #2ba9e0; b: #9d39e3; c: #2ba9e0; d: rgba(20, 90, 140, 255); e: rgba(74,20,140,255);"_s);
    QCOMPARE(recolored(sheet, themeReplacements(0)), sheet);
}

void ColorThemesTest::offersTheSevenPalettesInOrder()
{
    const MainWindow window;
    const auto *chooser = widget<QComboBox>(window, "ChangeColorTheme");

    QStringList names;
    for (int i = 0; i < chooser->count(); ++i) {
        names.append(chooser->itemText(i));
        QVERIFY(chooser->itemIcon(i).isNull());
        QVERIFY(!chooser->itemData(i).isValid());
    }
    QCOMPARE(names, themeNames);
    QVERIFY(chooser->isEnabled());
}

void ColorThemesTest::recoloursEverySheetFromAnyPaletteToAnyOther_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    for (int from = 0; from < themeNames.size(); ++from) {
        for (int to = 0; to < themeNames.size(); ++to) {
            if (from != to) {
                QTest::addRow("%s to %s", qPrintable(themeNames.at(from)), qPrintable(themeNames.at(to)))
                    << from << to;
            }
        }
    }
}

void ColorThemesTest::recoloursEverySheetFromAnyPaletteToAnyOther()
{
    QFETCH(int, from);
    QFETCH(int, to);
    const MainWindow window;
    Sheets expected = sheets(window);
    QVERIFY(expected.size() > 100);
    for (QString &sheet : expected) {
        sheet = recoloredByTable(sheet, themeNames.at(to));
    }
    auto *chooser = widget<QComboBox>(window, "ChangeColorTheme");

    chooser->setCurrentIndex(from);
    chooser->setCurrentIndex(to);

    QCOMPARE(sheets(window), expected);
}

void ColorThemesTest::restoresTheFormByteForByte()
{
    const MainWindow window;
    const Sheets form = sheets(window);
    auto *chooser = widget<QComboBox>(window, "ChangeColorTheme");
    for (int index = 1; index < themeNames.size(); ++index) {
        chooser->setCurrentIndex(index);
        QVERIFY(sheets(window) != form);
    }

    chooser->setCurrentIndex(0);

    QCOMPARE(sheets(window), form);
}

void ColorThemesTest::restoresTheFormForAnIndexOutOfRange_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("9") << 9;
    QTest::newRow("7") << 7;
    QTest::newRow("-1") << -1;
}

void ColorThemesTest::restoresTheFormForAnIndexOutOfRange()
{
    QFETCH(int, index);
    MainWindow window;
    const Sheets form = sheets(window);
    callSlot(window, "applyColorTheme", 3);

    callSlot(window, "applyColorTheme", index);

    QCOMPARE(sheets(window), form);
    QCOMPARE(home::themePreference(u"colorIndex"_s).toInt(), index);
}

void ColorThemesTest::honoursTheStoredIndexAtTheStart_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < themeNames.size(); ++i) {
        QTest::newRow(qPrintable(themeNames.at(i))) << i;
    }
}

void ColorThemesTest::honoursTheStoredIndexAtTheStart()
{
    QFETCH(int, index);
    Sheets expected;
    {
        const MainWindow window;
        expected = sheets(window);
    }
    for (QString &sheet : expected) {
        sheet = index == 0 ? sheet : recoloredByTable(sheet, themeNames.at(index));
    }
    home::setThemePreference(u"colorIndex"_s, index);

    const MainWindow window;

    QCOMPARE(widget<QComboBox>(window, "ChangeColorTheme")->currentText(), themeNames.at(index));
    QCOMPARE(sheets(window), expected);
}

void ColorThemesTest::handsAStoredIndexOutOfRangeToTheChooser()
{
    home::setThemePreference(u"colorIndex"_s, 9);

    const MainWindow window;

    QCOMPARE(widget<QComboBox>(window, "ChangeColorTheme")->currentIndex(), -1);
    QCOMPARE(home::themePreference(u"colorIndex"_s).toInt(), -1);
    QVERIFY(widget(window, "SaveTaskButton")->styleSheet().contains("#9D39E3"_L1));
}

void ColorThemesTest::storesTheIndexInTheThemeStoreOnly()
{
    const MainWindow window;

    widget<QComboBox>(window, "ChangeColorTheme")->setCurrentIndex(4);

    QCOMPARE(home::themePreference(u"colorIndex"_s).toInt(), 4);
    QVERIFY(!home::preference(u"colorIndex"_s).isValid());
}

void ColorThemesTest::storesNothingForTheFirstStart()
{
    const MainWindow window;

    QVERIFY(!home::themePreference(u"colorIndex"_s).isValid());
}

void ColorThemesTest::leavesWidgetsWithoutASheetOfTheFormAlone()
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

void ColorThemesTest::givesAWidgetItsOwnSheetBack()
{
    const MainWindow window;
    auto *button = widget(window, "SaveTaskButton");
    const QString form = button->styleSheet();
    button->setStyleSheet(u"color: green;"_s);

    widget<QComboBox>(window, "ChangeColorTheme")->setCurrentIndex(3);

    QCOMPARE(button->styleSheet(), recoloredByTable(form, u"Amapola"_s));
}

void ColorThemesTest::leavesTheGreysOfTheSidebar()
{
    const MainWindow window;
    auto *chooser = widget<QComboBox>(window, "ChangeColorTheme");

    for (int index = 0; index < themeNames.size(); ++index) {
        chooser->setCurrentIndex(index);
        const QString sheet = widget(window, "MainMenu")->styleSheet();
        QVERIFY(sheet.contains("rgba(242, 242, 242, 255)"_L1));
        QVERIFY(sheet.contains("rgba(241, 241, 241, 255)"_L1));
        QCOMPARE(sheet.contains("rgba(218, 212, 255, 255)"_L1), index == 0);
        QCOMPARE(
            widget(window, "FrameUpdater")->styleSheet().contains("rgba(198, 141, 224, 255)"_L1), index == 0);
        QCOMPARE(widget(window, "CodeNameProgram")->styleSheet().contains("rgba(74, 20, 140, 255)"_L1),
            index == 0);
    }
}

void ColorThemesTest::looksTheSameWhetherChosenOrStored()
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

void ColorThemesTest::paintsNothingBetweenTwoPalettes()
{
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCoreApplication::processEvents();
    PaintCounter painted;
    qApp->installEventFilter(&painted);

    callSlot(window, "applyColorTheme", 3);

    QCOMPARE(painted.count(), 0);
    QTRY_VERIFY(painted.count() > 0);
}

NUBARIA_TEST_MAIN(ColorThemesTest)
#include "colorthemestest.moc"
