#include "widgets/unbuiltpopups.h"
#include "support/windowtest.h"

#include <QAbstractItemView>
#include <QComboBox>

using namespace Qt::Literals::StringLiterals;

class UnbuiltPopUpsTest final : public WindowTest
{
    Q_OBJECT
private:
    struct Window
    {
        QWidget window;
        // Without items: with the first one, Qt 6.8 builds the pop-up at once.
        QComboBox *chooser = new QComboBox(&window);

        Window() { new UnbuiltPopUps(&window); }

        void embolden() const
        {
            QFont font = chooser->font();
            font.setWeight(QFont::DemiBold);
            chooser->setFont(font);
        }
        bool hasPopUp() const { return chooser->findChild<QAbstractItemView *>(); }
    };

private slots:
    void buildsNoPopUpForAFontBeforeItIsShown()
    {
        const Window unshown;

        unshown.embolden();

        QVERIFY(!unshown.hasPopUp());
        QCOMPARE(unshown.chooser->view()->font().weight(), QFont::DemiBold);
    }

    void handsTheFontOnToAPopUpThatStands()
    {
        const Window unshown;
        const QAbstractItemView *view = unshown.chooser->view();

        unshown.embolden();

        QCOMPARE(view->font().weight(), QFont::DemiBold);
    }

    void asksForMoreRoomAfterALargerFontWhileShown()
    {
        Window shown;
        shown.window.show();
        const QSize before = shown.chooser->sizeHint();
        QFont font = shown.chooser->font();
        font.setPointSize(2 * font.pointSize());

        shown.chooser->setFont(font);

        QVERIFY(shown.chooser->sizeHint().height() > before.height());
    }
};

NUBARIA_TEST_MAIN(UnbuiltPopUpsTest)
#include "unbuiltpopupstest.moc"
