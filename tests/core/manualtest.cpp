#include "core/manual.h"

#include "support/coretest.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

class ManualTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void isFoundWhereItWasInstalled_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("found");
        const QString windows = u"bin/manual/manual.es.html"_s;
        const QString debian = u"share/doc/nubaria/manual.es.html"_s;
        QTest::newRow("on Windows") << QStringList(windows) << windows;
        QTest::newRow("on Debian") << QStringList(debian) << debian;
        QTest::newRow("beside the program and elsewhere") << QStringList({windows, debian}) << windows;
        QTest::newRow("nowhere") << QStringList(u"bin/manual/leeme.html"_s) << QString();
        QTest::newRow("a folder of its name") << QStringList(windows + "/leeme.html"_L1) << QString();
    }

    void isFoundWhereItWasInstalled()
    {
        QFETCH(QStringList, installed);
        QFETCH(QString, found);
        const QTemporaryDir system;
        for (const QString &name : installed) {
            const QString path = system.filePath(name);
            QVERIFY(QDir().mkpath(path.first(path.lastIndexOf(u'/'))));
            QVERIFY(QFile(path).open(QFile::WriteOnly));
        }

        const QString page = installedManual(system.filePath(u"bin"_s));

        QCOMPARE(page, found.isEmpty() ? QString() : system.filePath(found));
    }
};

NUBARIA_CORE_TEST_MAIN(ManualTest)
#include "manualtest.moc"
