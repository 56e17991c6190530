#include "support/home.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString hint = u"correo@nubaria.example"_s;

QString nameOf(const MainWindow &window)
{
    return widget<QLineEdit>(window, "UserName")->text();
}

QString mailOf(const MainWindow &window)
{
    return widget<QLineEdit>(window, "UserMail")->text();
}

QString storedName()
{
    return home::preference(u"firstName"_s).toString();
}

QString storedMail()
{
    return home::preference(u"email"_s).toString();
}

} // namespace

class ProfileTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void showsAGuestOnAFirstStart()
    {
        home::setPreference(u"displayMessageIndex"_s, 2);

        const MainWindow window;

        QCOMPARE(nameOf(window), u"Invitado(a)"_s);
        QCOMPARE(mailOf(window), hint);
        QCOMPARE(widget<QLabel>(window, "LabelDayTxt")->text(), u"¡Hola, Invitado(a)!"_s);
        QVERIFY(!home::preference(u"firstName"_s).isValid());
        QVERIFY(!home::preference(u"email"_s).isValid());
        QCOMPARE(traymessages::all().size(), 0);
    }

    void showsTheStoredProfile()
    {
        home::setPreference(u"firstName"_s, u" Ana María"_s);
        home::setPreference(u"email"_s, u"ana@buzón.example "_s);

        const MainWindow window;

        QCOMPARE(nameOf(window), u" Ana María"_s);
        QCOMPARE(mailOf(window), u"ana@buzón.example "_s);
    }

    void readsTheProfileAfreshOnDemand()
    {
        MainWindow window;
        home::setPreference(u"firstName"_s, u"Luz"_s);
        home::setPreference(u"email"_s, u"luz@correo.example"_s);
        callSlot(window, "loadUserInfo");
        QCOMPARE(nameOf(window), u"Luz"_s);
        QCOMPARE(mailOf(window), u"luz@correo.example"_s);

        home::setPreference(u"firstName"_s, QString());
        callSlot(window, "loadUserInfo");
        QCOMPARE(nameOf(window), u"Invitado(a)"_s);
        QCOMPARE(mailOf(window), u"luz@correo.example"_s);

        home::setPreference(u"email"_s, QString());
        callSlot(window, "loadUserInfo");
        QCOMPARE(mailOf(window), hint);
    }

    void storesTheDefaultsAsTextWhenSavedUnedited()
    {
        const MainWindow window;

        click(window, "SetProfileInfo");
        click(window, "SaveProfileInfo");

        QCOMPARE(storedName(), u"Invitado(a)"_s);
        QCOMPARE(storedMail(), u"correo@nubaria.example"_s);
    }

    void storesEachFieldAsItStands_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("mail");
        QTest::newRow("plain") << u"Ana María"_s << u"ana@correo.example"_s;
        QTest::newRow("accents") << u"Ñandú Öé"_s << u"ñandú@buzón.example"_s;
        QTest::newRow("blanks around") << u"  Ana "_s << u" ana@correo.example  "_s;
        QTest::newRow("nothing but blanks") << u"   "_s << u" "_s;
        QTest::newRow("no address") << u"Ana"_s << u"esto no es un correo"_s;
        QTest::newRow("marks") << u"<b>%1\\\"&;="_s << u"@,;[]{}=\"\\%@"_s;
    }

    void storesEachFieldAsItStands()
    {
        QFETCH(QString, name);
        QFETCH(QString, mail);
        {
            const MainWindow window;
            click(window, "SetProfileInfo");
            widget<QLineEdit>(window, "UserName")->setText(name);
            widget<QLineEdit>(window, "UserMail")->setText(mail);
            click(window, "SaveProfileInfo");
            QCOMPARE(nameOf(window), name);
            QCOMPARE(mailOf(window), mail);
        }
        QCOMPARE(home::preference(u"firstName"_s), QVariant(name));
        QCOMPARE(home::preference(u"email"_s), QVariant(mail));

        const MainWindow window;

        QCOMPARE(nameOf(window), name);
        QCOMPARE(mailOf(window), mail);
    }

    void storesNothingBeforeSaving()
    {
        home::setPreference(u"firstName"_s, u"Ana"_s);
        home::setPreference(u"email"_s, u"ana@correo.example"_s);
        {
            const MainWindow window;
            click(window, "SetProfileInfo");
            widget<QLineEdit>(window, "UserName")->setText(u"Luz"_s);
            widget<QLineEdit>(window, "UserMail")->setText(u"luz@correo.example"_s);
        }

        QCOMPARE(storedName(), u"Ana"_s);
        QCOMPARE(storedMail(), u"ana@correo.example"_s);
        QCOMPARE(traymessages::all().size(), 0);
    }

    void storesAnEmptyProfileAndShowsTheGuestAtTheNextStart()
    {
        home::setPreference(u"firstName"_s, u"Ana"_s);
        home::setPreference(u"email"_s, u"ana@correo.example"_s);
        home::setPreference(u"displayMessageIndex"_s, 2);
        {
            const MainWindow window;
            click(window, "SetProfileInfo");
            widget<QLineEdit>(window, "UserName")->clear();
            widget<QLineEdit>(window, "UserMail")->clear();
            click(window, "SaveProfileInfo");
            QCOMPARE(nameOf(window), QString());
            QCOMPARE(mailOf(window), QString());
            QCOMPARE(widget<QLabel>(window, "LabelDayTxt")->text(), u"¡Hola, Invitado(a)!"_s);
        }
        QCOMPARE(home::preference(u"firstName"_s), QVariant(QString()));
        QCOMPARE(home::preference(u"email"_s), QVariant(QString()));

        const MainWindow window;

        QCOMPARE(nameOf(window), u"Invitado(a)"_s);
        QCOMPARE(mailOf(window), hint);
    }

    void announcesTheSavingWhateverTheCheckBoxSays_data()
    {
        QTest::addColumn<bool>("notify");
        QTest::newRow("notifications on") << true;
        QTest::newRow("notifications off") << false;
    }

    void announcesTheSavingWhateverTheCheckBoxSays()
    {
        QFETCH(bool, notify);
        const MainWindow window;
        widget<QCheckBox>(window, "SimpleNotify")->setChecked(notify);
        click(window, "SetProfileInfo");
        QCOMPARE(traymessages::all().size(), 0);

        click(window, "SaveProfileInfo");

        const QList<TrayMessage> announced
            = {{u"Perfil actualizado"_s, u"La información del perfil ha sido guardada exitosamente."_s,
                QSystemTrayIcon::Information, 10000, notify}};
        QCOMPARE(traymessages::all(), announced);
    }
};

NUBARIA_TEST_MAIN(ProfileTest)
#include "profiletest.moc"
