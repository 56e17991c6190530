#include "widgets/circularpicture.h"

#include "support/picturelabel.h"
#include "support/windowtest.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <numbers>

using namespace Qt::Literals::StringLiterals;

namespace {

QString pathOf(const QString &name)
{
    return QDir(QDir::homePath()).filePath(name);
}

QString writeImage(const QString &name, const QImage &image, const char *format = "png")
{
    if (!image.save(pathOf(name), format)) {
        qFatal("cannot write the picture of the test");
    }
    return pathOf(name);
}

QImage plainImage(QSize size, const QColor &color)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

/// A picture whose pixels tell their own place.
QImage chart(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixel(x, y, qRgb(x % 256, y % 256, x / 256 * 16 + y / 256));
        }
    }
    return image;
}

/// Blue, with a margin of red in front of the centred square and one of green behind it.
QImage blueSquareWithMargins(QSize size, QRect square)
{
    QImage image = plainImage(size, Qt::red);
    QPainter painter(&image);
    painter.fillRect(QRect(square.topLeft(), QPoint(size.width() - 1, size.height() - 1)), Qt::green);
    painter.fillRect(square, Qt::blue);
    return image;
}

QImage circularImage(const QString &path, QSize size)
{
    return circularPicture(path, size).toImage().convertToFormat(QImage::Format_ARGB32);
}

QList<QPoint> opaquePixels(const QImage &image)
{
    QList<QPoint> found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) == 255) {
                found.append({x, y});
            }
        }
    }
    return found;
}

/// A disc of this one colour on nothing.
bool isDisc(const QImage &image, const QColor &color)
{
    const QList<QPoint> disc = opaquePixels(image);
    const qsizetype all = static_cast<qsizetype>(image.width()) * image.height();
    return !disc.isEmpty() && disc.size() < all
        && std::all_of(
            disc.begin(), disc.end(), [&](const QPoint &place) { return image.pixelColor(place) == color; });
}

} // namespace

class CircularPictureTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QCOMPARE(qApp->devicePixelRatio(), qEnvironmentVariable("QT_SCALE_FACTOR", u"1"_s).toDouble());
    }

    void init()
    {
        WindowTest::init();
        QTest::failOnWarning(QRegularExpression(u"."_s));
    }

    void loadsEveryKindOfPicture_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("format");
        QTest::newRow("PNG") << u"foto.png"_s << QByteArray("png");
        QTest::newRow("JPEG") << u"foto.jpg"_s << QByteArray("jpg");
        QTest::newRow("BMP") << u"foto.bmp"_s << QByteArray("bmp");
        QTest::newRow("PNG named .jpg") << u"foto.jpg"_s << QByteArray("png");
        QTest::newRow("JPEG named .png") << u"foto.png"_s << QByteArray("jpg");
        QTest::newRow("no ending") << u"foto"_s << QByteArray("png");
        QTest::newRow("upper case, accents and blanks") << u"Mi año Ñandú.PNG"_s << QByteArray("png");
    }

    void loadsEveryKindOfPicture()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, format);
        const QColor orange(255, 128, 0);
        const QString path = writeImage(name, plainImage({160, 120}, orange), format.constData());

        const QImage picture = circularImage(path, labelSize);

        const QColor centre = picture.pixelColor(37, 37);
        QCOMPARE(picture.size(), labelSize);
        QVERIFY2(qAbs(centre.red() - 255) < 4 && qAbs(centre.green() - 128) < 4 && centre.blue() < 4,
            qPrintable(centre.name())); // a JPEG is not exact
        QCOMPARE(centre.alpha(), 255);
        QCOMPARE(picture.pixelColor(0, 0).alpha(), 0);
    }

    void cutsOutTheCentredSquare_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QRect>("square");
        QTest::newRow("landscape") << QSize(300, 200) << QRect(50, 0, 200, 200);
        QTest::newRow("portrait") << QSize(200, 300) << QRect(0, 50, 200, 200);
        QTest::newRow("odd landscape") << QSize(201, 100) << QRect(50, 0, 100, 100);
        QTest::newRow("odd portrait") << QSize(100, 201) << QRect(0, 50, 100, 100);
        QTest::newRow("one column too many") << QSize(101, 100) << QRect(0, 0, 100, 100);
        QTest::newRow("square") << QSize(75, 75) << QRect(0, 0, 75, 75);
        QTest::newRow("one pixel") << QSize(1, 1) << QRect(0, 0, 1, 1);
        QTest::newRow("tall and thin") << QSize(1, 20000) << QRect(0, 9999, 1, 1);
        QTest::newRow("wide and thin") << QSize(20000, 1) << QRect(9999, 0, 1, 1);
    }

    void cutsOutTheCentredSquare()
    {
        QFETCH(QSize, size);
        QFETCH(QRect, square);
        const QString path = writeImage(u"foto.png"_s, blueSquareWithMargins(size, square));

        const QImage picture = circularImage(path, labelSize);

        QCOMPARE(picture.size(), labelSize);
        QVERIFY(isDisc(picture, Qt::blue));
    }

    void keepsEveryPixelOfTheSquareInItsPlace_data() { cutsOutTheCentredSquare_data(); }

    void keepsEveryPixelOfTheSquareInItsPlace()
    {
        QFETCH(QSize, size);
        QFETCH(QRect, square);
        const QImage original = chart(size);
        const QString path = writeImage(u"foto.png"_s, original);

        const QImage picture = circularImage(path, square.size());

        const QList<QPoint> disc = opaquePixels(picture);
        QVERIFY(!disc.isEmpty());
        for (const QPoint &place : disc) {
            QCOMPARE(picture.pixelColor(place), original.pixelColor(place + square.topLeft()));
        }
    }

    void fillsTheAskedSizeWithAnEllipse_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("the label's") << labelSize;
        QTest::newRow("even") << QSize(150, 150);
        QTest::newRow("wide") << QSize(240, 80);
        QTest::newRow("tall") << QSize(80, 240);
        QTest::newRow("larger than the picture") << QSize(600, 600);
    }

    void fillsTheAskedSizeWithAnEllipse()
    {
        QFETCH(QSize, size);
        const QString path = writeImage(u"foto.png"_s, plainImage({300, 200}, Qt::blue));

        const QImage picture = circularImage(path, size);

        const int right = size.width() - 1;
        const int bottom = size.height() - 1;
        const QPoint centre(size.width() / 2, size.height() / 2);
        QCOMPARE(picture.size(), size);
        for (const QPoint &corner :
            {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)}) {
            QCOMPARE(picture.pixelColor(corner).alpha(), 0);
        }
        for (const QPoint &place : {centre, QPoint(centre.x(), 0), QPoint(centre.x(), bottom),
                 QPoint(0, centre.y()), QPoint(right, centre.y())}) {
            QCOMPARE(picture.pixelColor(place), QColor(Qt::blue));
        }
        const double ellipse = std::numbers::pi / 4 * size.width() * size.height();
        const auto pixels = static_cast<double>(opaquePixels(picture).size());
        QVERIFY2(qAbs(pixels - ellipse) < 0.025 * ellipse, qPrintable(QString::number(pixels / ellipse)));
    }

    void scalesSmoothly()
    {
        QImage stripes = plainImage({300, 300}, Qt::black);
        QPainter painter(&stripes);
        for (int x = 0; x < stripes.width(); x += 2) {
            painter.fillRect(x, 0, 1, stripes.height(), Qt::white);
        }
        painter.end();

        const QImage picture = circularImage(writeImage(u"foto.png"_s, stripes), labelSize);

        const int grey = picture.pixelColor(37, 37).red();
        QVERIFY2(grey > 100 && grey < 156, qPrintable(QString::number(grey)));
    }

    void keepsTheTransparencyOfThePicture()
    {
        QImage image = plainImage({75, 75}, QColor(0, 0, 255, 128));
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(0, 0, 75, 25, Qt::transparent);
        painter.fillRect(0, 50, 75, 25, Qt::red);
        painter.end();

        const QImage picture = circularImage(writeImage(u"foto.png"_s, image), labelSize);

        QCOMPARE(picture.pixelColor(37, 12).alpha(), 0);
        QCOMPARE(picture.pixelColor(37, 37), QColor(0, 0, 255, 128));
        QCOMPARE(picture.pixelColor(37, 62), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(0, 74).alpha(), 0);
    }

    void ignoresTheRotationThatACameraNotes()
    {
        QImage image = plainImage({80, 80}, Qt::black);
        QPainter painter(&image);
        painter.fillRect(0, 0, 80, 40, Qt::white);
        painter.end();
        QFile file(writeImage(u"foto.jpg"_s, image, "jpg"));
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray jpeg = file.readAll();
        // Behind the file's first two bytes: the camera stood upside down.
        const QByteArray note = QByteArray::fromHex(
            "ffe10022457869660000 4d4d002a00000008 0001 011200030000000100030000 00000000");
        QVERIFY(file.seek(0) && file.write(jpeg.first(2) + note + jpeg.mid(2)) > 0);
        file.close();
        QVERIFY(QImageReader(file.fileName()).transformation() == QImageIOHandler::TransformationRotate180);

        const QImage picture = circularImage(file.fileName(), labelSize);

        QVERIFY(picture.pixelColor(37, 10).red() > 250);
        QVERIFY(picture.pixelColor(37, 65).red() < 5);
    }

    void takesTheAskedNumberOfPixelsFromAFileMarkedForHighResolution()
    {
        const QString path
            = writeImage(u"foto@2x.png"_s, blueSquareWithMargins({300, 200}, QRect(50, 0, 200, 200)));

        const QImage picture = circularImage(path, labelSize);

        QCOMPARE(picture.size(), labelSize);
        QVERIFY(isDisc(picture, Qt::blue));
    }
};

NUBARIA_TEST_MAIN(CircularPictureTest)
#include "circularpicturetest.moc"
