#pragma once

#include <QByteArray>
#include <QList>
#include <QNetworkProxy>
#include <QPointer>
#include <QSslConfiguration>
#include <QTcpServer>

class QNetworkReply;
class QSslSocket;

/**
 * The update server, played by a local proxy that leads every request of the process to itself.
 *
 * It takes a `CONNECT` for any host, shows its certificate and answers in HTTP/1.1. While it lives, the
 * process trusts the authority of the tests; afterwards, proxy and trust are again what they were.
 */
class UpdateServer final : public QTcpServer
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UpdateServer)
public:
    /// Where the server falls silent, for good and with the connection open.
    enum class Silent { Never, BeforeTunnel, BeforeHandshake };

    explicit UpdateServer(const QString &certificate = QStringLiteral("good"), Silent silent = Silent::Never);
    ~UpdateServer() override;

    /// The host that the program is built for.
    static QByteArray host();

    /// Answers the next request with these bytes, or the one that waits. One answer is for one request.
    void answerWith(const QByteArray &response);
    /// The same, and closes the connection behind them.
    void answerAndHangUp(const QByteArray &response);

    QList<QByteArray> tunnels() const { return m_tunnels; } ///< The targets of each `CONNECT`.
    QList<QByteArray> requests() const { return m_requests; } ///< The heads of what came through a tunnel.
    QList<QByteArray> plainRequests() const { return m_plainRequests; } ///< The heads of what came without.
    int openConnections() const { return m_openConnections; }

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    struct Answer
    {
        QByteArray response;
        bool hangUp = false;
    };

    void read(QSslSocket &socket);
    void openTunnel(QSslSocket &socket, const QByteArray &target);
    void answerWaitingRequest();

    QSslConfiguration m_identity;
    Silent m_silent;
    QList<Answer> m_answers;
    QPointer<QSslSocket> m_waiting;
    QList<QByteArray> m_tunnels;
    QList<QByteArray> m_requests;
    QList<QByteArray> m_plainRequests;
    int m_openConnections = 0;
    QNetworkProxy m_formerProxy;
    QSslConfiguration m_formerTrust;
};

namespace http {

/// The version document, naming this version.
QByteArray versionDocument(const QByteArray &version);
/// A whole response with this body.
QByteArray response(const QByteArray &body, const QByteArray &status = "200 OK");
QByteArray chunkedResponse(const QList<QByteArray> &chunks);
QByteArray redirect(const QByteArray &location);

} // namespace http

/// Counts the network replies that the process made and released since this was made.
class ReplyWatch final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ReplyWatch)
public:
    ReplyWatch();

    int made() const { return int(m_replies.size()); }
    /// Those that came to their deferred deletion.
    int released() const { return m_released; }
    /// The first one that was made, while it exists.
    QNetworkReply *first() const;
    /// Those that exist.
    int alive() const;

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    QList<QPointer<QNetworkReply>> m_replies;
    int m_released = 0;
};
