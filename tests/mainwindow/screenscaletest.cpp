#include "mainwindow/screenscale.h"

#include "support/coretest.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScreen>
#include <QStyle>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Gives the application objects that are made next one screen of this size, in its own pixels, and scale.
void plugIn(QSize size, double scale)
{
    const QJsonObject screen{{u"name"_s, u"DP-1"_s}, {u"width"_s, size.width()}, {u"height"_s, size.height()},
        {u"logicalDpi"_s, qRound(96 * scale)}, {u"logicalBaseDpi"_s, 96}, {u"dpr"_s, 1}};
    // Found without its path, in which Windows has a colon: Qt ends the name of the file there.
    QFile file(u"screens.json"_s);
    if (!QDir::setCurrent(QDir::tempPath()) || !file.open(QFile::WriteOnly)) {
        qFatal("no file for the screens");
    }
    file.write(QJsonDocument(QJsonObject{{u"screens"_s, QJsonArray{screen}}}).toJson());
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(file.fileName()));
}

int &applications()
{
    static int count = 0;
    return count;
}

/// The scale of the screen of an application object that is made now.
double scaleOfAnApplication()
{
    char name[] = "nubaria";
    char *arguments[] = {name, nullptr};
    int count = 1;
    applications() = 0;
    const std::unique_ptr<QApplication> application = makeFittingApplication(count, arguments);
    return QGuiApplication::primaryScreen()->devicePixelRatio();
}

} // namespace

class ScreenScaleTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void cleanup()
    {
        qunsetenv("QT_SCREEN_SCALE_FACTORS");
        qunsetenv("QT_SCALE_FACTOR");
    }

    void isLoweredOnAScreenThatIsTooSmall_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<double>("screenScale");
        QTest::addColumn<double>("scale");
        // First, as Qt keeps what it has once taken note of.
        QTest::newRow("much too small") << QSize(1024, 600) << 2.0 << 1.0;
        QTest::newRow("high enough") << QSize(1920, 1110) << 1.5 << 1.5;
        QTest::newRow("too low") << QSize(1920, 1109) << 1.5 << 1.25;
        QTest::newRow("wide enough") << QSize(1899, 1200) << 1.5 << 1.5;
        QTest::newRow("too narrow") << QSize(1898, 1200) << 1.5 << 1.25;
        QTest::newRow("small, not scaled") << QSize(1024, 600) << 1.0 << 1.0;
    }

    void isLoweredOnAScreenThatIsTooSmall()
    {
        QFETCH(QSize, size);
        QFETCH(double, screenScale);
        QFETCH(double, scale);
        plugIn(size, screenScale);

        QCOMPARE(scaleOfAnApplication(), scale);
        QVERIFY(!qEnvironmentVariableIsSet("QT_SCREEN_SCALE_FACTORS"));
        // One that fits is not made twice.
        QCOMPARE(applications(), scale < screenScale ? 2 : 1);
    }

    void staysAsItWasSetByHand_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<double>("scale");
        QTest::newRow("all screens") << QByteArray("QT_SCALE_FACTOR") << QByteArray("1.5") << 2.25;
        QTest::newRow("one") << QByteArray("QT_SCREEN_SCALE_FACTORS") << QByteArray("DP-1=1.75") << 1.75;
    }

    void staysAsItWasSetByHand()
    {
        QFETCH(QByteArray, variable);
        QFETCH(QByteArray, value);
        QFETCH(double, scale);
        plugIn(QSize(1920, 1080), 1.5);
        qputenv(variable.constData(), value);

        QCOMPARE(scaleOfAnApplication(), scale);
        QCOMPARE(qgetenv(variable.constData()), value);
    }

    void loweringKeepsTheArguments()
    {
        plugIn(QSize(1920, 1080), 1.5);
        char name[] = "nubaria";
        char option[] = "-style";
        char style[] = "Windows";
        char own[] = "-own";
        char *arguments[] = {name, option, style, own, nullptr};
        int count = 4;

        const std::unique_ptr<QApplication> application = makeFittingApplication(count, arguments);

        QCOMPARE(QGuiApplication::primaryScreen()->devicePixelRatio(), 1.25);
        QCOMPARE(QApplication::style()->name(), u"windows"_s);
        QCOMPARE(QCoreApplication::arguments(), QStringList({u"nubaria"_s, u"-own"_s}));
    }
};

// Without an application object of its own: every case makes one.
int main(int argc, char *argv[])
{
    const Isolation isolation;
    qAddPreRoutine([] { ++applications(); });
    ScreenScaleTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "screenscaletest.moc"
