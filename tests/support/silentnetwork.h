#pragma once

#include <QTcpServer>

/// Sends every request of the process to a proxy that never answers: no network, and no failure to report
/// either.
class SilentNetwork final
{
    Q_DISABLE_COPY_MOVE(SilentNetwork)
public:
    SilentNetwork();

private:
    QTcpServer m_proxy;
};
