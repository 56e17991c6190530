#include "support/traymessages.h"

#include "support/replaced.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QList<TrayMessage> &recorded()
{
    static QList<TrayMessage> messages;
    return messages;
}

} // namespace

// The program's own definition wins over that of Qt's library when the test is linked.
void QSystemTrayIcon::showMessage(
    const QString &title, const QString &msg, QSystemTrayIcon::MessageIcon icon, int msecs)
{
    recorded().append({title, msg, icon, msecs, isVisible()});
}
NUBARIA_REPLACES("_ZN15QSystemTrayIcon11showMessageERK7QStringS2_NS_11MessageIconEi");

void traymessages::clear()
{
    recorded().clear();
}

QList<TrayMessage> traymessages::all()
{
    return recorded();
}

QList<TrayMessage> traymessages::titled(const QString &title)
{
    QList<TrayMessage> found;
    for (const TrayMessage &message : std::as_const(recorded())) {
        if (message.title == title) {
            found.append(message);
        }
    }
    return found;
}

void traymessages::compareOnly(const QString &title, const QString &text)
{
    QCOMPARE(all().size(), 1);
    const TrayMessage message = all().constFirst();
    QCOMPARE(message.title, title);
    QCOMPARE(message.text, text);
    QVERIFY(message == TrayMessage({title, text, QSystemTrayIcon::Information, 10000, true}));
}

QList<TrayMessage> traymessages::announcement(const QString &version)
{
    return {{u"Nueva versión encontrada"_s,
        u"La actualización de la versión V"_s + version + u" está disponible para ser instalada."_s,
        QSystemTrayIcon::Information, 10000, true}};
}
