#include "mainwindow/titledelegate.h"

#include "support/testmain.h"

#include <QListView>
#include <QScrollBar>
#include <QStringListModel>

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

} // namespace

class TitleDelegateTest : public QObject
{
    Q_OBJECT
private slots:
    void laysRowsOutAsQtDoes_data();
    void laysRowsOutAsQtDoes();
    void findsTheSameTitlesTooLongAsQtDoes();
    void measuresOrdinaryTitlesOnce();
    void followsTheFontAndTheWidthOfTheView();
    void measuresAsQtDoesOutsideOfAList();
};

void TitleDelegateTest::laysRowsOutAsQtDoes_data()
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

void TitleDelegateTest::laysRowsOutAsQtDoes()
{
    QFETCH(QString, title);
    for (const QStringList &titles :
        {QStringList{title}, {title, u"uno"_s, u"dos"_s}, {u"uno"_s, title, u"dos"_s}}) {
        TitleList qts(titles, false);
        TitleList own(titles, true);
        QVERIFY(QTest::qWaitForWindowExposed(&own.view));

        QCOMPARE(rows(own), rows(qts));
        QCOMPARE(own.view.horizontalScrollBar()->maximum(), qts.view.horizontalScrollBar()->maximum());
        QCOMPARE(own.view.verticalScrollBar()->maximum(), qts.view.verticalScrollBar()->maximum());
    }
}

void TitleDelegateTest::findsTheSameTitlesTooLongAsQtDoes()
{
    TitleList qts({u"n"_s}, false);
    TitleList own({u"n"_s}, true);
    QVERIFY(QTest::qWaitForWindowExposed(&own.view));
    for (qsizetype length = 30; length <= 80; ++length) {
        for (TitleList *list : {&qts, &own}) {
            list->model.setStringList({u"uno"_s, u"n"_s.repeated(length)});
        }

        QCOMPARE(rows(own), rows(qts));
        QCOMPARE(own.view.horizontalScrollBar()->maximum(), qts.view.horizontalScrollBar()->maximum());
    }
    QVERIFY(qts.view.horizontalScrollBar()->maximum() > 0);
}

void TitleDelegateTest::measuresOrdinaryTitlesOnce()
{
    const TitleList list(
        {u"uno"_s, u"Comprar el pan de la semana"_s, u"¿Año, señal, pingüino?"_s, u"買麵包"_s}, true);

    QCOMPARE(list.hint(1), list.hint(0));
    QCOMPARE(list.hint(2), list.hint(0));
    QVERIFY(list.hint(3).width() > list.hint(0).width());
}

void TitleDelegateTest::followsTheFontAndTheWidthOfTheView()
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
    QCOMPARE(rows(own), rows(qts));
    QCOMPARE(own.view.horizontalScrollBar()->maximum(), qts.view.horizontalScrollBar()->maximum());

    for (TitleList *list : {&qts, &own}) {
        list->view.resize(200, 300);
        list->model.setStringList(titles);
    }
    QCOMPARE(rows(own), rows(qts));
    QVERIFY(qts.view.horizontalScrollBar()->maximum() > 0);
    QCOMPARE(own.view.horizontalScrollBar()->maximum(), qts.view.horizontalScrollBar()->maximum());
}

void TitleDelegateTest::measuresAsQtDoesOutsideOfAList()
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

NUBARIA_TEST_MAIN(TitleDelegateTest)
#include "titledelegatetest.moc"
