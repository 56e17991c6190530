#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/testmain.h"
#include "support/window.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTextEdit>
#include <QVariantAnimation>

using namespace Qt::Literals::StringLiterals;

namespace {

const QRect openPanel(0, 0, 1010, 700);
const QRect closedPanel(1010, 0, 1010, 700);

QListView *list(const MainWindow &window)
{
    return widget<QListView>(window, "TaskListView");
}

QModelIndex row(const MainWindow &window, int number)
{
    return list(window)->model()->index(number, 0);
}

QRect panel(const MainWindow &window)
{
    return widget(window, "TaskDetail")->geometry();
}

QString shownTitle(const MainWindow &window)
{
    return widget<QLineEdit>(window, "TaskTitleView")->text();
}

QStringList panelTexts(const MainWindow &window)
{
    return {shownTitle(window), widget<QTextEdit>(window, "TaskDescriptionView")->toPlainText(),
        widget<QComboBox>(window, "CategoryTaskBoxView")->currentText(),
        widget<QDateEdit>(window, "DateLimitTaskView")->date().toString(Qt::ISODate),
        widget<QComboBox>(window, "UrgencyTaskBoxView")->currentText()};
}

QJsonObject task(const QString &id, const QString &title, const QString &key, const QJsonValue &value)
{
    QJsonObject record = home::record(id, title);
    record.insert(key, value);
    return record;
}

// Slides begun before are over when this one, as long as they are and begun last, is.
bool waitForSlides()
{
    QVariantAnimation last;
    last.setStartValue(0);
    last.setEndValue(1);
    last.setDuration(250);
    QSignalSpy finished(&last, &QVariantAnimation::finished);
    last.start();
    return finished.wait();
}

} // namespace

class TaskDetailsTest final : public QObject
{
    Q_OBJECT

    QStringList m_filled;

private slots:
    void init()
    {
        home::reset();
        m_filled.clear();
    }

    void showsEveryTextOfTheTask();
    void fillsThePanelInOrder();
    void slidesThePanelIn();
    void aChangeOfTheCurrentRowRefillsThePanel();
    void aClickOnAnotherRowOpensItsTask();
    void aDoubleClickOpensTheTaskAgain();
    void aDoubleClickAloneOpensTheTask();
    void readsTheTaskAsTheFileHoldsItNow();

    void showsTheTaskOfTheRowAmongEqualTitles();
    void showsTheFirstTaskOfAnIdThatOccursTwice();
    void showsAMarkedUpDescriptionLiterally();
    void missingTextsAreShownEmpty();
    void aDateThatIsNoneLeavesTheDateAsItIs_data();
    void aDateThatIsNoneLeavesTheDateAsItIs();
    void anUnknownChoiceLeavesTheBoxAsItIs_data();
    void anUnknownChoiceLeavesTheBoxAsItIs();

    void anUnusableRowIsIgnored();
    void aTaskThatHasGoneIsNotFound_data();
    void aTaskThatHasGoneIsNotFound();
    void anElementThatIsNoObjectHasNoDetails();
    void aFileThatCannotBeReadIsReported();
};

void TaskDetailsTest::showsEveryTextOfTheTask()
{
    QJsonObject record = task(u"{a}"_s, u"Pagar la luz"_s, u"description"_s, u"uno\n  dos"_s);
    record.insert(u"category"_s, u"Escuela"_s);
    record.insert(u"dateLimit"_s, u"03-04-2027"_s);
    record.insert(u"urgency"_s, u"Muy baja"_s);
    home::writeTasks({record});
    const MainWindow window;
    const MessageBoxes boxes;

    list(window)->setCurrentIndex(row(window, 0));

    QCOMPARE(panelTexts(window),
        (QStringList{u"Pagar la luz"_s, u"uno\n  dos"_s, u"Escuela"_s, u"2027-04-03"_s, u"Muy baja"_s}));
    QCOMPARE(boxes.shown().size(), 0);
}

void TaskDetailsTest::fillsThePanelInOrder()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    const auto note = [this](const QString &field) {
        return [this, field] {
            m_filled.append(field);
        };
    };
    connect(widget<QLineEdit>(window, "TaskTitleView"), &QLineEdit::textChanged, this, note(u"title"_s));
    connect(widget<QTextEdit>(window, "TaskDescriptionView"), &QTextEdit::textChanged, this,
        note(u"description"_s));
    connect(widget<QComboBox>(window, "CategoryTaskBoxView"), &QComboBox::currentIndexChanged, this,
        note(u"category"_s));
    connect(widget<QDateEdit>(window, "DateLimitTaskView"), &QDateEdit::dateChanged, this, note(u"date"_s));
    connect(widget<QComboBox>(window, "UrgencyTaskBoxView"), &QComboBox::currentIndexChanged, this,
        note(u"urgency"_s));

    list(window)->setCurrentIndex(row(window, 0));

    QCOMPARE(m_filled, (QStringList{u"title"_s, u"description"_s, u"category"_s, u"date"_s, u"urgency"_s}));
}

void TaskDetailsTest::slidesThePanelIn()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    QCOMPARE(panel(window), closedPanel);

    list(window)->setCurrentIndex(row(window, 0));

    QTRY_COMPARE(panel(window), openPanel);
}

void TaskDetailsTest::aChangeOfTheCurrentRowRefillsThePanel()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
    const MainWindow window;
    list(window)->setCurrentIndex(row(window, 0));
    QCOMPARE(shownTitle(window), u"uno"_s);

    list(window)->setCurrentIndex(row(window, 1));

    QCOMPARE(shownTitle(window), u"dos"_s);
}

void TaskDetailsTest::aClickOnAnotherRowOpensItsTask()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QTest::mouseClick(list(window)->viewport(), Qt::LeftButton, Qt::NoModifier,
        list(window)->visualRect(row(window, 1)).center());

    QCOMPARE(shownTitle(window), u"dos"_s);
    QTRY_COMPARE(panel(window), openPanel);
}

void TaskDetailsTest::aDoubleClickOpensTheTaskAgain()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QPoint place = list(window)->visualRect(row(window, 0)).center();
    QTest::mouseClick(list(window)->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTRY_COMPARE(panel(window), openPanel);
    widget<QAbstractButton>(window, "CloseDetailTaskBtn")->click();
    QTRY_COMPARE(panel(window), closedPanel);

    // The row is still the current one, so that a click changes nothing.
    QTest::mouseClick(list(window)->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QVERIFY(waitForSlides());
    QCOMPARE(panel(window), closedPanel);

    QTest::mouseDClick(list(window)->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTRY_COMPARE(panel(window), openPanel);
}

void TaskDetailsTest::aDoubleClickAloneOpensTheTask()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
    const MainWindow window;

    Q_EMIT list(window)->doubleClicked(row(window, 1));

    QVERIFY(!list(window)->currentIndex().isValid());
    QCOMPARE(shownTitle(window), u"dos"_s);
    QTRY_COMPARE(panel(window), openPanel);
}

void TaskDetailsTest::readsTheTaskAsTheFileHoldsItNow()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
    const MainWindow window;
    home::writeTasks({home::record(u"{b}"_s, u"dos, cambiada"_s), home::record(u"{a}"_s, u"uno"_s)});

    list(window)->setCurrentIndex(row(window, 1));

    QCOMPARE(shownTitle(window), u"dos, cambiada"_s);
}

void TaskDetailsTest::showsTheTaskOfTheRowAmongEqualTitles()
{
    home::writeTasks({task(u"{a}"_s, u"Pagar"_s, u"description"_s, u"luz"_s),
        task(u"{b}"_s, u"Pagar"_s, u"description"_s, u"gas"_s)});
    const MainWindow window;

    list(window)->setCurrentIndex(row(window, 1));
    QCOMPARE(panelTexts(window).at(1), u"gas"_s);

    list(window)->setCurrentIndex(row(window, 0));
    QCOMPARE(panelTexts(window).at(1), u"luz"_s);
}

void TaskDetailsTest::showsTheFirstTaskOfAnIdThatOccursTwice()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s),
        home::record(u"{b}"_s, u"tres"_s)});
    const MainWindow window;

    list(window)->setCurrentIndex(row(window, 2));

    QCOMPARE(shownTitle(window), u"dos"_s);
}

void TaskDetailsTest::showsAMarkedUpDescriptionLiterally()
{
    home::writeTasks({task(u"{a}"_s, u"uno"_s, u"description"_s, u"<b>negrita</b> &amp; más"_s)});
    const MainWindow window;

    list(window)->setCurrentIndex(row(window, 0));

    QCOMPARE(panelTexts(window).at(1), u"<b>negrita</b> &amp; más"_s);
}

void TaskDetailsTest::missingTextsAreShownEmpty()
{
    home::writeBytes(R"([{"id":"{a}","title":"uno","description":"d"},{"id":"{b}"}])");
    const MainWindow window;
    const MessageBoxes boxes;
    list(window)->setCurrentIndex(row(window, 0));

    list(window)->setCurrentIndex(row(window, 1));

    QCOMPARE(panelTexts(window).mid(0, 3), (QStringList{QString(), QString(), QString()}));
    QCOMPARE(boxes.shown().size(), 0);
    QTRY_COMPARE(panel(window), openPanel);
}

void TaskDetailsTest::aDateThatIsNoneLeavesTheDateAsItIs_data()
{
    QTest::addColumn<QJsonValue>("date");
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("empty") << QJsonValue(QString());
    QTest::newRow("number") << QJsonValue(5032026);
    QTest::newRow("no such day") << QJsonValue(u"31-02-2026"_s);
    QTest::newRow("year first") << QJsonValue(u"2026-03-07"_s);
    QTest::newRow("slashes") << QJsonValue(u"07/03/2026"_s);
    QTest::newRow("single digits") << QJsonValue(u"7-3-2026"_s);
}

void TaskDetailsTest::aDateThatIsNoneLeavesTheDateAsItIs()
{
    QFETCH(QJsonValue, date);
    home::writeTasks({task(u"{a}"_s, u"uno"_s, u"dateLimit"_s, u"29-02-2028"_s),
        task(u"{b}"_s, u"dos"_s, u"dateLimit"_s, date)});
    const MainWindow window;
    list(window)->setCurrentIndex(row(window, 0));

    list(window)->setCurrentIndex(row(window, 1));

    QCOMPARE(panelTexts(window),
        (QStringList{u"dos"_s, u"Descripción de dos"_s, u"Trabajo"_s, u"2028-02-29"_s, u"Media"_s}));
}

void TaskDetailsTest::anUnknownChoiceLeavesTheBoxAsItIs_data()
{
    QTest::addColumn<QByteArray>("box");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonValue>("text");
    QTest::addColumn<QString>("before");
    const QByteArray category("CategoryTaskBoxView");
    const QByteArray urgency("UrgencyTaskBoxView");
    QTest::newRow("category") << category << u"category"_s << QJsonValue(u"Hogar"_s) << u"Trabajo"_s;
    QTest::newRow("category in capitals")
        << category << u"category"_s << QJsonValue(u"OTRO"_s) << u"Trabajo"_s;
    QTest::newRow("no category") << category << u"category"_s << QJsonValue(QJsonValue::Undefined)
                                 << u"Trabajo"_s;
    QTest::newRow("urgency") << urgency << u"urgency"_s << QJsonValue(u"Altísima"_s) << u"Media"_s;
    QTest::newRow("no urgency") << urgency << u"urgency"_s << QJsonValue(3) << u"Media"_s;
}

void TaskDetailsTest::anUnknownChoiceLeavesTheBoxAsItIs()
{
    QFETCH(QByteArray, box);
    QFETCH(QString, key);
    QFETCH(QJsonValue, text);
    QFETCH(QString, before);
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s), task(u"{b}"_s, u"dos"_s, key, text)});
    const MainWindow window;
    auto *combo = widget<QComboBox>(window, box.constData());

    list(window)->setCurrentIndex(row(window, 1));
    QCOMPARE(combo->currentIndex(), -1);

    list(window)->setCurrentIndex(row(window, 0));
    list(window)->setCurrentIndex(row(window, 1));
    QCOMPARE(shownTitle(window), u"dos"_s);
    QCOMPARE(combo->currentText(), before);
}

void TaskDetailsTest::anUnusableRowIsIgnored()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    MainWindow window;
    const MessageBoxes boxes;
    resetTaskFileOpens();

    callSlot(window, "showTaskDetails", QModelIndex());
    callSlot(window, "showTaskDetails", row(window, 1));

    QCOMPARE(taskFileOpens(), 0);
    QCOMPARE(boxes.shown().size(), 0);
    QCOMPARE(shownTitle(window), QString());
}

void TaskDetailsTest::aTaskThatHasGoneIsNotFound_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("removed elsewhere") << QByteArray(R"([{"id":"{b}","title":"uno"}])");
    QTest::newRow("id in other letter case") << QByteArray(R"([{"id":"{A}","title":"uno"}])");
    QTest::newRow("no JSON") << QByteArray(R"([{"id":"{a}","title":"uno"},)");
    QTest::newRow("nothing") << QByteArray();
}

void TaskDetailsTest::aTaskThatHasGoneIsNotFound()
{
    QFETCH(QByteArray, bytes);
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    home::writeBytes(bytes);
    const MessageBoxes boxes;

    list(window)->setCurrentIndex(row(window, 0));

    QCOMPARE(boxes.shown().size(), 1);
    const ShownBox box = boxes.shown().constFirst();
    QCOMPARE(box.title, u"Error"_s);
    QCOMPARE(box.text, u"Task details not found."_s);
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QVERIFY(box.hasParent);
    QCOMPARE(shownTitle(window), QString());
    QVERIFY(widget<QLabel>(window, "TaskAdvise")->isHidden());
    QVERIFY(waitForSlides());
    QCOMPARE(panel(window), closedPanel);
}

void TaskDetailsTest::anElementThatIsNoObjectHasNoDetails()
{
    MainWindow window;
    home::writeBytes(R"(["uno"])");
    callSlot(window, "loadTasks");
    const MessageBoxes boxes;

    list(window)->setCurrentIndex(row(window, 0));

    QCOMPARE(boxes.shown().size(), 1);
    QCOMPARE(boxes.shown().constFirst().text, u"Task details not found."_s);
}

void TaskDetailsTest::aFileThatCannotBeReadIsReported()
{
    home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
    const MainWindow window;
    QVERIFY(widget<QLabel>(window, "TaskAdvise")->isHidden());
    const MessageBoxes boxes;
    const FailingOpen failing(O_RDONLY);
    QTest::ignoreMessage(QtCriticalMsg, "Failed to open file for reading: \"Permission denied\"");

    list(window)->setCurrentIndex(row(window, 0));

    QCOMPARE(boxes.shown().size(), 1);
    const ShownBox box = boxes.shown().constFirst();
    QCOMPARE(box.title, u"Error"_s);
    QCOMPARE(box.text, u"Failed to open file for reading: Permission denied"_s);
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QVERIFY(box.hasParent);
    QVERIFY(!widget<QLabel>(window, "TaskAdvise")->isHidden());
    QCOMPARE(shownTitle(window), QString());
    QVERIFY(waitForSlides());
    QCOMPARE(panel(window), closedPanel);
}

NUBARIA_TEST_MAIN(TaskDetailsTest)
#include "taskdetailstest.moc"
