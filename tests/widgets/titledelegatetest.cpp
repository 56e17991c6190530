#include "widgets/titledelegate.h"

#include "support/windowtest.h"

#include <QHelpEvent>
#include <QListView>
#include <QScrollBar>
#include <QStringListModel>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString sheet = u"QListView { padding: 8px; }"
                      "QListView::item { border: 1px solid #CCC; padding: 10px; margin-bottom: 10px; }"_s;

/// A list of these titles, shown.
struct TitleList
{
    TitleList(const QStringList &titles, bool ownDelegate)
        : model(titles)
    {
        view.setStyleSheet(sheet);
        view.setModel(&model);
        if (ownDelegate) {
            view.setItemDelegate(new TitleDelegate(&view));
        } else {
            // The own one never makes a row wider than the list, so that only the other has this bar.
            view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        }
        view.resize(500, 300);
        view.show();
    }

    QSize hint(int row) const { return view.sizeHintForIndex(model.index(row, 0)); }

    QStringListModel model;
    QListView view;
};

QList<QRect> rows(const TitleList &list)
{
    QList<QRect> places;
    for (int row = 0; row < list.model.rowCount(); ++row) {
        places.append(list.view.visualRect(list.model.index(row, 0)));
    }
    return places;
}

/// The same, cut off where the list ends.
QList<QRect> visibleRows(const TitleList &list)
{
    QList<QRect> places = rows(list);
    for (QRect &place : places) {
        place.setWidth(std::min(place.width(), list.view.viewport()->width()));
    }
    return places;
}

/// Asks for the tool tip of a row, as a mouse that rests on it does.
void pointAt(const TitleList &list, int row)
{
    const QPoint place = rows(list).at(row).center();
    QHelpEvent event(QEvent::ToolTip, place, list.view.viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(list.view.viewport(), &event);
}

/// Whether anything is drawn in the last of the pixels in which a title may be, left of padding and border.
bool reachesTheEnd(TitleList &list, int row)
{
    const QRect place = rows(list).at(row).adjusted(0, 0, 0, -10); // the margin below
    const QImage picture = list.view.viewport()->grab().toImage();
    for (int x = place.right() - 10; x < place.right() - 2; ++x) {
        for (int y = place.top() + 10; y < place.bottom() - 10; ++y) {
            if (picture.pixelColor(x, y).lightness() < 128) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

class TitleDelegateTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void laysRowsOutAsQtDoes_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("ordinary") << u"Comprar pan"_s;
        QTest::newRow("accents") << u"¿Año, señal, pingüino, ÁÉÍÓÚ?"_s;
        QTest::newRow("empty") << QString();
        QTest::newRow("the first letter behind Latin-1") << u"\u0100"_s;
        QTest::newRow("a space") << u" "_s;
        QTest::newRow("just fits") << u"n"_s.repeated(50);
        QTest::newRow("just too long") << u"W"_s.repeated(45);
        QTest::newRow("much too long") << u"palabra "_s.repeated(400);
        QTest::newRow("two lines") << u"uno\ndos"_s;
        QTest::newRow("line separator") << u"uno\u2028dos"_s;
        QTest::newRow("carriage return") << u"uno\rdos"_s;
        QTest::newRow("tabs") << u"\t\t\t\t\t\t\t\tuno"_s;
        QTest::newRow("control characters") << u"\u0001\u007f\u0085uno"_s;
        QTest::newRow("soft hyphens") << u"\u00ad\u00aduno"_s;
        QTest::newRow("right to left") << u"\u05e9\u05dc\u05d5\u05dd"_s;
        QTest::newRow("combining marks") << u"a\u0301\u0323\u0302\u0323"_s;
        QTest::newRow("han") << u"買麵包"_s;
        QTest::newRow("emoji") << u"\U0001F9C1 pastel"_s;
        QTest::newRow("markup") << u"<h1>uno</h1>"_s;
    }

    void laysRowsOutAsQtDoes()
    {
        QFETCH(QString, title);
        for (const QStringList &titles :
            {QStringList{title}, {title, u"uno"_s, u"dos"_s}, {u"uno"_s, title, u"dos"_s}}) {
            TitleList qts(titles, false);
            TitleList own(titles, true);
            QVERIFY(QTest::qWaitForWindowExposed(&own.view));

            QCOMPARE(rows(own), visibleRows(qts));
            QCOMPARE(own.view.horizontalScrollBar()->maximum(), 0);
            QCOMPARE(own.view.verticalScrollBar()->maximum(), qts.view.verticalScrollBar()->maximum());
        }
    }

    void keepsRowsWithinTheList()
    {
        TitleList own({u"n"_s}, true);
        own.view.resize(500, 120); // the bar beside the rows comes with the third of them
        QVERIFY(QTest::qWaitForWindowExposed(&own.view));
        for (qsizetype length = 30; length <= 80; ++length) {
            for (const QString &letter : {u"n"_s, u"ñ"_s, u"買"_s}) {
                const QString title = letter.repeated(length);
                own.model.setStringList({u"uno"_s, title, title, title});

                for (const QRect &row : rows(own)) {
                    QCOMPARE(row.width(), own.view.viewport()->width());
                }
                QCOMPARE(own.view.horizontalScrollBar()->maximum(), 0);
                own.model.setStringList({u"uno"_s});
                const int width = rows(own).constFirst().width(); // lays them out, with which the bar goes
                QCOMPARE(width, own.view.viewport()->width());
            }
        }
    }

    void cutsLongTitlesShort()
    {
        // Of ordinary letters, and of others, which are measured one by one.
        const QStringList titles{u"W"_s.repeated(100), u"W"_s.repeated(20), u"W…"_s.repeated(100)};
        TitleList own(titles, true);
        TitleList whole(titles, true);
        whole.view.setTextElideMode(Qt::ElideNone);
        QVERIFY(QTest::qWaitForWindowExposed(&own.view));

        for (const int row : {0, 2}) {
            QVERIFY(!reachesTheEnd(own, row));
            QVERIFY(own.view.viewport()->grab(rows(own).at(row)).toImage()
                != whole.view.viewport()->grab(rows(whole).at(row)).toImage());
        }
        QCOMPARE(own.view.viewport()->grab(rows(own).at(1)).toImage(),
            whole.view.viewport()->grab(rows(whole).at(1)).toImage());
    }

    void showsATitleThatIsCutWholeInAToolTip()
    {
        const QString title = u"<b>5 < 6 & 7</b>  dos blancos "_s + u"palabra "_s.repeated(60);
        TitleList own({u"uno"_s, title, u"dos"_s}, true);
        QVERIFY(QTest::qWaitForWindowExposed(&own.view));

        pointAt(own, 1);

        QTextDocument shown;
        shown.setHtml(QToolTip::text());
        QCOMPARE(shown.toPlainText(), title);
        pointAt(own, 2);
        QTRY_VERIFY(!QToolTip::isVisible());
    }

    void tellsTitlesThatFitFromThoseThatAreCut()
    {
        TitleList own({u"n"_s}, true);
        QVERIFY(QTest::qWaitForWindowExposed(&own.view));
        int cut = 0;
        for (qsizetype length = 40; length <= 80; ++length) {
            own.model.setStringList({u"n"_s.repeated(length)});
            QToolTip::hideText();
            QTRY_VERIFY(!QToolTip::isVisible());
            own.view.setTextElideMode(Qt::ElideRight);
            const QImage elided = own.view.viewport()->grab(rows(own).at(0)).toImage();
            own.view.setTextElideMode(Qt::ElideNone);
            const bool isCut = own.view.viewport()->grab(rows(own).at(0)).toImage() != elided;

            pointAt(own, 0);

            QCOMPARE(QToolTip::isVisible(), isCut);
            cut += isCut ? 1 : 0;
        }
        QVERIFY(cut > 0 && cut < 40);
    }

    void measuresOrdinaryTitlesOnce()
    {
        const TitleList list(
            {u"uno"_s, u"Comprar el pan de la semana"_s, u"¿Año, señal, pingüino?"_s, u"買麵包"_s}, true);

        QCOMPARE(list.hint(1), list.hint(0));
        QCOMPARE(list.hint(2), list.hint(0));
        QCOMPARE(list.hint(3).width(), list.hint(0).width());
    }

    void followsTheFontAndTheWidthOfTheView()
    {
        const QStringList titles = {u"uno"_s, u"n"_s.repeated(40), u"dos"_s};
        TitleList qts(titles, false);
        TitleList own(titles, true);
        QVERIFY(QTest::qWaitForWindowExposed(&own.view));
        for (TitleList *list : {&qts, &own}) {
            rows(*list);
            QFont font = list->view.font();
            font.setPointSize(22);
            list->view.setFont(font);
        }
        QCOMPARE(rows(own), visibleRows(qts));

        for (TitleList *list : {&qts, &own}) {
            list->view.resize(200, 300);
            list->model.setStringList(titles);
        }
        QCOMPARE(rows(own), visibleRows(qts));
        QVERIFY(rows(qts) != visibleRows(qts));
        QCOMPARE(own.view.horizontalScrollBar()->maximum(), 0);
    }

    void measuresAsQtDoesOutsideOfAList()
    {
        const TitleList list({u"uno"_s, QString()}, true);
        const QModelIndex index = list.model.index(0, 0);
        const QModelIndex empty = list.model.index(1, 0);
        const TitleDelegate own(nullptr);
        const QStyledItemDelegate qts;
        QVERIFY(list.hint(0).isValid());

        QCOMPARE(own.sizeHint(QStyleOptionViewItem(), index), qts.sizeHint(QStyleOptionViewItem(), index));
        QCOMPARE(own.sizeHint(QStyleOptionViewItem(), empty), qts.sizeHint(QStyleOptionViewItem(), empty));
        // And a delegate that has measured a list before forgets what it measured.
        QStyleOptionViewItem option;
        const auto *of = list.view.itemDelegate();
        QCOMPARE(of->sizeHint(option, index), qts.sizeHint(option, index));
    }
};

NUBARIA_TEST_MAIN(TitleDelegateTest)
#include "titledelegatetest.moc"
