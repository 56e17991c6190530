#include "mainwindow/updatecheck.h"
#include "support/home.h"
#include "support/testmain.h"
#include "support/window.h"

#include <QLabel>

using namespace Qt::Literals::StringLiterals;

class VersionTest final : public QObject
{
    Q_OBJECT
private slots:
    void init() { home::reset(); }

    void isTheOneThatTheFormShows_data()
    {
        QTest::addColumn<QByteArray>("label");
        QTest::newRow("about") << QByteArray("VersionProgram");
        QTest::newRow("release notes") << QByteArray("SubTitleLabelTxt_2");
    }

    void isTheOneThatTheFormShows()
    {
        QFETCH(QByteArray, label);
        const MainWindow window;

        const QString text = widget<QLabel>(window, label.constData())->text();

        QVERIFY2(text.contains(u"%1 (VBLOQnuWDEMSREL%1_"_s.arg(programVersion())), qPrintable(text));
    }
};

NUBARIA_TEST_MAIN(VersionTest)
#include "versiontest.moc"
