#include "support/home.h"
#include "support/messageboxes.h"
#include "support/settingswidgets.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QLabel>
#include <QLineEdit>
#include <QSettings>

using namespace Qt::Literals::StringLiterals;

// What a start makes of stored values that are not what they should be.
class PreferencesStoredValuesTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void readsWhatIsNoBooleanAsFalse_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("read");
        QTest::newRow("true") << QVariant(true) << true;
        QTest::newRow("false") << QVariant(false) << false;
        QTest::newRow("one") << QVariant(1) << true;
        QTest::newRow("zero") << QVariant(0) << false;
        QTest::newRow("text true") << QVariant(u"true"_s) << true;
        QTest::newRow("text false") << QVariant(u"false"_s) << false;
        QTest::newRow("empty text") << QVariant(QString()) << false;
        QTest::newRow("list") << QVariant(QStringList({u"sí"_s, u"no"_s})) << false;
        QTest::newRow("date") << QVariant(QDate(2026, 3, 5)) << false;
        QTest::newRow("size") << QVariant(QSize(3, 4)) << false;
    }

    void readsWhatIsNoBooleanAsFalse()
    {
        QFETCH(QVariant, stored);
        QFETCH(bool, read);
        for (const QString &key : {u"simpleNotify"_s, u"advancedNotify"_s, u"changeClose"_s}) {
            home::setPreference(key, stored);
        }

        const MainWindow window;

        QCOMPARE(box(window, "SimpleNotify").isChecked(), read);
        QCOMPARE(box(window, "AdvancedNotify").isChecked(), read);
        QCOMPARE(box(window, "changeClose").isChecked(), read);
        // A box that is switched on stores that at once; one that stays off stores nothing.
        for (const QString &key : {u"simpleNotify"_s, u"advancedNotify"_s, u"changeClose"_s}) {
            QCOMPARE(home::preference(key), read ? QVariant(true) : stored);
        }
    }

    void readsWhatIsNoNumberAsZero_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::newRow("word") << QVariant(u"dos"_s);
        QTest::newRow("empty text") << QVariant(QString());
        QTest::newRow("number and text") << QVariant(u"1 o 2"_s);
        QTest::newRow("list") << QVariant(QStringList({u"1"_s, u"2"_s}));
        QTest::newRow("date") << QVariant(QDate(2026, 3, 5));
    }

    void readsWhatIsNoNumberAsZero()
    {
        QFETCH(QVariant, stored);
        home::setThemePreference(u"colorIndex"_s, stored);
        home::setPreference(u"textEmphasis"_s, stored);
        home::setPreference(u"displayMessageIndex"_s, stored);

        const MainWindow window;

        QCOMPARE(combo(window, "ChangeColorTheme").currentIndex(), 0);
        QCOMPARE(combo(window, "ChangeTextTheme").currentIndex(), 0);
        QCOMPARE(combo(window, "DisplayMessage").currentIndex(), 0);
        // Index 0 is no change to the choosers, which thus store nothing; the greeting is always worked out.
        QCOMPARE(home::themePreference(u"colorIndex"_s), stored);
        QCOMPARE(home::preference(u"textEmphasis"_s), stored);
        QCOMPARE(home::preference(u"displayMessageIndex"_s), QVariant(0));
    }

    void readsWhatIsNoTextAsEmpty()
    {
        const QStringList list = {u"uno"_s, u"dos"_s};
        home::setPreference(u"firstName"_s, list);
        home::setPreference(u"email"_s, list);
        home::setPreference(u"profilePicturePath"_s, list);
        home::setPreference(u"displayMessageIndex"_s, 2);
        const MainWindow window;

        QCOMPARE(widget<QLineEdit>(window, "UserName")->text(), u"Invitado(a)"_s);
        QCOMPARE(widget<QLineEdit>(window, "UserMail")->text(), u"correo@nubaria.example"_s);
        QCOMPARE(widget<QLabel>(window, "LabelDayTxt")->text(), u"¡Hola, Invitado(a)!"_s);
        QVERIFY(!widget<QLabel>(window, "ProfilePicture")->pixmap().isNull());
    }

    void handsAStoredIndexToItsChooserUnchecked_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("just beyond every list") << 7;
        QTest::newRow("far beyond") << 2147483647;
        QTest::newRow("none") << -1;
        QTest::newRow("far below") << -2147483647;
    }

    void handsAStoredIndexToItsChooserUnchecked()
    {
        QFETCH(int, index);
        home::setThemePreference(u"colorIndex"_s, index);
        home::setPreference(u"textEmphasis"_s, index);
        home::setPreference(u"displayMessageIndex"_s, index);

        const MainWindow window;

        // A chooser that has no such item shows none, and tells that.
        QCOMPARE(combo(window, "ChangeColorTheme").currentIndex(), -1);
        QCOMPARE(combo(window, "ChangeTextTheme").currentIndex(), -1);
        QCOMPARE(combo(window, "DisplayMessage").currentIndex(), -1);
        QCOMPARE(home::themePreference(u"colorIndex"_s), QVariant(-1));
        QCOMPARE(home::preference(u"textEmphasis"_s), QVariant(-1));
        QCOMPARE(home::preference(u"displayMessageIndex"_s), QVariant(-1));
        QVERIFY(widget(window, "SaveTaskButton")->styleSheet().contains("#9D39E3"_L1));
        QCOMPARE(widget<QLabel>(window, "LabelDayTxt")->text(), u"currentDay()"_s);
        QCOMPARE(widget<QLabel>(window, "LabelDayMonthTxt")->text(), u"numberMonth()"_s);
    }

    void startsInSilenceOverADamagedStore()
    {
        const QString path = QSettings(u"Quenoli"_s, u"Quenoli"_s).fileName();
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("[\x00\xff=\n]]][[\nsimpleNotify=@Variant(\x00\n", 34));
        file.close();
        const MessageBoxes boxes;

        const MainWindow window;

        QCOMPARE(combo(window, "DisplayMessage").currentIndex(), 0);
        QCOMPARE(boxes.shown().size(), 0);
        QVERIFY(traymessages::all().isEmpty());
    }
};

NUBARIA_TEST_MAIN(PreferencesStoredValuesTest)
#include "preferencesstoredvaluestest.moc"
