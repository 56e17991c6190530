#include "support/form.h"
#include "support/windowtest.h"

#include <QMainWindow>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

// Listens to the form by the names of its slots only.
class ListeningWindow final : public QMainWindow
{
    Q_OBJECT
public:
    int saves = 0;
private slots:
    void on_SaveTaskButton_clicked() { ++saves; } // clazy:exclude=connect-by-name
};

} // namespace

class FormBehaviourTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void namesOnlyANamelessWindow()
    {
        Form form;
        QCOMPARE(form.window.objectName(), u"MainWindow"_s);

        QMainWindow named;
        named.setObjectName(u"Principal"_s);
        Ui_MainWindow ui{};
        ui.setupUi(&named);
        QCOMPARE(named.objectName(), u"Principal"_s);
    }

    void connectsSlotsByName()
    {
        ListeningWindow window;
        Ui_MainWindow ui{};
        ui.setupUi(&window);

        ui.SaveTaskButton->click();

        QCOMPARE(window.saves, 1);
    }

    void keepsTheWindowAtItsSize()
    {
        Form form;
        for (const QSize size : {QSize(800, 600), QSize(1920, 1080)}) {
            form.window.resize(size);
            QCOMPARE(form.window.size(), QSize(1250, 700));
        }
    }

    void promptsUntilSomethingIsChosen()
    {
        Form form;
        int prompting = 0;
        const auto combos = form.window.findChildren<QComboBox *>();
        for (QComboBox *combo : combos) {
            if (combo->currentIndex() >= 0) {
                continue;
            }
            ++prompting;
            QCOMPARE(combo->currentText(), QString());
            QCOMPARE(combo->placeholderText(),
                combo == form.ui.OrderNotesBy ? u"Ordenar por..."_s : u"Seleccionar..."_s);
            combo->setCurrentIndex(0);
            QCOMPARE(combo->currentText(), combo->itemText(0));
        }
        QCOMPARE(prompting, 7);
    }

    void keepsTheUpdateSwitchOn()
    {
        Form form;
        form.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form.window));
        const QPoint knobWhenOff(8, 10);
        const QPoint knobWhenOn(32, 10);
        QTest::mouseClick(form.ui.SimpleNotify, Qt::LeftButton, {}, knobWhenOff);
        QVERIFY(form.ui.SimpleNotify->isChecked());
        QTest::mouseClick(form.ui.SimpleNotify, Qt::LeftButton, {}, knobWhenOn);
        QVERIFY(!form.ui.SimpleNotify->isChecked());

        QTest::mouseClick(form.ui.NotifyUpdate, Qt::LeftButton, {}, knobWhenOn);
        QVERIFY(form.ui.NotifyUpdate->isChecked());
        form.ui.NotifyUpdate->click();
        QVERIFY(form.ui.NotifyUpdate->isChecked());
    }

    void limitsTheLengthOfTheProfile()
    {
        Form form;
        const QString typed = u"abcdefghij"_s.repeated(6);
        for (QLineEdit *field : {form.ui.UserName, form.ui.UserMail}) {
            field->setEnabled(true);
            QTest::keyClicks(field, typed);
        }

        QCOMPARE(form.ui.UserName->text(), typed.first(12));
        QCOMPARE(form.ui.UserMail->text(), typed.first(50));
    }

    void parksBothDetailPanelsOutsideTheirPages()
    {
        Form form;
        for (const QWidget *panel : {form.ui.TaskDetail, form.ui.TaskDetail_2}) {
            QCOMPARE(panel->x(), 1010);
            QVERIFY(!panel->parentWidget()->rect().intersects(panel->geometry()));
        }
    }
};

NUBARIA_TEST_MAIN(FormBehaviourTest)
#include "formbehaviourtest.moc"
