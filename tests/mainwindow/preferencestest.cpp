#include "support/filedialog.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/replaced.h"
#include "support/settingswidgets.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString chosenPicture = u"/tmp/retrato de Íñigo.png"_s;

QStringList keysOf(const QString &application)
{
    QSettings store(u"Quenoli"_s, application);
    store.sync();
    return store.allKeys();
}

QString fileOf(const QString &application)
{
    return QSettings(u"Quenoli"_s, application).fileName();
}

QStringList mainKeys()
{
    return keysOf(u"Quenoli"_s);
}

QStringList themeKeys()
{
    return keysOf(u"QuenoliTheme"_s);
}

// Every way in which a user can make the program store something, and some in which it stores nothing.
void useEverything(MainWindow &window)
{
    const MessageBoxes unexpected; // a box that nobody answers would block for good
    window.show();
    for (const char *page : {"NewTaskViewButton", "SettingsViewButton", "ProfileViewButton",
             "PatchNoticesViewButton", "TaskViewButton"}) {
        click(window, page);
    }
    for (const char *name : {"SimpleNotify", "AdvancedNotify", "changeClose"}) {
        box(window, name).click();
    }
    combo(window, "ChangeColorTheme").setCurrentIndex(5);
    combo(window, "ChangeTextTheme").setCurrentIndex(1);
    combo(window, "DisplayMessage").setCurrentIndex(2);
    combo(window, "OrderNotesBy").setCurrentIndex(1);
    widget<QLineEdit>(window, "SearchTask")->setText(u"pan"_s);
    filedialog::answer() = chosenPicture;
    click(window, "SetProfile");
    click(window, "SetProfileInfo");
    widget<QLineEdit>(window, "UserName")->setText(u"Íñigo"_s);
    widget<QLineEdit>(window, "UserMail")->setText(u"inigo@casa.example"_s);
    click(window, "SaveProfileInfo");
    widget<QLineEdit>(window, "TaskTitle")->setText(u"Comprar pan"_s);
    widget<QTextEdit>(window, "TaskDescription")->setPlainText(u"De masa madre"_s);
    combo(window, "CategoryTaskBox").setCurrentIndex(0);
    combo(window, "UrgencyTaskBox").setCurrentIndex(4);
    click(window, "SaveTaskButton");
    callSlot(window, "checkTaskReminders");
    callSlot(window, "showUpdateMessage");
    click(window, "CancelUpdate");
    window.close();
    QCOMPARE(unexpected.shown().size(), 0);
}

} // namespace

class PreferencesTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void initTestCase() { QGuiApplication::setQuitOnLastWindowClosed(false); }

    void startsWithDefaultsAndStoresOnlyTwoOfThem()
    {
        const MainWindow window;

        QVERIFY(box(window, "SimpleNotify").isChecked());
        QVERIFY(!box(window, "AdvancedNotify").isChecked());
        QVERIFY(!box(window, "changeClose").isChecked());
        QCOMPARE(combo(window, "ChangeColorTheme").currentIndex(), 0);
        QCOMPARE(combo(window, "ChangeTextTheme").currentIndex(), 0);
        QCOMPARE(combo(window, "DisplayMessage").currentIndex(), 0);
        QCOMPARE(mainKeys(), QStringList({u"displayMessageIndex"_s, u"simpleNotify"_s}));
        QCOMPARE(home::preference(u"displayMessageIndex"_s), QVariant(0));
        QCOMPARE(home::preference(u"simpleNotify"_s), QVariant(true));
        QCOMPARE(themeKeys(), QStringList());
    }

    void writesNeitherStoreAtAStartThatChangesNothing()
    {
        {
            const MainWindow window;
            box(window, "AdvancedNotify").click();
            combo(window, "ChangeColorTheme").setCurrentIndex(5);
            combo(window, "ChangeTextTheme").setCurrentIndex(1);
            combo(window, "DisplayMessage").setCurrentIndex(2);
        }
        // Whoever writes a store leaves out what is none of its values.
        const QByteArray remark = "; a remark of the user's\n";
        const QStringList files = {fileOf(u"Quenoli"_s), fileOf(u"QuenoliTheme"_s)};
        for (const QString &name : files) {
            QFile file(name);
            QVERIFY(file.open(QIODevice::Append));
            file.write(remark);
        }
        {
            const MainWindow window;
            QCOMPARE(combo(window, "ChangeColorTheme").currentIndex(), 5);
            QCOMPARE(combo(window, "ChangeTextTheme").currentIndex(), 1);
            QCOMPARE(combo(window, "DisplayMessage").currentIndex(), 2);
            QVERIFY(box(window, "AdvancedNotify").isChecked());
        }
        for (const QString &name : files) {
            QFile file(name);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QVERIFY2(file.readAll().endsWith(remark), qPrintable(name));
        }
    }

    void storesNothingButItsKeysAndRemovesNone()
    {
        home::setPreference(u"deOtraVersion"_s, u"sigue"_s);
        home::setThemePreference(u"deOtraVersion"_s, u"sigue"_s);
        MainWindow window;

        useEverything(window);

        QCOMPARE(mainKeys(),
            QStringList({u"advancedNotify"_s, u"changeClose"_s, u"deOtraVersion"_s, u"displayMessageIndex"_s,
                u"email"_s, u"firstName"_s, u"profilePicturePath"_s, u"simpleNotify"_s, u"textEmphasis"_s}));
        QCOMPARE(themeKeys(), QStringList({u"colorIndex"_s, u"deOtraVersion"_s}));
        QCOMPARE(home::preference(u"deOtraVersion"_s), QVariant(u"sigue"_s));
        QCOMPARE(home::themePreference(u"deOtraVersion"_s), QVariant(u"sigue"_s));
    }

    void storesEachValueWithItsType()
    {
        MainWindow window;

        useEverything(window);
        callSlot(window, "handleSoundThemeIndexChanged", 4);

        const std::initializer_list<std::pair<QString, QVariant>> expected
            = {{u"simpleNotify"_s, false}, {u"advancedNotify"_s, true}, {u"changeClose"_s, true},
                {u"textEmphasis"_s, 1}, {u"displayMessageIndex"_s, 2}, {u"firstName"_s, u"Íñigo"_s},
                {u"email"_s, u"inigo@casa.example"_s}, {u"profilePicturePath"_s, chosenPicture},
                {u"soundThemeIndex"_s, 4}};
        for (const auto &[key, value] : expected) {
            QVERIFY2(home::preference(key).metaType() == value.metaType(), qPrintable(key));
            QCOMPARE(home::preference(key), value);
        }
        QVERIFY(home::themePreference(u"colorIndex"_s).metaType() == QMetaType::fromType<int>());
        QCOMPARE(home::themePreference(u"colorIndex"_s), QVariant(5));
    }

    void showsAtTheNextStartWhatTheLastOneStored()
    {
        {
            MainWindow window;
            useEverything(window);
        }

        const MainWindow window;

        QVERIFY(!box(window, "SimpleNotify").isChecked());
        QVERIFY(box(window, "AdvancedNotify").isChecked());
        QVERIFY(box(window, "changeClose").isChecked());
        QCOMPARE(combo(window, "ChangeColorTheme").currentText(), u"Jasminum"_s);
        QCOMPARE(combo(window, "ChangeTextTheme").currentText(), u"Activado"_s);
        QCOMPARE(combo(window, "DisplayMessage").currentIndex(), 2);
        QCOMPARE(widget<QLabel>(window, "LabelDayTxt")->text(), u"¡Hola, Íñigo!"_s);
        QCOMPARE(widget<QLineEdit>(window, "UserMail")->text(), u"inigo@casa.example"_s);
    }

    void keepsTwoPlainFilesInTheUsersConfiguration()
    {
        const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + "/Quenoli/"_L1;
        {
            MainWindow window;
            useEverything(window);
        }

        QFile mainFile(folder + "Quenoli.conf"_L1);
        QVERIFY(mainFile.open(QIODevice::ReadOnly));
        const QByteArray mainLines = mainFile.readAll();
        QVERIFY2(mainLines.startsWith("[General]\n") && mainLines.count('[') == 1, mainLines.constData());
        QVERIFY2(mainLines.contains("\nsimpleNotify=false\n"), mainLines.constData());
        QVERIFY2(mainLines.contains("\ntextEmphasis=1\n"), mainLines.constData());
        QFile themeFile(folder + "QuenoliTheme.conf"_L1);
        QVERIFY(themeFile.open(QIODevice::ReadOnly));
        QCOMPARE(themeFile.readAll(), QByteArray("[General]\ncolorIndex=5\n"));
    }

    void keepsTheColourInTheThemeStoreAndTheEmphasisInTheMainOne()
    {
        home::setPreference(u"colorIndex"_s, 2);
        home::setThemePreference(u"textEmphasis"_s, 1);
        const MainWindow window;
        QCOMPARE(combo(window, "ChangeColorTheme").currentIndex(), 0);
        QCOMPARE(combo(window, "ChangeTextTheme").currentIndex(), 0);

        combo(window, "ChangeColorTheme").setCurrentIndex(3);
        combo(window, "ChangeTextTheme").setCurrentIndex(1);
        combo(window, "ChangeTextTheme").setCurrentIndex(0);

        QCOMPARE(home::themePreference(u"colorIndex"_s), QVariant(3));
        QCOMPARE(home::preference(u"colorIndex"_s), QVariant(2));
        QCOMPARE(home::preference(u"textEmphasis"_s), QVariant(0));
        QCOMPARE(home::themePreference(u"textEmphasis"_s), QVariant(1));
    }

    void neverTouchesTheLastActivityDate_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::newRow("absent") << QVariant();
        QTest::newRow("date") << QVariant(QDate(2020, 2, 29));
        QTest::newRow("invalid") << QVariant(u"ayer"_s);
        QTest::newRow("list") << QVariant(QStringList({u"a"_s, u"b"_s}));
    }

    void neverTouchesTheLastActivityDate()
    {
        QFETCH(QVariant, stored);
        if (stored.isValid()) {
            home::setPreference(u"lastActivityDate"_s, stored);
        }
        MainWindow window;

        useEverything(window);

        QCOMPARE(mainKeys().contains(u"lastActivityDate"_s), stored.isValid());
        QCOMPARE(home::preference(u"lastActivityDate"_s), stored);
    }

    void readsTheMainStoreAfreshForTheGreetingOnly()
    {
        MainWindow window;
        home::setPreference(u"firstName"_s, u"Eva"_s);
        home::setPreference(u"changeClose"_s, true);
        home::setThemePreference(u"colorIndex"_s, 4);

        callSlot(window, "updateLabels", 2);

        QCOMPARE(widget<QLabel>(window, "LabelDayTxt")->text(), u"¡Hola, Eva!"_s);
        QVERIFY(!box(window, "changeClose").isChecked());
        QCOMPARE(combo(window, "ChangeColorTheme").currentIndex(), 0);
    }

    void storesTheSoundThemeThatNobodyReads_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("first") << 0;
        QTest::newRow("some") << 5;
        QTest::newRow("none") << -1;
    }

    void storesTheSoundThemeThatNobodyReads()
    {
        QFETCH(int, index);
        home::setPreference(u"soundThemeIndex"_s, 3);
        MainWindow window;
        QCOMPARE(home::preference(u"soundThemeIndex"_s), QVariant(3));

        callSlot(window, "handleSoundThemeIndexChanged", index);

        QCOMPARE(home::preference(u"soundThemeIndex"_s), QVariant(index));
    }
};

NUBARIA_TEST_MAIN(PreferencesTest)
#include "preferencestest.moc"
