#include "app/singleinstancechecker.h"
#include "mainwindow/icons.h"
#include "mainwindow/instance.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/screenscale.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocalSocket>
#include <QLocale>
#include <QTranslator>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int socketTimeout = 200; // milliseconds, for connecting and for writing

// The connection alone wakes the running copy. One that cannot be reached in time is left alone, in silence:
// it may still be starting.
void wakeRunningCopy()
{
    QLocalSocket socket;
    socket.connectToServer(instanceServerName, QIODevice::ReadWrite);
    if (socket.waitForConnected(socketTimeout)) {
        socket.write("focus");
        socket.waitForBytesWritten(socketTimeout);
        socket.disconnectFromServer();
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const std::unique_ptr<QApplication> application = makeFittingApplication(argc, argv);
    const SingleInstanceChecker checker;
    if (checker.isAlreadyRunning()) {
        wakeRunningCopy();
        return 0;
    }

    // Qt's own words, such as those on the buttons of a message box.
    QTranslator translator;
    if (translator.load(QLocale(QLocale::Spanish, QLocale::Mexico), u"qtbase"_s, u"_"_s,
            QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&translator);
    }

    useOwnIcons();
    MainWindow window;
    window.setFocusPolicy(Qt::NoFocus);
    window.show();
    return QApplication::exec();
}
