#include "widgets/circularpicture.h"

#include "support/home.h"
#include "support/picturelabel.h"
#include "support/qtversion.h"
#include "support/windowtest.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QtEndian>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray halfOfAPng()
{
    QImage image(64, 64, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgb(x * y % 256, x, y));
        }
    }

    QBuffer buffer;
    if (!image.save(&buffer, "png")) {
        qFatal("cannot encode the picture of the test");
    }
    return buffer.data().first(buffer.size() / 2);
}

quint32 crcOf(const QByteArray &bytes)
{
    quint32 crc = 0xffffffff;
    for (const char byte : bytes) {
        crc ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320 : 0);
        }
    }
    return ~crc;
}

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray pngChunk(const char *type, const QByteArray &data)
{
    const QByteArray content = type + data;
    return bigEndian(static_cast<quint32>(data.size())) + content + bigEndian(crcOf(content));
}

/// A grey picture of a few kilobytes, all black, whatever its size.
QByteArray blackPng(int width, int height, int bitsPerPixel)
{
    const qsizetype bytesPerLine = 1 + (qsizetype{width} * bitsPerPixel + 7) / 8; // the filter's number leads
    const QByteArray pixels = qCompress(QByteArray(bytesPerLine * height, '\0')).mid(4); // behind Qt's length
    const QByteArray header = bigEndian(static_cast<quint32>(width)) + bigEndian(static_cast<quint32>(height))
        + static_cast<char>(bitsPerPixel) + QByteArray(4, '\0');
    return "\x89PNG\r\n\x1a\n" + pngChunk("IHDR", header) + pngChunk("IDAT", pixels)
        + pngChunk("IEND", QByteArray());
}

int peakMegabytes()
{
    QFile status(u"/proc/self/status"_s);
    if (status.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = status.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("VmHWM:")) {
                return line.simplified().split(' ').at(1).toInt() / 1024;
            }
        }
    }
    qFatal("cannot read how much memory the test takes");
}

/// How far the process's memory rises above where it stands now, at its peak during the call.
template <typename Call> int peakGrowth(const Call &call)
{
    QFile reset(u"/proc/self/clear_refs"_s);
    if (!reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || reset.write("5") != 1) {
        qFatal("cannot reset the peak of the test's memory");
    }
    const int before = peakMegabytes();
    call();
    return peakMegabytes() - before;
}

/// Fails the case unless Qt refuses a picture for its size, which it tells the log.
void expectQtsRefusal()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Rejecting image as it exceeds"_s));
}

/// While it lives, Qt loads pictures of any size.
class NoAllocationLimit final
{
    Q_DISABLE_COPY_MOVE(NoAllocationLimit)
public:
    NoAllocationLimit() { QImageReader::setAllocationLimit(0); }
    ~NoAllocationLimit() { QImageReader::setAllocationLimit(m_limit); }

private:
    const int m_limit = QImageReader::allocationLimit();
};

} // namespace

class CircularPictureRefusalTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        QTest::failOnWarning(QRegularExpression(u"."_s));
    }

    void givesNoPictureForAFileThatIsNone_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("Esto no es una foto.\n");
        QTest::newRow("JSON") << QByteArray("[]");
        QTest::newRow("PNG signature alone") << QByteArray("\x89PNG\r\n\x1a\n");
        QTest::newRow("half a PNG") << halfOfAPng();
        QTest::newRow("NUL bytes") << QByteArray(1000, '\0');
    }

    void givesNoPictureForAFileThatIsNone()
    {
        QFETCH(QByteArray, bytes);

        QVERIFY(circularPicture(home::writePicture(bytes), labelSize).isNull());
    }

    void givesNoPictureForAPathWithoutAFile_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("nothing there") << QDir::homePath() + "/foto.png"_L1;
        QTest::newRow("a directory") << QDir::homePath();
    }

    void givesNoPictureForAPathWithoutAFile()
    {
        QFETCH(QString, path);

        QVERIFY(circularPicture(path, labelSize).isNull());
    }

    void refusesPicturesThatTakeMoreThanQtAllows_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("shown");
        const int limit = qtversion::pictureLimit();
        const int lines = limit * 32; // so many of 8192 pixels, at four bytes each
        QTest::addRow("%d MB, one bit a pixel", limit) << blackPng(8192, lines, 1) << true;
        QTest::newRow("a line more") << blackPng(8192, lines + 1, 1) << false;
        QTest::addRow("%d MB, eight bits a pixel", limit) << blackPng(lines, 8192, 8) << true;
        QTest::newRow("a column more") << blackPng(lines + 1, 8192, 8) << false;
    }

    void refusesPicturesThatTakeMoreThanQtAllows()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, shown);
        if (!shown) {
            expectQtsRefusal();
        }

        const QPixmap picture = circularPicture(home::writePicture(bytes), labelSize);

        QCOMPARE(picture.size(), shown ? labelSize : QSize(0, 0));
    }

    void refusesAPictureThatGrowsWhenUnpackedBeforeItTakesMemory()
    {
        const QString path = home::writePicture(blackPng(30000, 30000, 1));
        QVERIFY(QFileInfo(path).size() < 204800);
        expectQtsRefusal();

        QPixmap picture;
        const int growth = peakGrowth([&] { picture = circularPicture(path, labelSize); });

        QVERIFY(picture.isNull());
        QVERIFY2(growth < 32, qPrintable(u"grew by %1 MB"_s.arg(growth)));
        // The file is sound and does grow: without Qt's limit, to 107 MB in its own depth of one bit a pixel.
        const NoAllocationLimit unlimited;
        QVERIFY(peakGrowth([&] { QCOMPARE(QImage(path).size(), QSize(30000, 30000)); }) > 100);
    }

    void refusesAPictureThatClaimsMoreThanItsFileHolds_data()
    {
        QTest::addColumn<QByteArray>("picture");
        const QByteArray sound = blackPng(1, 1, 8);
        const qsizetype pixels = sound.indexOf("IDAT") - 4;
        const qsizetype end = sound.indexOf("IEND") - 4;
        for (const char *type : {"tEXt", "zTXt", "iTXt", "IDAT"}) {
            const QByteArray claim = bigEndian(0x7ffffff0) + type;
            QTest::addRow("%s before the pixels", type) << sound.first(pixels) + claim;
            QTest::addRow("%s after the pixels", type) << sound.first(end) + claim + sound.mid(end);
        }
    }

    void refusesAPictureThatClaimsMoreThanItsFileHolds()
    {
        QFETCH(QByteArray, picture);
        const QString path = home::writePicture(picture);

        QPixmap shown;
        const int growth = peakGrowth([&] { shown = circularPicture(path, labelSize); });

        QVERIFY(shown.isNull());
        QVERIFY2(growth < 32, qPrintable(u"grew by %1 MB"_s.arg(growth)));
    }

    void loadsAPictureWithTexts()
    {
        QByteArray picture = blackPng(1, 1, 8);
        picture.insert(picture.indexOf("IDAT") - 4, pngChunk("tEXt", QByteArray("Title\0Foto", 10)));
        picture.insert(picture.indexOf("IEND") - 4,
            pngChunk("zTXt", "Comment" + QByteArray(2, '\0') + qCompress("x").mid(4)));

        QVERIFY(!circularPicture(home::writePicture(picture), labelSize).isNull());
    }

    void loadsAPictureThatLacksItsLastChecksum()
    {
        const QByteArray sound = blackPng(1, 1, 8);

        QVERIFY(!circularPicture(home::writePicture(sound.chopped(4)), labelSize).isNull());
        QVERIFY(circularPicture(home::writePicture(sound.chopped(5)), labelSize).isNull());
    }
};

NUBARIA_TEST_MAIN(CircularPictureRefusalTest)
#include "circularpicturerefusaltest.moc"
