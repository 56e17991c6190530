#pragma once

#include <QDesktopServices>
#include <QList>
#include <QUrl>
#include <QWidget>

#include <utility>

/// Stands in for the desktop's browser while it lives.
class Browser final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Browser)
public:
    /// For addresses of this scheme.
    Browser(QString scheme, const QWidget &window)
        : m_scheme(std::move(scheme))
        , m_window(window)
    {
        QDesktopServices::setUrlHandler(m_scheme, this, "open");
    }
    ~Browser() override { QDesktopServices::unsetUrlHandler(m_scheme); }

    Q_INVOKABLE void open(const QUrl &url)
    {
        m_opened.append(url);
        m_windowWasVisible = m_window.isVisible();
    }

    QList<QUrl> opened() const { return m_opened; }
    /// When an address was opened last.
    bool windowWasVisible() const { return m_windowWasVisible; }

private:
    const QString m_scheme;
    const QWidget &m_window;
    QList<QUrl> m_opened;
    bool m_windowWasVisible = false;
};
