#include "support/home.h"
#include "support/messageboxes.h"
#include "support/taskform.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QLineEdit>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

void empty(const MainWindow &window, const QByteArray &field)
{
    if (field == "TaskTitle") {
        widget<QLineEdit>(window, "TaskTitle")->clear();
    } else if (field == "TaskDescription") {
        widget<QTextEdit>(window, "TaskDescription")->clear();
    } else {
        widget<QComboBox>(window, field.constData())->setCurrentIndex(-1);
    }
}

// A text beside no chosen item, which the form itself never offers.
void typeIntoCombo(const MainWindow &window, const QByteArray &combo)
{
    auto *box = widget<QComboBox>(window, combo.constData());
    box->setEditable(true);
    box->setCurrentIndex(-1);
    box->setEditText(u"Hogar"_s);
}

} // namespace

class NewTaskFormTest final : public WindowTest
{
    Q_OBJECT

    QStringList m_noted;

private slots:
    void init()
    {
        WindowTest::init();
        m_noted.clear();
    }

    void anEmptyFieldIsRefused_data()
    {
        QTest::addColumn<QByteArrayList>("fields");
        QTest::newRow("title") << QByteArrayList{"TaskTitle"};
        QTest::newRow("description") << QByteArrayList{"TaskDescription"};
        QTest::newRow("category") << QByteArrayList{"CategoryTaskBox"};
        QTest::newRow("urgency") << QByteArrayList{"UrgencyTaskBox"};
        QTest::newRow("all") << QByteArrayList{
            "TaskTitle", "TaskDescription", "CategoryTaskBox", "UrgencyTaskBox"};
    }

    void anEmptyFieldIsRefused()
    {
        QFETCH(QByteArrayList, fields);
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window);
        for (const QByteArray &field : std::as_const(fields)) {
            empty(window, field);
        }
        const QStringList typed = formTexts(window);
        const MessageBoxes boxes;

        click(window, "SaveTaskButton");

        compareOnlyBox(boxes, QMessageBox::Warning, u"Datos incompletos"_s,
            u"Por favor, llene todos los campos requeridos"_s);
        QCOMPARE(formTexts(window), typed);
        QVERIFY(!widget(window, "NewTasksPage")->isHidden());
        QVERIFY(!QFile::exists(home::taskFile()));
        QCOMPARE(traymessages::all().size(), 0);
    }

    void blanksAreContent()
    {
        const MainWindow window;
        fillForm(window);
        widget<QLineEdit>(window, "TaskTitle")->setText(u" "_s);
        widget<QTextEdit>(window, "TaskDescription")->setPlainText(u"\n"_s);
        const MessageBoxes boxes;

        click(window, "SaveTaskButton");

        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(home::tasks().size(), 1);
        QCOMPARE(home::tasks().first()["title"_L1].toString(), u" "_s);
        QCOMPARE(home::tasks().first()["description"_L1].toString(), u"\n"_s);
    }

    void aTextWithoutChosenItemIsRefused_data()
    {
        QTest::addColumn<QByteArray>("combo");
        QTest::newRow("category") << QByteArray("CategoryTaskBox");
        QTest::newRow("urgency") << QByteArray("UrgencyTaskBox");
    }

    void aTextWithoutChosenItemIsRefused()
    {
        QFETCH(QByteArray, combo);
        const MainWindow window;
        fillForm(window);
        typeIntoCombo(window, combo);
        const QStringList typed = formTexts(window);
        QVERIFY(typed.contains(u"Hogar"_s));
        const MessageBoxes boxes;

        click(window, "SaveTaskButton");

        compareOnlyBox(boxes, QMessageBox::Warning, u"Selección incompleta"_s,
            u"Por favor, seleccione una categoría y una urgencia válida"_s);
        QCOMPARE(formTexts(window), typed);
        QVERIFY(!QFile::exists(home::taskFile()));
    }

    void completenessIsCheckedBeforeTheChoice()
    {
        const MainWindow window;
        fillForm(window);
        typeIntoCombo(window, "CategoryTaskBox");
        empty(window, "UrgencyTaskBox");
        const MessageBoxes boxes;

        click(window, "SaveTaskButton");

        compareOnlyBox(boxes, QMessageBox::Warning, u"Datos incompletos"_s,
            u"Por favor, llene todos los campos requeridos"_s);
    }

    void theFormIsCheckedBeforeTheFile()
    {
        const MainWindow window;
        home::blockTaskFile();
        fillForm(window);
        empty(window, "TaskTitle");
        const MessageBoxes boxes;

        click(window, "SaveTaskButton");

        compareOnlyBox(boxes, QMessageBox::Warning, u"Datos incompletos"_s,
            u"Por favor, llene todos los campos requeridos"_s);
    }

    void everyWayOutResetsTheForm_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("save") << QByteArray("SaveTaskButton");
        QTest::newRow("clean") << QByteArray("CleanTaskButton");
        QTest::newRow("cancel") << QByteArray("CancelTaskButton");
    }

    void everyWayOutResetsTheForm()
    {
        QFETCH(QByteArray, button);
        const MainWindow window;
        fillForm(window);
        QCOMPARE(formTexts(window), filledTexts());
        const QDate before = QDate::currentDate();

        click(window, button.constData());

        const QDate after = QDate::currentDate();
        QCOMPARE(widget<QLineEdit>(window, "TaskTitle")->text(), QString());
        QCOMPARE(widget<QTextEdit>(window, "TaskDescription")->toPlainText(), QString());
        for (const char *combo : {"CategoryTaskBox", "UrgencyTaskBox"}) {
            QCOMPARE(widget<QComboBox>(window, combo)->currentIndex(), -1);
            QCOMPARE(widget<QComboBox>(window, combo)->placeholderText(), u"Seleccionar..."_s);
        }
        const QDate shown = widget<QDateEdit>(window, "DateLimitTask")->date();
        QVERIFY(shown == before || shown == after); // unless midnight came between, the same
    }

    void theFormIsResetFromTopToBottom_data() { everyWayOutResetsTheForm_data(); }

    void theFormIsResetFromTopToBottom()
    {
        QFETCH(QByteArray, button);
        const MainWindow window;
        fillForm(window);
        const auto note = [this](const QString &field) {
            return [this, field] {
                m_noted.append(field);
            };
        };
        connect(widget<QLineEdit>(window, "TaskTitle"), &QLineEdit::textChanged, this, note(u"title"_s));
        connect(widget<QTextEdit>(window, "TaskDescription"), &QTextEdit::textChanged, this,
            note(u"description"_s));
        connect(widget<QComboBox>(window, "CategoryTaskBox"), &QComboBox::currentIndexChanged, this,
            note(u"category"_s));
        connect(widget<QDateEdit>(window, "DateLimitTask"), &QDateEdit::dateChanged, this, note(u"date"_s));
        connect(widget<QComboBox>(window, "UrgencyTaskBox"), &QComboBox::currentIndexChanged, this,
            note(u"urgency"_s));

        click(window, button.constData());

        QCOMPARE(
            m_noted, (QStringList{u"title"_s, u"description"_s, u"category"_s, u"date"_s, u"urgency"_s}));
    }

    void theFormStaysBetweenVisits()
    {
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window);

        click(window, "TaskViewButton");
        click(window, "NewTaskViewButton");

        QCOMPARE(formTexts(window), filledTexts());
    }

    void cleaningStaysOnThePageAndSavesNothing()
    {
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window);
        const MessageBoxes boxes;

        click(window, "CleanTaskButton");

        QVERIFY(!widget(window, "NewTasksPage")->isHidden());
        QVERIFY(widget(window, "TasksPage")->isHidden());
        QVERIFY(widget<QAbstractButton>(window, "NewTaskViewButton")->isChecked());
        QCOMPARE(boxes.shown().size(), 0);
        QVERIFY(!QFile::exists(home::taskFile()));
    }

    void cancellingReturnsToTheTasksAndSavesNothing()
    {
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window);
        const MessageBoxes boxes;

        click(window, "CancelTaskButton");

        QVERIFY(!widget(window, "TasksPage")->isHidden());
        QVERIFY(widget(window, "NewTasksPage")->isHidden());
        QVERIFY(widget<QAbstractButton>(window, "TaskViewButton")->isChecked());
        QVERIFY(!widget<QAbstractButton>(window, "NewTaskViewButton")->isChecked());
        QCOMPARE(boxes.shown().size(), 0);
        QVERIFY(!QFile::exists(home::taskFile()));
        click(window, "NewTaskViewButton");
        QCOMPARE(widget<QLineEdit>(window, "TaskTitle")->text(), QString());
    }

    void cancellingLeavesThePageBeforeItResetsTheForm()
    {
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window);
        const auto *page = widget(window, "NewTasksPage");
        connect(widget<QLineEdit>(window, "TaskTitle"), &QLineEdit::textChanged, this,
            [this, page] { m_noted.append(page->isHidden() ? u"page left"_s : u"still on the page"_s); });

        click(window, "CancelTaskButton");

        QCOMPARE(m_noted, QStringList{u"page left"_s});
    }

    void cancellingSlidesTheDetailPanelOut()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        selectRow(window, 0);
        QTRY_COMPARE(panelPlace(window), openPanel);

        click(window, "CancelTaskButton");

        QTRY_COMPARE(panelPlace(window), closedPanel);
        QVERIFY(!taskList(window)->selectionModel()->hasSelection());
    }
};

NUBARIA_TEST_MAIN(NewTaskFormTest)
#include "newtaskformtest.moc"
