#include "support/home.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QMessageBox>
#include <QTimer>

#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Does something with the next message box, which has to close it; one that stays open is closed as well.
class NextBox final : public QObject
{
public:
    explicit NextBox(std::function<void(QMessageBox &)> act)
        : m_act(std::move(act))
    {
        connect(&m_poll, &QTimer::timeout, this, &NextBox::look);
        m_poll.start(1);
    }

    bool wasOpen = false;
    bool stayedOpen = false;

private:
    void look()
    {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box || !box->isActiveWindow()) {
            return;
        }
        m_poll.stop();
        wasOpen = true;
        m_act(*box);
        stayedOpen = box->isVisible();
        if (stayedOpen) {
            box->done(QMessageBox::No);
        }
    }

    std::function<void(QMessageBox &)> m_act;
    QTimer m_poll;
};

/// Whether the line right below the upper edge of a button is dark: the second one of its border.
bool hasWideBorder(QAbstractButton &button)
{
    return button.grab().toImage().pixelColor(button.width() / 2, 1).lightness() < 64;
}

/// Of the room between border and text.
QString surface(QAbstractButton &button)
{
    return button.grab().toImage().pixelColor(5, button.height() / 2).name();
}

} // namespace

class TaskDetailsQuestionTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
    }

    void answersByKeys_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<int>("tasksLeft");
        QTest::newRow("Enter") << QList<int>{Qt::Key_Return} << 1;
        QTest::newRow("Enter of the number pad") << QList<int>{Qt::Key_Enter} << 1;
        QTest::newRow("Space") << QList<int>{Qt::Key_Space} << 1;
        QTest::newRow("Escape") << QList<int>{Qt::Key_Escape} << 1;
        QTest::newRow("Tab, Enter") << QList<int>{Qt::Key_Tab, Qt::Key_Return} << 0;
        QTest::newRow("Tab, Escape") << QList<int>{Qt::Key_Tab, Qt::Key_Escape} << 1;
    }

    void answersByKeys()
    {
        QFETCH(QList<int>, keys);
        QFETCH(int, tasksLeft);
        MainWindow window;
        selectRow(window, 0);
        const NextBox box([keys](QMessageBox &question) {
            for (const int key : keys) {
                QTest::keyClick(question.windowHandle(), static_cast<Qt::Key>(key));
            }
        });

        click(window, "FinishTaskBtn");

        QVERIFY(box.wasOpen && !box.stayedOpen);
        QCOMPARE(home::tasks().size(), tasksLeft);
    }

    void looksAsEnterAnswers()
    {
        MainWindow window;
        QList<bool> wide;
        const NextBox box([&wide](QMessageBox &question) {
            for (int time = 0; time < 2; ++time) {
                wide.append(hasWideBorder(*question.button(QMessageBox::Yes)));
                wide.append(hasWideBorder(*question.button(QMessageBox::No)));
                QTest::keyClick(question.windowHandle(), Qt::Key_Tab);
            }
        });

        click(window, "FinishTaskBtn");

        QCOMPARE(wide, QList<bool>({false, true, true, false}));
    }

    void showsTheMouseOnThePreferredAnswer()
    {
        MainWindow window;
        QStringList surfaces;
        const NextBox box([&surfaces](QMessageBox &question) {
            QAbstractButton &preferred = *question.button(QMessageBox::No);
            surfaces.append(surface(preferred));
            QTest::mouseMove(&preferred);
            surfaces.append(surface(preferred));
        });

        click(window, "FinishTaskBtn");

        QCOMPARE(surfaces, QStringList({u"#e0e0e0"_s, u"#d3d3d3"_s}));
    }

    void carriesTheProgramsIcon()
    {
        MainWindow window;
        QImage shown;
        const NextBox box(
            [&shown](const QMessageBox &question) { shown = question.windowIcon().pixmap(32).toImage(); });

        click(window, "FinishTaskBtn");

        QVERIFY(!shown.isNull());
        QCOMPARE(shown, window.windowIcon().pixmap(32).toImage());
    }
};

NUBARIA_TEST_MAIN(TaskDetailsQuestionTest)
#include "taskdetailsquestiontest.moc"
