#include "widgets/circularpicture.h"

#include "session.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QPixmapCache>

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

QString writePicture(const std::uint8_t *data, std::size_t size)
{
    QFile file(QDir::homePath() + "/foto.png"_L1);
    const auto bytes = static_cast<qint64>(size);
    if (!file.open(QIODevice::WriteOnly)
        || file.write(reinterpret_cast<const char *>(data), bytes) != bytes) {
        qFatal("cannot write the picture of the target");
    }
    return file.fileName();
}

/// What the header alone tells.
struct Header
{
    QByteArray format; ///< empty when no decoder takes the file
    QSize size;
};

/// The size only of a picture that was loaded: to find it the decoder reads on, and takes what memory it
/// likes.
Header headerOf(const QString &path, bool loaded)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead()) {
        return {};
    }
    return {reader.format(), loaded ? reader.size() : QSize()};
}

void markHeader(const Header &header, bool loaded)
{
    const auto format = static_cast<std::uint32_t>(qHash(header.format, 0) % 251);
    markSeen(1, format * 2 + (loaded ? 1 : 0));
    markSeen(3, format * 64 + magnitude(std::max(header.size.width(), 0)));
    markSeen(4, format * 64 + magnitude(std::max(header.size.height(), 0)));
}

/// Coarse facts about the pixels, new where the decoder took another way.
void markPixels(const QImage &image)
{
    std::uint32_t shades = 0;
    std::uint32_t clear = 0;
    for (int i = 0; i < 16; ++i) {
        const QRgb pixel
            = image.pixel(image.width() * (i % 4 * 2 + 1) / 8, image.height() * (i / 4 * 2 + 1) / 8);
        shades |= 1U << static_cast<std::uint32_t>(qGray(pixel) / 32);
        clear += qAlpha(pixel) < 255 ? 1 : 0;
    }
    markSeen(6, shades);
    markSeen(7, clear);
}

void checkPicture(const QPixmap &picture, QSize size, const Header &header)
{
    if (picture.isNull()) {
        expect(picture.size() == QSize(0, 0), "a picture that cannot be loaded is null");
        return;
    }
    expect(picture.size() == size && picture.devicePixelRatio() == 1.0, "a picture has the size asked for");
    expect(!header.format.isEmpty(), "only what a decoder takes is a picture");
    const QSize source = header.size;
    const qint64 limit = QImageReader::allocationLimit() * 1024LL * 1024; // bytes, at four a pixel
    expect(!source.isValid() || qint64{source.width()} * source.height() * 4 <= limit,
        "a picture beyond the limit is refused");
    const QImage image = picture.toImage();
    markPixels(image);
    const int right = size.width() - 1;
    const int bottom = size.height() - 1;
    for (const QPoint corner : {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)}) {
        expect(qAlpha(image.pixel(corner)) == 0, "a picture is round");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QPixmapCache::clear(); // it knows a file by its path, size and second
    const QString path = writePicture(data, size);
    constexpr std::array sizes = {QSize(75, 75), QSize(150, 150), QSize(20, 60)};
    const QSize wanted = sizes.at(size % sizes.size());
    const QPixmap picture = circularPicture(path, wanted);
    const Header header = headerOf(path, !picture.isNull());
    markHeader(header, !picture.isNull());
    checkPicture(picture, wanted, header);
    return 0;
}
