#include "widgets/circularpicture.h"

#include "support/home.h"
#include "support/picturelabel.h"
#include "support/windowtest.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPixmapCache>

using namespace Qt::Literals::StringLiterals;

namespace {

QString written(const QByteArray &bytes)
{
    QPixmapCache::clear(); // which knows a file by its name, size and second
    return home::writePicture(bytes);
}

QByteArray encoded(const char *format)
{
    QImage image(20, 30, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QBuffer buffer;
    if (!image.save(&buffer, format)) {
        qFatal("cannot encode the picture of the test");
    }
    return buffer.data();
}

/// What editors, phones and broken downloads leave behind a picture, and what could be taken for a part of
/// it.
QList<QByteArray> trailers()
{
    return {"\n", "Descargado de la nube\n", QByteArray(100, '\0'), QByteArray(100, '\xff'),
        QByteArray::fromHex("7ffffff0") + "tEXt", encoded("png")};
}

} // namespace

class CircularPictureLoadingTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void showsAPictureWhateverStandsBehindIt_data()
    {
        QTest::addColumn<QByteArray>("picture");
        for (const char *format : {"png", "jpg", "bmp"}) {
            QTest::newRow(format) << encoded(format);
        }
    }

    void showsAPictureWhateverStandsBehindIt()
    {
        QFETCH(QByteArray, picture);

        for (const QByteArray &trailer : trailers()) {
            QVERIFY2(!circularPicture(written(picture + trailer), labelSize).isNull(), trailer.constData());
        }
    }

    void showsWhatQtLoadsAndNothingElse_data()
    {
        QTest::addColumn<QByteArray>("picture");
        const QDir corpus(QFINDTESTDATA("../fuzz/corpus/picture"));
        const QStringList names = corpus.entryList(QDir::Files);
        QVERIFY(names.size() > 50);
        for (const QString &name : names) {
            QFile file(corpus.filePath(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QTest::newRow(qPrintable(name)) << file.readAll();
        }
    }

    void showsWhatQtLoadsAndNothingElse()
    {
        QFETCH(QByteArray, picture);

        const QString path = written(picture);
        const bool loads = !QPixmap(path).isNull();
        QCOMPARE(!circularPicture(path, labelSize).isNull(), loads);

        // Behind what is none, Qt could take a trailer for a part that costs gigabytes.
        for (const QByteArray &trailer : loads ? trailers() : QList<QByteArray>()) {
            const QString longer = written(picture + trailer);
            QCOMPARE(!circularPicture(longer, labelSize).isNull(), !QPixmap(longer).isNull());
        }
    }
};

NUBARIA_TEST_MAIN(CircularPictureLoadingTest)
#include "circularpictureloadingtest.moc"
