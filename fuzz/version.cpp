#include "core/updatecheck.h"

#include "codeunits.h"
#include "session.h"
#include "support/traymessages.h"
#include "windowaccess.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QPointer>
#include <QPropertyAnimation>

#include <cstring>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A reply that is there at once, whole or failed.
class ReadyReply final : public QNetworkReply
{
    Q_DISABLE_COPY_MOVE(ReadyReply)
public:
    ReadyReply(QByteArray body, NetworkError error)
        : m_body(std::move(body))
    {
        open(QIODevice::ReadOnly);
        setError(error, u"as the target wants it"_s);
    }

    void abort() override { }
    qint64 bytesAvailable() const override { return m_body.size() + QNetworkReply::bytesAvailable(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 size = std::min<qint64>(maxSize, m_body.size());
        std::memcpy(data, m_body.constData(), static_cast<std::size_t>(size));
        m_body.remove(0, size);
        return size == 0 ? -1 : size;
    }

private:
    QByteArray m_body;
};

/// An object or an array begins so, behind blanks and a byte-order mark; nothing else is a document.
bool mayBeJson(QByteArray document)
{
    if (document.startsWith("\xef\xbb\xbf")) {
        document.remove(0, 3);
    }
    const QByteArray trimmed = document.trimmed();
    return trimmed.startsWith('{') || trimmed.startsWith('[');
}

void checkReading(const QByteArray &document, const std::optional<QString> &published)
{
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(document, &error);
    markSeen(1, static_cast<std::uint32_t>(error.error));
    markSeen(2, static_cast<std::uint32_t>(error.error) * 64 + magnitude(error.offset));

    expect(published.has_value() == (error.error == QJsonParseError::NoError),
        "a document names a version exactly if it is JSON");
    expect(!published || mayBeJson(document), "what begins like no document is none");
    if (!published) {
        return;
    }
    const QJsonValue version = json.object().value(u"version"_s);
    markSeen(3, static_cast<std::uint32_t>(version.type()));
    expect(*published == (version.isString() ? version.toString() : QString()),
        "the version is the text under its key, and empty without one");
}

void checkComparing(const QString &published)
{
    const QString own = programVersion();
    const bool newer = isNewerVersion(published, own);
    const auto [difference, ownEnd]
        = std::mismatch(published.begin(), published.end(), own.begin(), own.end());
    Q_UNUSED(ownEnd)
    markSeen(4, static_cast<std::uint32_t>(difference - published.begin()) * 2 + (newer ? 1 : 0));

    expect(newer == (codeUnits(published) > codeUnits(own)), "versions compare code unit by code unit");
    expect(!newer || published != own, "the own version is not newer");
    expect(!isNewerVersion(published, published), "no version is newer than itself");
}

/// Hands the window a reply and checks what it tells about it.
void checkTelling(const QByteArray &body, QNetworkReply::NetworkError error, const TrayMessage &expected)
{
    traymessages::clear();
    MainWindow &window = theWindow();
    auto *reply = new ReadyReply(body, error);
    const QPointer<QNetworkReply> watched = reply;
    (window.*reach(HandleVersionReply()))(reply);

    const QList<TrayMessage> told = traymessages::all();
    expect(told == (expected.title.isEmpty() ? QList<TrayMessage>() : QList{expected}),
        "the tray tells of a failure or a newer version, and of nothing else");
    const QList<QPropertyAnimation *> slides = window.findChildren<QPropertyAnimation *>();
    expect(slides.isEmpty() == (expected.title != u"Nueva versión encontrada"_s),
        "the banner slides in for a newer version only");
    for (QPropertyAnimation *slide : slides) {
        slide->stop();
    }
    settle();
    expect(watched.isNull(), "each reply is released");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    theWindow();
    forbidWarnings();
    const QByteArray document(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const std::optional<QString> published = publishedVersion(document);
    checkReading(document, published);
    checkComparing(published.value_or(QString()));

    const TrayMessage failure{u"Aviso de actualización"_s,
        u"Hubo un problema al verificar la actualización."_s, QSystemTrayIcon::Information, 10000, true};
    const TrayMessage newer{u"Nueva versión encontrada"_s,
        u"La actualización de la versión V"_s + published.value_or(QString())
            + u" está disponible para ser instalada."_s,
        QSystemTrayIcon::Information, 10000, true};
    const bool isNewer = published && codeUnits(*published) > codeUnits(programVersion());
    checkTelling(document, QNetworkReply::HostNotFoundError, failure);
    checkTelling(document, QNetworkReply::NoError, !published ? failure : isNewer ? newer : TrayMessage());
    return 0;
}
