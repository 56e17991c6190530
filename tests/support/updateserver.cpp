#include "support/updateserver.h"

#include "core/updatecheck.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTest>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray tlsData(const QString &name)
{
    QFile file(QFINDTESTDATA("../data/tls/"_L1 + name));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no file %s for the test", qPrintable(name));
    }
    return file.readAll();
}

QSslCertificate certificate(const QString &name)
{
    return QSslCertificate(tlsData(name + ".crt"_L1));
}

} // namespace

UpdateServer::UpdateServer(const QString &certificateName, Silent silent)
    : m_silent(silent)
    , m_formerProxy(QNetworkProxy::applicationProxy())
    , m_formerTrust(QSslConfiguration::defaultConfiguration())
{
    m_identity.setLocalCertificate(certificate(certificateName));
    m_identity.setPrivateKey(QSslKey(tlsData(u"server.key"_s), QSsl::Ec));
    m_identity.setPeerVerifyMode(QSslSocket::VerifyNone);

    QSslConfiguration trust = m_formerTrust;
    trust.addCaCertificate(certificate(u"authority"_s));
    QSslConfiguration::setDefaultConfiguration(trust);

    setProxy(QNetworkProxy::NoProxy);
    if (!listen(QHostAddress::LocalHost)) {
        qFatal("no local port for the test");
    }
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, serverAddress().toString(), serverPort()));
}

UpdateServer::~UpdateServer()
{
    QNetworkProxy::setApplicationProxy(m_formerProxy);
    QSslConfiguration::setDefaultConfiguration(m_formerTrust);
}

QByteArray UpdateServer::host()
{
    return versionDocumentUrl().host().toLatin1();
}

void UpdateServer::answerWith(const QByteArray &response)
{
    m_answers.append({response});
    answerWaitingRequest();
}

void UpdateServer::answerAndHangUp(const QByteArray &response)
{
    m_answers.append({response, true});
    answerWaitingRequest();
}

void UpdateServer::incomingConnection(qintptr descriptor)
{
    auto *socket = new QSslSocket(this);
    socket->setProxy(QNetworkProxy::NoProxy);
    socket->setSslConfiguration(m_identity);
    connect(socket, &QIODevice::readyRead, this, [this, socket] { read(*socket); });
    connect(socket, &QAbstractSocket::disconnected, this, [this, socket] {
        --m_openConnections;
        socket->deleteLater();
    });
    if (!socket->setSocketDescriptor(descriptor)) {
        qFatal("no connection for the test");
    }
    ++m_openConnections;
}

void UpdateServer::read(QSslSocket &socket)
{
    const QByteArray received = socket.peek(socket.bytesAvailable());
    const qsizetype end = received.indexOf("\r\n\r\n");
    if (end < 0) {
        return; // the rest is under way
    }
    socket.skip(end + 4);
    const QByteArray head = received.left(end);
    if (head.startsWith("CONNECT ")) {
        openTunnel(socket, head.split(' ').value(1));
    } else {
        (socket.isEncrypted() ? m_requests : m_plainRequests).append(head);
        m_waiting = &socket;
        answerWaitingRequest();
    }
}

void UpdateServer::openTunnel(QSslSocket &socket, const QByteArray &target)
{
    m_tunnels.append(target);
    if (m_silent == Silent::BeforeTunnel) {
        return;
    }
    socket.write("HTTP/1.1 200 Connection established\r\n\r\n");
    if (m_silent != Silent::BeforeHandshake) {
        socket.startServerEncryption();
    }
}

void UpdateServer::answerWaitingRequest()
{
    if (!m_waiting || m_answers.isEmpty()) {
        return;
    }
    QSslSocket *socket = std::exchange(m_waiting, nullptr);
    const Answer next = m_answers.takeFirst();
    socket->write(next.response);
    if (next.hangUp) {
        socket->disconnectFromHost();
    }
}

QByteArray http::versionDocument(const QByteArray &version)
{
    return R"({"version": ")" + version + R"("})";
}

QByteArray http::response(const QByteArray &body, const QByteArray &status)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: application/json\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QByteArray http::chunkedResponse(const QList<QByteArray> &chunks)
{
    QByteArray response = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    for (const QByteArray &chunk : chunks) {
        response += QByteArray::number(chunk.size(), 16) + "\r\n" + chunk + "\r\n";
    }
    return response + "0\r\n\r\n";
}

QByteArray http::redirect(const QByteArray &location)
{
    return "HTTP/1.1 302 Found\r\nLocation: " + location + "\r\nContent-Length: 0\r\n\r\n";
}

ReplyWatch::ReplyWatch()
{
    QCoreApplication::instance()->installEventFilter(this);
}

QNetworkReply *ReplyWatch::first() const
{
    return m_replies.value(0);
}

int ReplyWatch::alive() const
{
    return int(
        std::count_if(m_replies.begin(), m_replies.end(), [](const auto &reply) { return !reply.isNull(); }));
}

// A reply starts its work by an event to itself, and its deferred deletion is one as well.
bool ReplyWatch::eventFilter(QObject *receiver, QEvent *event)
{
    if (auto *reply = qobject_cast<QNetworkReply *>(receiver)) {
        if (!m_replies.contains(reply)) {
            m_replies.append(reply);
        }
        if (event->type() == QEvent::DeferredDelete) {
            ++m_released;
        }
    }
    return false;
}
