#include "widgets/sheetchanges.h"
#include "support/windowtest.h"

#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QMap>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Counts how often each widget is told that its style has changed.
class StyleChanges final : public QObject
{
    Q_OBJECT
public:
    explicit StyleChanges(QWidget *window)
    {
        for (QWidget *widget : window->findChildren<QWidget *>()) {
            widget->installEventFilter(this);
        }
    }
    int times(QObject *widget) const { return m_times.value(widget); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_times[watched] += event->type() == QEvent::StyleChange;
        return false;
    }

private:
    QMap<QObject *, int> m_times;
};

QImage picture(QWidget &window)
{
    return window.grab().toImage();
}

} // namespace

class SheetChangesTest final : public WindowTest
{
    Q_OBJECT
private:
    // A card on a page in a window, each with a sheet.
    struct Window
    {
        QWidget window;
        SheetChanges changes{&window};
        QWidget *page = new QWidget(&window);
        QFrame *card = new QFrame(page);
        QLabel *label = new QLabel(u"Palabras"_s, card);
        QComboBox *chooser = new QComboBox(card);
        // Its scroll bars are polished from their birth, and read the sheets of all above them.
        QListView *list = new QListView(card);

        Window()
        {
            page->setStyleSheet(u"background: white;"_s);
            card->setStyleSheet(u"QFrame { border: 3px solid red; }"_s);
            label->setStyleSheet(u"color: red;"_s);
            page->resize(300, 200);
            card->setGeometry(20, 20, 200, 100);
            label->setGeometry(10, 10, 100, 30);
            chooser->setGeometry(10, 50, 100, 30);
            window.resize(300, 200);
            list->setGeometry(120, 10, 70, 80);
        }

        void recolour(const QString &colour) const
        {
            page->setStyleSheet(u"background: light%1;"_s.arg(colour));
            card->setStyleSheet(u"QFrame { border: 5px solid %1; }"_s.arg(colour));
            label->setStyleSheet(u"color: %1;"_s.arg(colour));
        }
    };

private slots:
    void looksAsIfSetOneByOne_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::newRow("before it is shown") << false;
        QTest::newRow("while it is shown") << true;
    }

    void looksAsIfSetOneByOne()
    {
        QFETCH(bool, shown);
        Window plain;
        Window changed;
        plain.window.setVisible(shown);
        changed.window.setVisible(shown);
        Window unchanged; // taking a picture polishes what has not been shown

        plain.recolour(u"green"_s);
        changed.changes.make([&] { changed.recolour(u"green"_s); });

        QCOMPARE(changed.label->styleSheet(), u"color: green;"_s);
        QVERIFY(picture(changed.window) != picture(unchanged.window));
        QCOMPARE(picture(changed.window), picture(plain.window));
        QCOMPARE(changed.card->frameWidth(), plain.card->frameWidth());
        QCOMPARE(changed.label->palette(), plain.label->palette());
    }

    void followsNoSheetBeforeAllAreSet()
    {
        Window shown;
        shown.window.show();
        const QPalette before = shown.label->palette();
        QPalette meanwhile;

        shown.changes.make([&] {
            shown.recolour(u"green"_s);
            meanwhile = shown.label->palette();
        });

        QCOMPARE(meanwhile, before);
        QVERIFY(shown.label->palette() != before);
    }

    void tellsEachShownWidgetOnce()
    {
        Window shown;
        shown.window.show();
        const StyleChanges told(&shown.window);

        shown.changes.make([&] { shown.recolour(u"green"_s); });

        for (QObject *widget : {static_cast<QObject *>(shown.page), static_cast<QObject *>(shown.card),
                 static_cast<QObject *>(shown.label)}) {
            QCOMPARE(told.times(widget), 1);
        }
    }

    void hasNoChooserBuildItsPopUpBeforeItIsShown()
    {
        Window unshown;
        const qsizetype widgets = unshown.window.findChildren<QWidget *>().size();

        unshown.changes.make([&] { unshown.window.setStyleSheet(u"QWidget { background: white; }"_s); });

        QCOMPARE(unshown.window.findChildren<QWidget *>().size(), widgets);
    }

    void tellsBeforeItIsShownOnlyTheChoosersWhosePopUpsStand()
    {
        Window unshown;
        unshown.chooser->view();
        const StyleChanges told(&unshown.window);

        unshown.changes.make([&] { unshown.recolour(u"green"_s); });

        QCOMPARE(told.times(unshown.chooser), 1);
        QCOMPARE(told.times(unshown.card), 0);
        QCOMPARE(told.times(unshown.label), 0);
        QCOMPARE(told.times(unshown.list), 0);
    }

    void leavesLaterChangesAlone()
    {
        Window plain;
        Window changed;
        plain.window.show();
        changed.window.show();
        changed.changes.make([&] { changed.recolour(u"green"_s); });

        plain.recolour(u"blue"_s);
        changed.recolour(u"blue"_s);

        QCOMPARE(picture(changed.window), picture(plain.window));
    }

    void takesChangesAgainAndAgain()
    {
        Window plain;
        Window changed;
        plain.window.show();
        changed.window.show();

        for (const QString &colour : {u"green"_s, u"blue"_s, u"green"_s}) {
            plain.recolour(colour);
            changed.changes.make([&] { changed.recolour(colour); });
            QCOMPARE(picture(changed.window), picture(plain.window));
        }
    }
};

NUBARIA_TEST_MAIN(SheetChangesTest)
#include "sheetchangestest.moc"
