#include "support/window.h"
#include "support/windowtest.h"

#include <QClipboard>
#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QTextDocument>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

std::unique_ptr<QMimeData> colouredText()
{
    auto data = std::make_unique<QMimeData>();
    data->setHtml(u"<table><tr><td style='color:red'><b>uno</b></td><td>dos</td></tr></table>"_s);
    data->setText(u"uno\tdos"_s);
    return data;
}

std::unique_ptr<QMimeData> picture()
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    auto data = std::make_unique<QMimeData>();
    data->setImageData(image);
    data->setHtml(u"<img src='picture.png'>"_s);
    return data;
}

QString plainHtml(const QTextEdit *edit, const QString &text)
{
    QTextDocument document;
    document.setDefaultFont(edit->document()->defaultFont());
    document.setPlainText(text);
    return document.toHtml();
}

void paste(QTextEdit *edit, std::unique_ptr<QMimeData> data)
{
    QGuiApplication::clipboard()->setMimeData(data.release());
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
}

void drop(QTextEdit *edit, const QMimeData &data)
{
    const QPoint place = edit->viewport()->rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(edit->viewport(), &enter);
    QDropEvent dropped(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(edit->viewport(), &dropped);
}

} // namespace

/// A description shows what will be stored of it.
class MainWindowDescriptionsTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void takeTheTextAlone_data() { addEditors(); }

    void takeTheTextAlone()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, dropped);
        const MainWindow window;
        auto *edit = widget<QTextEdit>(window, name.constData());

        if (dropped) {
            drop(edit, *colouredText());
        } else {
            paste(edit, colouredText());
        }

        QCOMPARE(edit->toPlainText(), u"uno\tdos"_s);
        QCOMPARE(edit->toHtml(), plainHtml(edit, u"uno\tdos"_s));
    }

    void takeNothingOfAPicture_data() { addEditors(); }

    void takeNothingOfAPicture()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, dropped);
        const MainWindow window;
        auto *edit = widget<QTextEdit>(window, name.constData());
        edit->setPlainText(u"uno"_s);

        if (dropped) {
            drop(edit, *picture());
        } else {
            paste(edit, picture());
        }

        QCOMPARE(edit->toPlainText(), u"uno"_s);
    }

    void areAllTheTextEditors()
    {
        const MainWindow window;
        const QList<QTextEdit *> edits = window.findChildren<QTextEdit *>();
        QCOMPARE(edits.size(), 3);
        for (const QTextEdit *edit : edits) {
            QVERIFY2(!edit->acceptRichText(), qPrintable(edit->objectName()));
        }
    }

    void handTabOn()
    {
        const MainWindow window;
        for (const char *name : {"TaskDescription", "TaskDescriptionView"}) {
            QVERIFY2(widget<QTextEdit>(window, name)->tabChangesFocus(), name);
        }
    }

private:
    static void addEditors()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("dropped");
        for (const char *name : {"TaskDescription", "TaskDescriptionView", "TaskDescriptionView_2"}) {
            QTest::addRow("%s, pasted", name) << QByteArray(name) << false;
            QTest::addRow("%s, dropped", name) << QByteArray(name) << true;
        }
    }
};

NUBARIA_TEST_MAIN(MainWindowDescriptionsTest)
#include "mainwindowdescriptionstest.moc"
