#include "support/home.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isLocked(const MainWindow &window)
{
    const auto locked = [&window](const char *name) {
        const auto *field = widget<QLineEdit>(window, name);
        return !field->isEnabled() && !field->isClearButtonEnabled();
    };
    return locked("UserName") && locked("UserMail") && !widget(window, "SetProfileInfo")->isHidden()
        && widget(window, "SaveProfileInfo")->isHidden();
}

bool isEditable(const MainWindow &window)
{
    const auto editable = [&window](const char *name) {
        const auto *field = widget<QLineEdit>(window, name);
        return field->isEnabled() && field->isClearButtonEnabled();
    };
    return editable("UserName") && editable("UserMail") && widget(window, "SetProfileInfo")->isHidden()
        && !widget(window, "SaveProfileInfo")->isHidden();
}

/// Notes what becomes of the buttons and fields of the page, and how many tray messages came before.
class PageLog final : public QObject
{
    Q_DISABLE_COPY_MOVE(PageLog)
public:
    explicit PageLog(const MainWindow &window)
        : m_name(widget<QLineEdit>(window, "UserName"))
    {
        for (const char *name : {"SetProfileInfo", "SaveProfileInfo", "UserName", "UserMail"}) {
            widget(window, name)->installEventFilter(this);
        }
    }
    ~PageLog() override = default;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::ShowToParent) {
            note(watched, u"shown"_s);
        } else if (event->type() == QEvent::HideToParent) {
            note(watched, u"hidden"_s);
        } else if (event->type() == QEvent::EnabledChange) {
            note(watched, m_name->isClearButtonEnabled() ? u"changes, name clears"_s : u"changes"_s);
        }
        return false;
    }

    QStringList seen;

private:
    void note(const QObject *widget, const QString &what)
    {
        seen.append(u"%1 %2, after %3"_s.arg(widget->objectName(), what).arg(traymessages::all().size()));
    }

    const QLineEdit *m_name;
};

/// Types into the field as a person does, in place of what it shows.
void typeInto(MainWindow &window, const char *name, const QString &text)
{
    auto *field = widget<QLineEdit>(window, name);
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

} // namespace

class ProfileEditingTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QCOMPARE(qApp->devicePixelRatio(), qEnvironmentVariable("QT_SCALE_FACTOR", u"1"_s).toDouble());
    }

    void opensLocked_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("first start") << QString();
        QTest::newRow("with a profile") << u"Ana María"_s;
    }

    void opensLocked()
    {
        QFETCH(QString, name);
        home::setPreference(u"firstName"_s, name);

        const MainWindow window;

        QVERIFY(isLocked(window));
    }

    void unlocksForEditingAndLocksOnSaving()
    {
        const MainWindow window;
        QCOMPARE(widget<QPushButton>(window, "SetProfileInfo")->text(), u"  Editar datos"_s);
        QCOMPARE(widget<QPushButton>(window, "SaveProfileInfo")->text(), u"  Guardar cambios"_s);

        click(window, "SetProfileInfo");
        QVERIFY(isEditable(window));

        click(window, "SaveProfileInfo");
        QVERIFY(isLocked(window));

        click(window, "SetProfileInfo");
        QVERIFY(isEditable(window));
    }

    void tellsOfTheSavingBeforeItLocksTheFields()
    {
        traymessages::clear();
        const MainWindow window;
        PageLog unlocking(window);
        click(window, "SetProfileInfo");
        QCOMPARE(unlocking.seen,
            QStringList({u"SetProfileInfo hidden, after 0"_s, u"SaveProfileInfo shown, after 0"_s,
                u"UserName changes, after 0"_s, u"UserMail changes, name clears, after 0"_s}));
        PageLog saving(window);

        click(window, "SaveProfileInfo");

        QCOMPARE(saving.seen,
            QStringList({u"SaveProfileInfo hidden, after 1"_s, u"SetProfileInfo shown, after 1"_s,
                u"UserName changes, name clears, after 1"_s, u"UserMail changes, after 1"_s}));
        traymessages::compareOnly(
            u"Perfil actualizado"_s, u"La información del perfil ha sido guardada exitosamente."_s);
    }

    void staysUnlockedAcrossPagesUntilItIsSaved()
    {
        MainWindow window;
        window.show();
        click(window, "ProfileViewButton");
        click(window, "SetProfileInfo");
        typeInto(window, "UserName", u"Luz"_s);

        click(window, "TaskViewButton");
        click(window, "ProfileViewButton");

        QVERIFY(isEditable(window));
        QCOMPARE(widget<QLineEdit>(window, "UserName")->text(), u"Luz"_s);
        QCOMPARE(home::preference(u"firstName"_s), QVariant());
    }

    void letsAClickOnTheClearButtonEmptyTheField_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("name") << QByteArray("UserName");
        QTest::newRow("e-mail") << QByteArray("UserMail");
    }

    void letsAClickOnTheClearButtonEmptyTheField()
    {
        QFETCH(QByteArray, name);
        MainWindow window;
        window.show();
        click(window, "ProfileViewButton");
        click(window, "SetProfileInfo");
        auto *field = widget<QLineEdit>(window, name.constData());
        QVERIFY(!field->text().isEmpty());

        const QRect area = field->rect();
        QWidget *button = field->childAt(area.right() - 10, area.center().y());
        QVERIFY(button);
        QTest::mouseClick(button, Qt::LeftButton);

        QCOMPARE(field->text(), QString());
        QVERIFY(isEditable(window));
    }

    void takesNoMoreThan12And50Characters()
    {
        MainWindow window;
        window.show();
        click(window, "ProfileViewButton");
        click(window, "SetProfileInfo");

        typeInto(window, "UserName", u"ABCDEFGHIJKLM"_s);
        typeInto(window, "UserMail", QString(42, u'a') + "@b.exampleX"_L1);
        click(window, "SaveProfileInfo");

        QCOMPARE(home::preference(u"firstName"_s), QVariant(u"ABCDEFGHIJKL"_s));
        const QString mail = home::preference(u"email"_s).toString();
        QCOMPARE(mail, QString(42, u'a') + "@b.examp"_L1);
        QCOMPARE(mail.size(), 50);
    }
};

NUBARIA_TEST_MAIN(ProfileEditingTest)
#include "profileeditingtest.moc"
