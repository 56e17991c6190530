#include "mainwindow/icons.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QDir>
#include <QFile>
#include <QIcon>
#include <QLineEdit>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

class IconsTest final : public WindowTest
{
    Q_OBJECT
private:
    /// A desktop's theme with one picture, of one colour.
    static void makeTheme(const QString &folder)
    {
        QVERIFY(QDir().mkpath(folder + "/desk/16"_L1));
        QFile index(folder + "/desk/index.theme"_L1);
        QVERIFY(index.open(QIODevice::WriteOnly));
        index.write("[Icon Theme]\nName=Desk\nDirectories=16\n\n[16]\nSize=16\nType=Fixed\n");
        QImage picture(16, 16, QImage::Format_ARGB32);
        picture.fill(Qt::green);
        QVERIFY(picture.save(folder + "/desk/16/dialog-warning.png"_L1));
        QVERIFY(picture.save(folder + "/desk/16/edit-clear-locationbar-rtl.png"_L1));
    }

private slots:
    void givesOurOwnFirstAndTheDesktopsForTheRest()
    {
        const QString folder = QDir::homePath() + "/icons"_L1;
        makeTheme(folder);
        QIcon::setThemeSearchPaths({folder, u":/icons"_s});
        QIcon::setThemeName(u"desk"_s);

        useOwnIcons();

        const QImage warning = QIcon::fromTheme(u"dialog-warning"_s).pixmap(16).toImage();
        QCOMPARE(warning.pixelColor(8, 8), QColor(Qt::green));
        const MainWindow window;
        const auto *button = widget<QLineEdit>(window, "TaskTitle")->findChild<QToolButton *>();
        const QImage clear = button->icon().pixmap(QSize(16, 16), 1.0).toImage();
        QCOMPARE(clear.convertToFormat(QImage::Format_ARGB32),
            QImage(u":/imageres/clear.png"_s).convertToFormat(QImage::Format_ARGB32));
        const QIcon icon = QIcon::fromTheme(u"edit-clear-locationbar-rtl"_s);
        QCOMPARE(icon.pixmap(QSize(16, 16), 2.0).toImage().convertToFormat(QImage::Format_ARGB32),
            QImage(u":/imageres/clear@2x.png"_s).convertToFormat(QImage::Format_ARGB32));
    }
};

NUBARIA_TEST_MAIN(IconsTest)
#include "iconstest.moc"
