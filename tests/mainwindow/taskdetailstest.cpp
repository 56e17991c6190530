#include "support/home.h"
#include "support/messageboxes.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

QStringList panelTexts(const MainWindow &window)
{
    return {widget<QLineEdit>(window, "TaskTitleView")->text(),
        widget<QTextEdit>(window, "TaskDescriptionView")->toPlainText(),
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

} // namespace

class TaskDetailsTest final : public WindowTest
{
    Q_OBJECT

    QStringList m_filled;

private slots:
    void init()
    {
        WindowTest::init();
        m_filled.clear();
    }

    void showsEveryTextOfTheTask()
    {
        QJsonObject record = task(u"{a}"_s, u"Pagar la luz"_s, u"description"_s, u"uno\n  dos"_s);
        record.insert(u"category"_s, u"Escuela"_s);
        record.insert(u"dateLimit"_s, u"03-04-2027"_s);
        record.insert(u"urgency"_s, u"Muy baja"_s);
        home::writeTasks({record});
        const MainWindow window;
        const MessageBoxes boxes;

        selectRow(window, 0);

        QCOMPARE(panelTexts(window),
            (QStringList{u"Pagar la luz"_s, u"uno\n  dos"_s, u"Escuela"_s, u"2027-04-03"_s, u"Muy baja"_s}));
        QCOMPARE(boxes.shown().size(), 0);
    }

    void fillsThePanelInOrder()
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
        connect(
            widget<QDateEdit>(window, "DateLimitTaskView"), &QDateEdit::dateChanged, this, note(u"date"_s));
        connect(widget<QComboBox>(window, "UrgencyTaskBoxView"), &QComboBox::currentIndexChanged, this,
            note(u"urgency"_s));

        selectRow(window, 0);

        QCOMPARE(
            m_filled, (QStringList{u"title"_s, u"description"_s, u"category"_s, u"date"_s, u"urgency"_s}));
    }

    void readsTheTaskAsTheFileHoldsItNow()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
        const MainWindow window;
        home::writeTasks({home::record(u"{b}"_s, u"dos, cambiada"_s), home::record(u"{a}"_s, u"uno"_s)});

        selectRow(window, 1);

        QCOMPARE(panelTexts(window).constFirst(), u"dos, cambiada"_s);
    }

    void showsTheTaskOfTheRowAmongEqualTitles()
    {
        home::writeTasks({task(u"{a}"_s, u"Pagar"_s, u"description"_s, u"luz"_s),
            task(u"{b}"_s, u"Pagar"_s, u"description"_s, u"gas"_s)});
        const MainWindow window;

        selectRow(window, 1);
        QCOMPARE(panelTexts(window).at(1), u"gas"_s);

        selectRow(window, 0);
        QCOMPARE(panelTexts(window).at(1), u"luz"_s);
    }

    void showsTheFirstTaskOfAnIdThatOccursTwice()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s),
            home::record(u"{b}"_s, u"tres"_s)});
        const MainWindow window;

        selectRow(window, 2);

        QCOMPARE(panelTexts(window).constFirst(), u"dos"_s);
    }

    void showsAMarkedUpDescriptionLiterally()
    {
        home::writeTasks({task(u"{a}"_s, u"uno"_s, u"description"_s, u"<b>negrita</b> &amp; más"_s)});
        const MainWindow window;

        selectRow(window, 0);

        QCOMPARE(panelTexts(window).at(1), u"<b>negrita</b> &amp; más"_s);
    }

    void missingTextsAreShownEmpty()
    {
        home::writeBytes(R"([{"id":"{a}","title":"uno","description":"d"},{"id":"{b}"}])");
        const MainWindow window;
        const MessageBoxes boxes;
        selectRow(window, 0);

        selectRow(window, 1);

        QCOMPARE(panelTexts(window).mid(0, 3), (QStringList{QString(), QString(), QString()}));
        QCOMPARE(boxes.shown().size(), 0);
        QTRY_COMPARE(panelPlace(window), openPanel);
    }

    void aDateThatIsNoneLeavesTheDateAsItIs_data()
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

    void aDateThatIsNoneLeavesTheDateAsItIs()
    {
        QFETCH(QJsonValue, date);
        home::writeTasks({task(u"{a}"_s, u"uno"_s, u"dateLimit"_s, u"29-02-2028"_s),
            task(u"{b}"_s, u"dos"_s, u"dateLimit"_s, date)});
        const MainWindow window;
        selectRow(window, 0);

        selectRow(window, 1);

        QCOMPARE(panelTexts(window),
            (QStringList{u"dos"_s, u"Descripción de dos"_s, u"Trabajo"_s, u"2028-02-29"_s, u"Media"_s}));
    }

    void anUnknownChoiceLeavesTheBoxAsItIs_data()
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

    void anUnknownChoiceLeavesTheBoxAsItIs()
    {
        QFETCH(QByteArray, box);
        QFETCH(QString, key);
        QFETCH(QJsonValue, text);
        QFETCH(QString, before);
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), task(u"{b}"_s, u"dos"_s, key, text)});
        const MainWindow window;
        auto *combo = widget<QComboBox>(window, box.constData());

        selectRow(window, 1);
        QCOMPARE(combo->currentIndex(), -1);

        selectRow(window, 0);
        selectRow(window, 1);
        QCOMPARE(panelTexts(window).constFirst(), u"dos"_s);
        QCOMPARE(combo->currentText(), before);
    }
};

NUBARIA_TEST_MAIN(TaskDetailsTest)
#include "taskdetailstest.moc"
