#include "widgets/datetyping.h"

#include "support/windowtest.h"

#include <QCalendarWidget>
#include <QClipboard>
#include <QDateEdit>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QSignalSpy>
#include <QWheelEvent>
#include <QWindow>

#include <memory>
#include <string_view>

using namespace Qt::Literals::StringLiterals;

namespace {

// A test builds its tables once, at its start.
// clazy:excludeall=non-pod-global-static
const QDate before(2026, 11, 22);

/// A window with a date editor between two fields.
struct Desk
{
    Desk()
    {
        edit.setLocale(QLocale(QLocale::Spanish, QLocale::Mexico));
        edit.setDisplayFormat(u"dd/MM/yy"_s);
        edit.setCalendarPopup(true);
        edit.setDate(before);
        edit.setGeometry(10, 60, 200, 30);
        next.move(10, 110);
        new DateTyping(&edit);
        window.resize(300, 200);
        window.show();
        window.activateWindow();
    }

    QLineEdit *line() const { return edit.findChild<QLineEdit *>(QString(), Qt::FindDirectChildrenOnly); }

    void clickPart(int part) const
    {
        // The middle of the part's two digits.
        const QFontMetrics metrics(line()->font());
        const int x = metrics.horizontalAdvance(line()->text().first(3 * part + 1)) + 5;
        click(QPoint(x, line()->height() / 2));
    }

    void click(QPoint place) const
    {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, line()->mapTo(&window, place));
    }

    void type(const QString &text) const
    {
        for (const QChar character : text) {
            QTest::keyClick(window.windowHandle(), character.toLatin1());
        }
    }

    /// Gives the editor the focus as a hand does.
    void enter(const QString &way)
    {
        if (way == "tab"_L1) {
            edit.setFocus(Qt::TabFocusReason);
        } else if (way == "backtab"_L1) {
            edit.setFocus(Qt::BacktabFocusReason);
        } else {
            clickPart(way == "day"_L1 ? 0 : way == "month"_L1 ? 1 : 2);
        }
        if (way == "all"_L1) {
            QTest::keyClick(&edit, Qt::Key_A, Qt::ControlModifier);
        }
    }

    QWidget window;
    QLineEdit first{&window};
    QDateEdit edit{&window};
    QLineEdit next{&window};
};

void addTypings(const QString &way)
{
    const std::initializer_list<std::pair<QString, QDate>> typings
        = {{u"05/03/27"_s, {2027, 3, 5}}, {u"5/3/27"_s, {2027, 3, 5}}, {u"05-03-27"_s, {2027, 3, 5}},
            {u"050327"_s, {2027, 3, 5}}, {u"05/03/2027"_s, {2027, 3, 5}}, {u"5/3/2027"_s, {2027, 3, 5}},
            {u"05032027"_s, {2027, 3, 5}}, {u"5.3.27"_s, {2027, 3, 5}}, {u"05 03 27"_s, {2027, 3, 5}},
            {u"31/12/27"_s, {2027, 12, 31}}, {u"29/02/28"_s, {2028, 2, 29}}, {u"201220"_s, {2020, 12, 20}},
            {u"31/02/27"_s, {2027, 2, 28}}, {u"45/13/27"_s, {2027, 12, 31}}, {u"00/00/00"_s, {2000, 1, 1}},
            {u"05/03/1999"_s, {1999, 3, 5}}, {u"05/03/279"_s, {2027, 3, 5}}, {u"05/03/27/4"_s, {2027, 3, 5}}};
    for (const auto &[typed, date] : typings) {
        QTest::addRow("%s, %s", qPrintable(way), qPrintable(typed)) << way << typed << date;
    }
}

} // namespace

class DateTypingTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        m_desk = std::make_unique<Desk>();
        QVERIFY(QTest::qWaitForWindowActive(&m_desk->window));
    }
    void cleanup() { m_desk.reset(); }

    void takesTheDateAsItIsTyped_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QDate>("date");
        for (const char *way : {"tab", "backtab", "day", "month", "year", "all"}) {
            addTypings(QString::fromLatin1(way));
        }
    }

    void takesTheDateAsItIsTyped()
    {
        QFETCH(QString, way);
        QFETCH(QString, typed);
        QFETCH(QDate, date);

        m_desk->enter(way);
        m_desk->type(typed);

        QCOMPARE(m_desk->edit.date(), date);
        QCOMPARE(m_desk->line()->text(), date.toString(u"dd/MM/yy"_s));
        m_desk->next.setFocus();
        QCOMPARE(m_desk->edit.date(), date);
        QCOMPARE(m_desk->line()->text(), date.toString(u"dd/MM/yy"_s));
    }

    void takesOnePart_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QDate>("date");
        QTest::newRow("the day, by tab") << u"tab"_s << u"05"_s << QDate(2026, 11, 5);
        QTest::newRow("the day, by click") << u"day"_s << u"5"_s << QDate(2026, 11, 5);
        QTest::newRow("the month") << u"month"_s << u"3"_s << QDate(2026, 3, 22);
        QTest::newRow("the year") << u"year"_s << u"27"_s << QDate(2027, 11, 22);
        QTest::newRow("the year, backwards") << u"backtab"_s << u"27"_s << QDate(2027, 11, 22);
        QTest::newRow("the day, all selected") << u"all"_s << u"05"_s << QDate(2026, 11, 5);
        QTest::newRow("the month, by a separator") << u"tab"_s << u"/03"_s << QDate(2026, 3, 22);
    }

    void takesOnePart() { takesTheDateAsItIsTyped(); }

    void showsItsDateAfterEachKey()
    {
        m_desk->enter(u"day"_s);
        const QSignalSpy changed(&m_desk->edit, &QDateEdit::dateChanged);

        QStringList shown;
        for (const char key : std::string_view("31/02/27")) {
            QTest::keyClick(m_desk->window.windowHandle(), key);
            QCOMPARE(m_desk->line()->text(), m_desk->edit.date().toString(u"dd/MM/yy"_s));
            shown.append(m_desk->line()->text());
        }

        QCOMPARE(shown,
            QStringList({u"03/11/26"_s, u"30/11/26"_s, u"30/11/26"_s, u"31/01/26"_s, u"28/02/26"_s,
                u"28/02/26"_s, u"28/02/02"_s, u"28/02/27"_s}));
        QCOMPARE(changed.size(), 6);
    }

    void goesOnToTheNextPartOnce()
    {
        m_desk->enter(u"day"_s);

        QStringList selected;
        for (const char key : std::string_view("05/3/2027")) {
            QTest::keyClick(m_desk->window.windowHandle(), key);
            selected.append(m_desk->line()->selectedText());
        }

        QCOMPARE(selected,
            QStringList({u"01"_s, u"11"_s, u"11"_s, u"03"_s, u"26"_s, u"02"_s, u"20"_s, u"02"_s, u"27"_s}));
    }

    void aClickSelectsThePart()
    {
        QStringList selected;
        for (int part = 0; part < 3; ++part) {
            m_desk->clickPart(part);
            selected.append(m_desk->line()->selectedText());
        }
        m_desk->click(QPoint(m_desk->line()->width() - 5, 10));
        selected.append(m_desk->line()->selectedText());

        QCOMPARE(selected, QStringList({u"22"_s, u"11"_s, u"26"_s, u"26"_s}));
        QVERIFY(m_desk->edit.hasFocus());
    }

    void aDragAndADoubleClickSelectWhatTheyMark()
    {
        QWindow *window = m_desk->window.windowHandle();
        const QPoint start = m_desk->line()->mapTo(&m_desk->window, QPoint(2, 10));

        QTest::mousePress(window, Qt::LeftButton, {}, start);
        QTest::mouseMove(window, start + QPoint(150, 0));
        QTest::mouseRelease(window, Qt::LeftButton, {}, start + QPoint(150, 0));
        QCOMPARE(m_desk->line()->selectedText(), u"22/11/26"_s);
        m_desk->type(u"05"_s);
        QCOMPARE(m_desk->edit.date(), QDate(2026, 11, 5));

        QTest::mouseDClick(window, Qt::LeftButton, {}, start);
        QVERIFY(m_desk->line()->hasSelectedText());
    }

    void aClickEndsTheTyping()
    {
        m_desk->enter(u"day"_s);
        m_desk->type(u"05/03/27"_s);

        m_desk->clickPart(2);
        m_desk->type(u"28"_s);
        QCOMPARE(m_desk->edit.date(), QDate(2028, 3, 5));

        m_desk->clickPart(0);
        m_desk->type(u"7"_s);
        QCOMPARE(m_desk->edit.date(), QDate(2028, 3, 7));
    }

    void leavingEndsTheTyping()
    {
        m_desk->enter(u"tab"_s);
        m_desk->type(u"1"_s);
        m_desk->next.setFocus();

        m_desk->enter(u"tab"_s);
        m_desk->type(u"5"_s);

        QCOMPARE(m_desk->edit.date(), QDate(2026, 11, 5));
    }

    void anotherDateEndsTheTyping()
    {
        m_desk->enter(u"tab"_s);
        m_desk->type(u"1"_s);
        m_desk->edit.setDate(QDate(2030, 6, 15));

        m_desk->type(u"2"_s);

        QCOMPARE(m_desk->edit.date(), QDate(2030, 6, 2));
    }

    void aKeyThatOnlyChangesOthersInterruptsNothing()
    {
        QWindow *window = m_desk->window.windowHandle();
        m_desk->enter(u"tab"_s);
        m_desk->type(u"1"_s);

        for (const Qt::Key key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Meta, Qt::Key_Alt, Qt::Key_CapsLock,
                 Qt::Key_NumLock, Qt::Key_ScrollLock, Qt::Key_AltGr, Qt::Key_Super_L, Qt::Key_Super_R}) {
            QTest::sendKeyEvent(QTest::Click, window, key, QString(), Qt::NoModifier);
        }
        m_desk->type(u"2"_s);

        QCOMPARE(m_desk->edit.date(), QDate(2026, 11, 12));
    }

    void takesBackTheLastDigit()
    {
        QWindow *window = m_desk->window.windowHandle();
        m_desk->enter(u"tab"_s);
        m_desk->type(u"05/04"_s);

        QTest::keyClick(window, Qt::Key_Backspace);
        m_desk->type(u"3/27"_s);
        QCOMPARE(m_desk->edit.date(), QDate(2027, 3, 5));

        for (int key = 0; key < 8; ++key) {
            QTest::keyClick(window, Qt::Key_Backspace);
        }
        QCOMPARE(m_desk->edit.date(), before);
        QCOMPARE(m_desk->line()->selectedText(), u"22"_s);
    }

    void neverShowsAnErasedPart()
    {
        const std::initializer_list<std::pair<int, Qt::KeyboardModifier>> keys
            = {{Qt::Key_Backspace, Qt::NoModifier}, {Qt::Key_Delete, Qt::NoModifier},
                {Qt::Key_X, Qt::ControlModifier}, {Qt::Key_Backspace, Qt::ControlModifier}};
        for (const auto &[key, modifier] : keys) {
            m_desk->enter(u"month"_s);
            QTest::keyClick(m_desk->window.windowHandle(), static_cast<Qt::Key>(key), modifier);
            QCOMPARE(m_desk->line()->text(), u"22/11/26"_s);
        }
        m_desk->type(u"050327"_s);
        QCOMPARE(m_desk->edit.date(), QDate(2027, 3, 5));
    }

    void takesDigitsFromAnInputMethod()
    {
        m_desk->enter(u"day"_s);
        for (const QString &text : {u"٠٥"_s, u"/"_s, u"03/27"_s}) {
            QInputMethodEvent event;
            event.setCommitString(text);
            QCoreApplication::sendEvent(&m_desk->edit, &event);
        }
        QCOMPARE(m_desk->edit.date(), QDate(2027, 3, 5));
    }

    void leavesArrowsWheelAndShortcutsToQt()
    {
        QWindow *window = m_desk->window.windowHandle();
        m_desk->enter(u"tab"_s);
        m_desk->type(u"05"_s);
        QTest::keyClick(window, Qt::Key_Up);
        QCOMPARE(m_desk->edit.date(), QDate(2026, 12, 5));
        m_desk->type(u"03"_s);
        QCOMPARE(m_desk->edit.date(), QDate(2026, 3, 5));

        const QPoint place(2, 10);
        QWheelEvent wheel(
            place, m_desk->line()->mapToGlobal(place), {}, QPoint(0, -120), {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&m_desk->edit, &wheel);
        const QDate wheeled = m_desk->edit.date();
        QVERIFY(wheeled != QDate(2026, 3, 5));
        QTest::keyClick(window, '1', Qt::ControlModifier);
        QTest::keyClick(window, '1', Qt::AltModifier);
        QTest::keyClick(window, 'x');
        QCOMPARE(m_desk->edit.date(), wheeled);
    }

    void pastesAsQtDoes_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
            {"05/03/27", "5/3/27", "31/02/27", "05-03-27", "050327", "03", "/", "mañana", ""}) {
            QTest::newRow(text) << QString::fromUtf8(text);
        }
    }

    void pastesAsQtDoes()
    {
        QFETCH(QString, text);
        QDateEdit plain(before, &m_desk->window);
        plain.setLocale(m_desk->edit.locale());
        plain.setDisplayFormat(m_desk->edit.displayFormat());
        plain.show();
        QGuiApplication::clipboard()->setText(text);

        for (QDateEdit *edit : {&plain, &m_desk->edit}) {
            edit->setFocus(Qt::TabFocusReason);
            QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
        }

        QCOMPARE(m_desk->edit.date(), plain.date());
        QCOMPARE(m_desk->line()->text(), m_desk->edit.date().toString(u"dd/MM/yy"_s));
    }

    void leavesTheCalendarToQt()
    {
        m_desk->enter(u"tab"_s);
        m_desk->type(u"05"_s);
        QTest::mouseClick(m_desk->window.windowHandle(), Qt::LeftButton, {},
            m_desk->edit.mapTo(&m_desk->window, QPoint(m_desk->edit.width() - 8, 15)));
        QVERIFY(QApplication::activePopupWidget());
        QWidget *days = m_desk->edit.calendarWidget()->focusProxy();
        QTest::keyClick(days, Qt::Key_Right);
        QTest::keyClick(days, Qt::Key_Return);

        QCOMPARE(m_desk->edit.date(), QDate(2026, 11, 6));
    }

private:
    std::unique_ptr<Desk> m_desk;
};

NUBARIA_TEST_MAIN(DateTypingTest)
#include "datetypingtest.moc"
