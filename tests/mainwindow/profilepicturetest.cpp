#include "support/filedialog.h"
#include "support/home.h"
#include "support/replaced.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

QString writePicture(const QString &name, const QColor &color)
{
    QImage image(300, 200, QImage::Format_RGB32);
    image.fill(color);
    const QString path = QDir(QDir::homePath()).filePath(name);
    if (!image.save(path, "png")) {
        qFatal("cannot write the picture of the test");
    }
    return path;
}

QString writeText(const QString &name)
{
    QFile file(QDir(QDir::homePath()).filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write("Esto no es una foto.\n") <= 0) {
        qFatal("cannot write the file of the test");
    }
    return file.fileName();
}

QImage shownPicture(const MainWindow &window)
{
    return widget<QLabel>(window, "ProfilePicture")->pixmap().toImage();
}

QString storedPath()
{
    return home::preference(u"profilePicturePath"_s).toString();
}

void choosePicture(const MainWindow &window, const QString &path)
{
    filedialog::answer() = path;
    widget<QPushButton>(window, "SetProfile")->click();
}

/// A disc of this one colour in the middle of nothing.
bool showsDisc(const MainWindow &window, const QColor &color)
{
    const QImage picture = shownPicture(window);
    const QPoint end = picture.rect().bottomRight();
    return !picture.isNull() && picture.size() == widget(window, "ProfilePicture")->size()
        && picture.pixelColor(picture.rect().center()) == color && picture.pixelColor(0, 0).alpha() == 0
        && picture.pixelColor(end).alpha() == 0;
}

} // namespace

class ProfilePictureTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QCOMPARE(qApp->devicePixelRatio(), qEnvironmentVariable("QT_SCALE_FACTOR", u"1"_s).toDouble());
    }

    void asksForOnePictureFile()
    {
        const MainWindow window;

        widget<QPushButton>(window, "SetProfile")->click();

        const QList<AskedFile> expected
            = {{&window, u"Cargar imagen"_s, QString(), u"Image Files (*.png *.jpg *.bmp)"_s}};
        QVERIFY(filedialog::asked() == expected);
    }

    void showsAndStoresTheChosenPicture_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << u"foto.png"_s;
#ifdef Q_OS_WIN // where no file has such a mark in its name
        QTest::newRow("blanks, accents and marks") << u"Mi foto, año 100% «ñ»; a.png"_s;
#else
        QTest::newRow("blanks, accents and marks") << u"Mi foto, año 100% «ñ»; \"a\".png"_s;
#endif
    }

    void showsAndStoresTheChosenPicture()
    {
        QFETCH(QString, name);
        const QString path = writePicture(name, Qt::blue);
        const MainWindow window;
        QVERIFY(!home::preference(u"profilePicturePath"_s).isValid());

        choosePicture(window, path);

        QVERIFY(showsDisc(window, Qt::blue));
        QCOMPARE(home::preference(u"profilePicturePath"_s), QVariant(path));
    }

    void replacesThePictureByTheNextOne()
    {
        const MainWindow window;
        choosePicture(window, writePicture(u"azul.png"_s, Qt::blue));
        const QString path = writePicture(u"rojo.png"_s, Qt::red);

        choosePicture(window, path);

        QVERIFY(showsDisc(window, Qt::red));
        QCOMPARE(storedPath(), path);
    }

    void changesThePictureWithoutTouchingTheFields_data()
    {
        QTest::addColumn<bool>("editing");
        QTest::newRow("locked") << false;
        QTest::newRow("editing") << true;
    }

    void changesThePictureWithoutTouchingTheFields()
    {
        QFETCH(bool, editing);
        const MainWindow window;
        if (editing) {
            widget<QPushButton>(window, "SetProfileInfo")->click();
        }

        choosePicture(window, writePicture(u"foto.png"_s, Qt::blue));

        QVERIFY(showsDisc(window, Qt::blue));
        QCOMPARE(widget(window, "UserName")->isEnabled(), editing);
        QCOMPARE(widget(window, "SaveProfileInfo")->isHidden(), !editing);
        QCOMPARE(widget<QLineEdit>(window, "UserName")->text(), u"Invitado(a)"_s);
        QVERIFY(!home::preference(u"firstName"_s).isValid());
    }

    void changesNothingWhenTheDialogIsCancelled_data()
    {
        QTest::addColumn<bool>("hasPicture");
        QTest::newRow("first start") << false;
        QTest::newRow("with a picture") << true;
    }

    void changesNothingWhenTheDialogIsCancelled()
    {
        QFETCH(bool, hasPicture);
        if (hasPicture) {
            home::setPreference(u"profilePicturePath"_s, writePicture(u"foto.png"_s, Qt::blue));
        }
        const MainWindow window;
        const QImage before = shownPicture(window);
        const QVariant storedBefore = home::preference(u"profilePicturePath"_s);
        QVERIFY(!before.isNull());
        QCOMPARE(showsDisc(window, Qt::blue), hasPicture);

        choosePicture(window, QString());

        QCOMPARE(filedialog::asked().size(), 1);
        QCOMPARE(shownPicture(window), before);
        QCOMPARE(home::preference(u"profilePicturePath"_s), storedBefore);
    }

    void emptiesThePictureAndStoresThePathOfAnUnloadableFile()
    {
        home::setPreference(u"profilePicturePath"_s, writePicture(u"foto.png"_s, Qt::blue));
        const MainWindow window;
        const QString path = writeText(u"carta.png"_s);

        choosePicture(window, path);

        QVERIFY(shownPicture(window).isNull());
        QCOMPARE(storedPath(), path);
    }

    void fitsThePictureToTheLabelOfTheMoment()
    {
        const MainWindow window;
        widget<QLabel>(window, "ProfilePicture")->resize(120, 60);

        choosePicture(window, writePicture(u"foto.png"_s, Qt::blue));

        QCOMPARE(shownPicture(window).size(), QSize(120, 60));
        QVERIFY(showsDisc(window, Qt::blue));
    }

    void drawsADiscOnTheProfilePage()
    {
        MainWindow window;
        window.show();
        widget<QPushButton>(window, "ProfileViewButton")->click();
        choosePicture(window, writePicture(u"foto.png"_s, Qt::blue));

        const QImage drawn = widget(window, "ProfilePicture")->grab().toImage();

        const qreal scale = drawn.devicePixelRatio();
        const auto at = [&drawn, scale](int x, int y) {
            return drawn.pixelColor(qRound(x * scale), qRound(y * scale));
        };
        QCOMPARE(drawn.size(), QSize(75, 75) * scale);
        for (const QPoint &inside :
            {QPoint(37, 37), QPoint(37, 5), QPoint(37, 69), QPoint(5, 37), QPoint(69, 37)}) {
            QCOMPARE(at(inside.x(), inside.y()), QColor(Qt::blue));
        }
        for (const QPoint &outside : {QPoint(4, 4), QPoint(70, 4), QPoint(4, 70), QPoint(70, 70)}) {
            QVERIFY(at(outside.x(), outside.y()) != QColor(Qt::blue));
        }
    }

    void showsTheStoredPictureAtTheNextStart()
    {
        {
            const MainWindow window;
            choosePicture(window, writePicture(u"foto.png"_s, Qt::blue));
        }

        const MainWindow window;

        QVERIFY(showsDisc(window, Qt::blue));
        QCOMPARE(filedialog::asked().size(), 1);
    }

    void keepsThePictureOfTheFormWithoutAStoredFile_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("nothing stored") << QString();
        QTest::newRow("the file has gone") << u"/no/existe/foto.png"_s;
        QTest::newRow("a folder") << QDir::homePath();
    }

    void keepsThePictureOfTheFormWithoutAStoredFile()
    {
        QFETCH(QString, path);
        QImage ofTheForm;
        {
            const MainWindow window;
            ofTheForm = shownPicture(window);
        }
        QVERIFY(!ofTheForm.isNull());
        home::setPreference(u"profilePicturePath"_s, path);

        const MainWindow window;

        QCOMPARE(shownPicture(window), ofTheForm);
        QCOMPARE(storedPath(), path);
    }

    void keepsTheShownPictureWhenItsFileHasGone()
    {
        MainWindow window;
        const QString path = writePicture(u"foto.png"_s, Qt::blue);
        choosePicture(window, path);
        QVERIFY(QFile::remove(path));

        callSlot(window, "loadProfilePicture");

        QVERIFY(showsDisc(window, Qt::blue));
        QCOMPARE(storedPath(), path);
    }

    void emptiesThePictureAtStartWhenTheStoredFileIsUnloadable()
    {
        home::setPreference(u"profilePicturePath"_s, writeText(u"carta.png"_s));

        const MainWindow window;

        QVERIFY(shownPicture(window).isNull());
    }

    void staysSilentAboutPictures()
    {
        MainWindow window;
        QTest::failOnWarning(QRegularExpression(u"."_s));

        choosePicture(window, writePicture(u"foto.png"_s, Qt::blue));
        choosePicture(window, writeText(u"carta.png"_s));
        choosePicture(window, QString());
        home::setPreference(u"profilePicturePath"_s, u"/no/existe/foto.png"_s);
        callSlot(window, "loadProfilePicture");

        QCOMPARE(filedialog::asked().size(), 3);
        QCOMPARE(traymessages::all().size(), 0);
    }
};

NUBARIA_TEST_MAIN(ProfilePictureTest)
#include "profilepicturetest.moc"
