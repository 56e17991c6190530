#include "support/home.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QHelpEvent>
#include <QLabel>
#include <QToolTip>

using namespace Qt::Literals::StringLiterals;

namespace {

QWidget *shownTip()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->inherits("QTipLabel") && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

void askForTip(QWidget *target)
{
    QHelpEvent event(QEvent::ToolTip, target->rect().center(), target->mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(target, &event);
}

bool isFramed(const QImage &picture)
{
    const QRgb line = qRgb(0x1c, 0x1c, 0x1c);
    const QPoint middle = picture.rect().center();
    return picture.pixel(0, middle.y()) == line && picture.pixel(picture.width() - 1, middle.y()) == line
        && picture.pixel(middle.x(), 0) == line && picture.pixel(middle.x(), picture.height() - 1) == line;
}

} // namespace

class TipLookTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void cleanup() { QToolTip::hideText(); }

    void framesEveryTip_data()
    {
        QTest::addColumn<QByteArray>("button");
        for (const char *name : {"TaskViewButton", "SettingsViewButton", "SaveTaskButton", "UpdateTaskBtn",
                 "CloseDetailTaskBtn"}) {
            QTest::newRow(name) << QByteArray(name);
        }
    }

    void framesEveryTip()
    {
        QFETCH(QByteArray, button);
        MainWindow window;
        window.show();

        askForTip(widget(window, button.constData()));

        auto *tip = qobject_cast<QLabel *>(shownTip());
        QVERIFY(tip);
        QVERIFY(isFramed(tip->grab().toImage()));
        QCOMPARE(tip->fontInfo().family(), u"Gantari"_s);
        // All of its words have a place inside.
        QVERIFY(tip->width() > QFontMetrics(tip->font()).horizontalAdvance(tip->text()));
    }

    void framesATipThatFollowsAnotherAtOnce()
    {
        MainWindow window;
        window.show();
        askForTip(widget(window, "TaskViewButton"));
        const QWidget *first = shownTip();
        QVERIFY(first);

        askForTip(widget(window, "SaveTaskButton"));

        auto *tip = qobject_cast<QLabel *>(shownTip());
        QCOMPARE(tip, first); // with other words
        QVERIFY(isFramed(tip->grab().toImage()));
        QCOMPARE(tip->fontInfo().family(), u"Gantari"_s);
        QVERIFY(tip->width() > QFontMetrics(tip->font()).horizontalAdvance(tip->text()));
    }
};

NUBARIA_TEST_MAIN(TipLookTest)
#include "tiplooktest.moc"
