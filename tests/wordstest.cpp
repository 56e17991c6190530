#include "support/home.h"
#include "support/testmain.h"
#include "support/window.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFontInfo>
#include <QLabel>
#include <QRegularExpression>
#include <QTextDocument>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Every palette, plain and emphasised.
void looks()
{
    QTest::addColumn<int>("palette");
    QTest::addColumn<int>("emphasis");
    for (int palette = 0; palette < 7; ++palette) {
        for (const int emphasis : {0, 1}) {
            QTest::addRow("palette %d, emphasis %d", palette, emphasis) << palette << emphasis;
        }
    }
}

QString plainText(const QString &text)
{
    QTextDocument document;
    document.setHtml(text);
    return document.toPlainText();
}

/// The words of a widget that shows a text of its own; empty for any other.
QString words(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        return plainText(label->text());
    }
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    return button ? button->text() : QString();
}

/// Whether nothing of the widget's words is cut. What a button asks for beside them is room, not words.
bool fits(const QWidget *widget)
{
    const auto *label = qobject_cast<const QLabel *>(widget);
    if (!label) {
        return widget->fontMetrics().horizontalAdvance(words(widget)) <= widget->width();
    }
    if (label->wordWrap()) {
        return label->heightForWidth(label->width()) <= label->height();
    }
    return label->sizeHint().width() <= label->width();
}

} // namespace

/// The window's own words: whether they can be read in full, in which letters, and what the longer ones tell.
class WordsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void fitTheirPlaces_data();
    void fitTheirPlaces();
    void areShownInGantari();
    void tellOfTheVersionInFourSections();
    void numberTheNotesThroughout();
    void nameProgramImagesAndInterfaceInTheNotice();
};

void WordsTest::init()
{
    home::reset();
}

void WordsTest::fitTheirPlaces_data()
{
    looks();
}

void WordsTest::fitTheirPlaces()
{
    QFETCH(int, palette);
    QFETCH(int, emphasis);
    MainWindow window;
    window.show();
    widget<QComboBox>(window, "ChangeColorTheme")->setCurrentIndex(palette);
    widget<QComboBox>(window, "ChangeTextTheme")->setCurrentIndex(emphasis);
    int looked = 0;
    for (const QWidget *const child : window.findChildren<QWidget *>()) {
        if (words(child).isEmpty()) {
            continue;
        }
        child->ensurePolished();
        ++looked;
        QVERIFY2(fits(child), qPrintable(child->objectName() + u": "_s + words(child)));
    }
    QVERIFY(looked > 70);
}

void WordsTest::areShownInGantari()
{
    MainWindow window;
    window.show();
    for (const QWidget *const child : window.findChildren<QWidget *>()) {
        if (!words(child).isEmpty()) {
            child->ensurePolished();
            QCOMPARE(QFontInfo(child->font()).family(), u"Gantari"_s);
        }
    }
}

void WordsTest::tellOfTheVersionInFourSections()
{
    const MainWindow window;
    const auto *notes = widget<QLabel>(window, "LargeText");
    QStringList headings;
    for (const QString &line : plainText(notes->text()).split(u'\n')) {
        if (line.startsWith(u'•')) {
            headings.append(line);
        }
    }
    const QStringList expected{u"• SISTEMA"_s, u"• EXPERIENCIA DE USUARIO"_s, u"• MEJORAS VISUALES"_s,
        u"• NOTAS ADICIONALES Y PROBLEMAS IDENTIFICADOS"_s};
    QCOMPARE(headings, expected);
    QVERIFY(plainText(notes->text()).section(u'\n', 0, 0).contains(u"Nubaria"_s));
    QVERIFY(notes->text().contains(u"font-style:italic"_s));
}

void WordsTest::numberTheNotesThroughout()
{
    const MainWindow window;
    static const QRegularExpression number(u"^(\\d+)\\. "_s);
    int expected = 1;
    for (const QString &line : plainText(widget<QLabel>(window, "LargeText")->text()).split(u'\n')) {
        if (const auto match = number.match(line); match.hasMatch()) {
            QCOMPARE(match.captured(1).toInt(), expected);
            ++expected;
        }
    }
    QVERIFY(expected > 5);
}

void WordsTest::nameProgramImagesAndInterfaceInTheNotice()
{
    const MainWindow window;
    const QString notice = plainText(widget<QLabel>(window, "BetaMessage")->text());
    for (const QString &subject : {u"programa"_s, u"imágenes"_s, u"interfaz"_s, u"garantía"_s}) {
        QVERIFY2(notice.contains(subject), qPrintable(subject));
    }
}

NUBARIA_TEST_MAIN(WordsTest)

#include "wordstest.moc"
