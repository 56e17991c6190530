#include "support/browser.h"
#include "support/keyboard.h"
#include "support/messageboxes.h"
#include "support/windowtest.h"

#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The manual as it is installed on Windows, beside this program.
class InstalledManual final
{
    Q_DISABLE_COPY_MOVE(InstalledManual)
public:
    InstalledManual()
    {
        QFile file(page());
        if (!m_folder.mkpath(u"."_s) || !file.open(QFile::WriteOnly)) {
            qFatal("no manual for the test");
        }
    }
    ~InstalledManual() { m_folder.removeRecursively(); }

    QString page() const { return m_folder.filePath(u"manual.es.html"_s); }

private:
    QDir m_folder{QCoreApplication::applicationDirPath() + "/manual"_L1};
};

} // namespace

class KeyboardManualTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void opensTheManual()
    {
        const InstalledManual manual;
        MainWindow window;
        const Browser browser(u"file"_s, window);
        const MessageBoxes boxes;
        QVERIFY(showActive(window));

        press(window, Qt::Key_F1);

        QCOMPARE(browser.opened(), QList<QUrl>{QUrl::fromLocalFile(manual.page())});
        QCOMPARE(boxes.shown().size(), 0);
    }

    void tellsThatThereIsNoManual()
    {
        MainWindow window;
        const Browser browser(u"file"_s, window);
        const MessageBoxes boxes;
        QVERIFY(showActive(window));

        press(window, Qt::Key_F1);

        QCOMPARE(browser.opened(), QList<QUrl>());
        compareOnlyBox(boxes, QMessageBox::Warning, u"Manual"_s, u"No se pudo abrir el manual."_s);
    }

    void tellsThatNothingOpensTheManual()
    {
        const InstalledManual manual;
        MainWindow window;
        const MessageBoxes boxes;
        QVERIFY(showActive(window));

        press(window, Qt::Key_F1);

        compareOnlyBox(boxes, QMessageBox::Warning, u"Manual"_s, u"No se pudo abrir el manual."_s);
    }
};

NUBARIA_TEST_MAIN(KeyboardManualTest)
#include "keyboardmanualtest.moc"
