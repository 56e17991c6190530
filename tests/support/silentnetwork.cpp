#include "support/silentnetwork.h"

#include <QNetworkProxy>

using namespace Qt::Literals::StringLiterals;

SilentNetwork::SilentNetwork()
{
    m_proxy.setProxy(QNetworkProxy::NoProxy);
    if (!m_proxy.listen(QHostAddress::LocalHost)) {
        qFatal("no local port for the test");
    }
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, m_proxy.serverPort()));
}
