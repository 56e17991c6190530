#include "widgets/dropshadow.h"

#include "support/paintcounter.h"
#include "support/windowtest.h"

#include <QFrame>
#include <QLabel>
#include <QPainter>
#include <QRegularExpression>
#include <QScreen>

#include <algorithm>
#include <cstdlib>
#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A window with a panel that has a shadow, two labels in the panel, and one beside it whose edge is in the
/// shadow.
struct Scene
{
    explicit Scene(bool ownEffect)
    {
        window.setStyleSheet(u"QWidget { background-color: white; color: black; }"_s);
        window.resize(400, 300);
        panel.setObjectName(u"panel"_s);
        panel.setStyleSheet(u"QFrame#panel { border-radius: 7px; border: 1px solid #EBEBEB; }"_s);
        panel.setGeometry(40, 40, 200, 150);
        first.setGeometry(20, 20, 120, 30);
        second.setGeometry(20, 80, 120, 30);
        beside.setGeometry(235, 60, 100, 60);
        auto *shadow = ownEffect ? new DropShadow(&panel, &window) : new QGraphicsDropShadowEffect(&window);
        shadow->setBlurRadius(10);
        shadow->setOffset(0, 0);
        shadow->setColor(QColor(0, 0, 0, 60));
        panel.setGraphicsEffect(shadow);
        window.show();
    }

    /// What the display shows, not what a new painting of the window would.
    QImage picture() { return window.screen()->grabWindow(window.winId()).toImage(); }

    QWidget window;
    QFrame panel{&window};
    QLabel beside{u"beside"_s, &window};
    QLabel first{u"first"_s, &panel};
    QLabel second{u"second"_s, &panel};
};

/// The largest difference of a colour channel between two pictures of one size.
int largestDifference(const QImage &a, const QImage &b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb one = a.pixel(x, y);
            const QRgb other = b.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(one) - qRed(other)),
                std::abs(qGreen(one) - qGreen(other)), std::abs(qBlue(one) - qBlue(other))});
        }
    }
    return largest;
}

using Change = std::function<void(Scene &)>;

} // namespace

class DropShadowTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u"^QPainter"_s)); }

    void looksLikeQtsOwnAfterEachChange_data()
    {
        QTest::addColumn<Change>("change");
        QTest::newRow("a text in the panel") << Change([](Scene &s) { s.first.setText(u"changed"_s); });
        QTest::newRow("a hidden child") << Change([](Scene &s) { s.second.hide(); });
        QTest::newRow("a child at the rounded corner") << Change([](Scene &s) { s.first.move(0, 0); });
        QTest::newRow("a child with a hole")
            << Change([](Scene &s) { s.first.setStyleSheet(u"background-color: transparent;"_s); });
        QTest::newRow("a neighbour in the shadow")
            << Change([](Scene &s) { s.beside.setText(u"changed"_s); });
        QTest::newRow("a neighbour that leaves the shadow") << Change([](Scene &s) { s.beside.hide(); });
        QTest::newRow("a neighbour over the panel") << Change([](Scene &s) {
            s.beside.move(100, 60);
            s.beside.raise();
        });
        QTest::newRow("a larger panel") << Change([](Scene &s) { s.panel.resize(220, 200); });
        QTest::newRow("a smaller panel") << Change([](Scene &s) { s.panel.resize(150, 100); });
        QTest::newRow("a smaller panel with square corners") << Change([](Scene &s) {
            s.panel.setStyleSheet(u"QFrame#panel { background-color: white; }"_s);
            QCoreApplication::processEvents(); // opaque up to its edges, where the smaller one has its shadow
            s.panel.resize(150, 120);
        });
        QTest::newRow("a moved panel") << Change([](Scene &s) { s.panel.move(30, 90); });
        QTest::newRow("a panel that can be seen through") << Change([](Scene &s) {
            s.panel.setStyleSheet(
                u"QFrame#panel { background-color: rgba(200, 0, 0, 90); border-radius: 30px; }"_s);
        });
        QTest::newRow("a panel hidden and shown") << Change([](Scene &s) {
            s.panel.hide();
            s.first.setText(u"meanwhile"_s);
            s.panel.show();
        });
        QTest::newRow("another colour of the shadow") << Change([](Scene &s) {
            qobject_cast<QGraphicsDropShadowEffect *>(s.panel.graphicsEffect())->setColor(Qt::blue);
        });
    }

    void looksLikeQtsOwnAfterEachChange()
    {
        QFETCH(Change, change);
        Scene qts(false);
        Scene own(true);
        QVERIFY(QTest::qWaitForWindowExposed(&own.window) && QTest::qWaitForWindowExposed(&qts.window));
        const QImage before = qts.picture();
        QCOMPARE(own.picture(), before);

        for (Scene *scene : {&qts, &own}) {
            scene->second.setText(u"before"_s); // the picture that is kept is not the first one
            QCoreApplication::processEvents();
            change(*scene);
            QCoreApplication::processEvents();
            scene->second.setText(u"after"_s);
            QCoreApplication::processEvents();
        }

        QVERIFY(qts.picture() != before);
        QCOMPARE(own.picture().size(), qts.picture().size());
        // Where both widget and shadow can be seen through, the order of composing shows in the rounding.
        QVERIFY(largestDifference(own.picture(), qts.picture()) <= 1);
    }

    void isGrabbedAsItIsAndNotAsItWas()
    {
        Scene qts(false);
        Scene own(true);
        QVERIFY(QTest::qWaitForWindowExposed(&own.window) && QTest::qWaitForWindowExposed(&qts.window));
        QCOMPARE(own.window.grab().toImage(), qts.window.grab().toImage());

        for (Scene *scene : {&qts, &own}) {
            scene->first.setText(u"changed"_s); // and not painted yet
        }

        QCOMPARE(own.window.grab().toImage(), qts.window.grab().toImage());
        QCOMPARE(own.panel.grab().toImage(), qts.panel.grab().toImage());
    }

    void isDrawnOnAnyPainterAsItIs()
    {
        Scene qts(false);
        Scene own(true);
        QVERIFY(QTest::qWaitForWindowExposed(&own.window) && QTest::qWaitForWindowExposed(&qts.window));
        const auto drawn = [](Scene &scene, QSize size) {
            QImage image(size, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::gray);
            QPainter painter(&image);
            painter.scale(
                qreal(size.width()) / scene.window.width(), qreal(size.height()) / scene.window.height());
            scene.window.render(&painter);
            return image;
        };
        for (Scene *scene : {&qts, &own}) {
            scene->first.setText(u"changed"_s);
        }

        QCOMPARE(drawn(own, {400, 300}), drawn(qts, {400, 300}));
        QCOMPARE(drawn(own, {800, 600}), drawn(qts, {800, 600}));

        // And the picture that was kept for that is none for the window.
        for (Scene *scene : {&qts, &own}) {
            scene->second.setText(u"after"_s);
            QCoreApplication::processEvents();
        }
        QVERIFY(largestDifference(own.picture(), qts.picture()) <= 1);
    }

    void paintsOnlyWhatHasChanged()
    {
        Scene scene(true);
        QVERIFY(QTest::qWaitForWindowExposed(&scene.window));
        QCoreApplication::processEvents();
        const PaintCounter first(&scene.first);
        const PaintCounter second(&scene.second);

        scene.first.setText(u"changed"_s);

        QTRY_VERIFY(first.count() > 0);
        QCOMPARE(second.count(), 0);
    }

    void keepsTheShadowWhenOnlyThatIsUncovered()
    {
        Scene scene(true);
        QVERIFY(QTest::qWaitForWindowExposed(&scene.window));
        QCoreApplication::processEvents();
        scene.beside.move(245, 60); // in the shadow, beside the panel
        QCoreApplication::processEvents();
        const PaintCounter panel(&scene.panel);
        const PaintCounter beside(&scene.beside);

        scene.beside.setText(u"changed"_s);

        QTRY_VERIFY(beside.count() > 0);
        QCOMPARE(panel.count(), 0);
    }

    void findsHowFarFromTheEdgesAPictureIsOpaque_data()
    {
        QTest::addColumn<QRect>("hole");
        QTest::addColumn<int>("inset");
        QTest::newRow("no hole") << QRect() << 0;
        QTest::newRow("a corner") << QRect(0, 0, 1, 1) << 1;
        QTest::newRow("a rounded corner") << QRect(0, 0, 4, 3) << 3;
        QTest::newRow("the last row") << QRect(0, 19, 30, 1) << 1;
        QTest::newRow("the first columns") << QRect(0, 0, 2, 20) << 2;
        QTest::newRow("the last column") << QRect(28, 0, 2, 20) << 2;
        QTest::newRow("two pixels at the left edge") << QRect(0, 9, 2, 1) << 2;
        QTest::newRow("two pixels at the right edge") << QRect(28, 9, 2, 1) << 2;
        QTest::newRow("all") << QRect(0, 0, 30, 20) << 10;
        QTest::newRow("the middle") << QRect(15, 9, 1, 1) << 10;
    }

    void findsHowFarFromTheEdgesAPictureIsOpaque()
    {
        QFETCH(QRect, hole);
        QImage picture(30, 20, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::white);
        for (int y = hole.top(); y <= hole.bottom(); ++y) {
            for (int x = hole.left(); x <= hole.right(); ++x) {
                picture.setPixelColor(x, y, QColor(0, 0, 0, 254));
            }
        }
        QTEST(opaqueInset(picture), "inset");
    }
};

NUBARIA_TEST_MAIN(DropShadowTest)
#include "dropshadowtest.moc"
