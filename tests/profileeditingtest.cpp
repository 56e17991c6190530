#include "support/home.h"
#include "support/testmain.h"
#include "support/window.h"

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

/// Types into the field as a person does, in place of what it shows.
void typeInto(MainWindow &window, const char *name, const QString &text)
{
    auto *field = widget<QLineEdit>(window, name);
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

} // namespace

class ProfileEditingTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { home::reset(); }

    void opensLocked_data();
    void opensLocked();
    void unlocksForEditingAndLocksOnSaving();
    void staysUnlockedAcrossPagesUntilItIsSaved();
    void letsAClickOnTheClearButtonEmptyTheField_data();
    void letsAClickOnTheClearButtonEmptyTheField();
    void takesNoMoreThan12And50Characters();
};

void ProfileEditingTest::initTestCase()
{
    QCOMPARE(qApp->devicePixelRatio(), qEnvironmentVariable("QT_SCALE_FACTOR", u"1"_s).toDouble());
}

void ProfileEditingTest::opensLocked_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("first start") << QString();
    QTest::newRow("with a profile") << u"Ana María"_s;
}

void ProfileEditingTest::opensLocked()
{
    QFETCH(QString, name);
    home::setPreference(u"firstName"_s, name);

    const MainWindow window;

    QVERIFY(isLocked(window));
}

void ProfileEditingTest::unlocksForEditingAndLocksOnSaving()
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

void ProfileEditingTest::staysUnlockedAcrossPagesUntilItIsSaved()
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

void ProfileEditingTest::letsAClickOnTheClearButtonEmptyTheField_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("name") << QByteArray("UserName");
    QTest::newRow("e-mail") << QByteArray("UserMail");
}

void ProfileEditingTest::letsAClickOnTheClearButtonEmptyTheField()
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

void ProfileEditingTest::takesNoMoreThan12And50Characters()
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

NUBARIA_TEST_MAIN(ProfileEditingTest)
#include "profileeditingtest.moc"
