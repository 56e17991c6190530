#include "core/preferences.h"

#include "support/coretest.h"

using namespace Qt::Literals::StringLiterals;

class PreferencesTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void keepsWhatIsNotThere_data()
    {
        QTest::addColumn<QVariant>("before");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("nothing, false") << QVariant() << QVariant(false);
        QTest::newRow("nothing, 0") << QVariant() << QVariant(0);
        QTest::newRow("false, true") << QVariant(false) << QVariant(true);
        QTest::newRow("another number") << QVariant(3) << QVariant(4);
        QTest::newRow("what only reads as true") << QVariant(u"si"_s) << QVariant(true);
        QTest::newRow("what only reads as 0") << QVariant(u"cero"_s) << QVariant(0);
    }

    void keepsWhatIsNotThere()
    {
        QFETCH(QVariant, before);
        QFETCH(QVariant, value);
        if (before.isValid()) {
            home::setPreference(u"key"_s, before);
        }

        QSettings store = preferences::mainStore();
        preferences::keep(store, "key"_L1, value);

        QCOMPARE(home::preference(u"key"_s), value);
    }

    void leavesAloneWhatIsThere_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("true") << QVariant(true);
        QTest::newRow("false") << QVariant(false);
        QTest::newRow("a number") << QVariant(5);
    }

    void leavesAloneWhatIsThere()
    {
        QFETCH(QVariant, value);
        // As a file gives it back.
        home::setPreference(u"key"_s, value.toString());

        QSettings store = preferences::mainStore();
        preferences::keep(store, "key"_L1, value);

        QCOMPARE(home::preference(u"key"_s), QVariant(value.toString()));
        QCOMPARE(home::preference(u"key"_s).typeId(), int(QMetaType::QString)); // not the one just given
    }
};

NUBARIA_CORE_TEST_MAIN(PreferencesTest)
#include "preferencestest.moc"
