#include "core/updatecheck.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLabel>
#include <QRawFont>
#include <QRegularExpression>
#include <QTextDocument>

#include <algorithm>

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

/// A part of the release notes.
struct Section
{
    QString heading;
    QStringList notes; ///< numbered paragraphs
};

QList<Section> sections(const QString &releaseNotes)
{
    static const QRegularExpression number(u"^\\d+\\. "_s);
    QList<Section> found;
    for (const QString &line : plainText(releaseNotes).split(u'\n')) {
        if (line.startsWith(u'•')) {
            found.append({line, {}});
        } else if (!found.isEmpty() && number.match(line).hasMatch()) {
            found.last().notes.append(line);
        }
    }
    return found;
}

} // namespace

/// The window's own words: whether they can be read in full, in which letters, and what the longer ones tell.
class MainWindowWordsTest final : public WindowTest
{
    Q_OBJECT

private slots:
    void fitTheirPlaces_data() { looks(); }

    void fitTheirPlaces()
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

    void areShownInGantari()
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

    void needNoFaceButGantaris()
    {
        const MainWindow window;

        int faces = 0;
        while (!QFontDatabase::applicationFontFamilies(faces).isEmpty()) {
            const QStringList families = QFontDatabase::applicationFontFamilies(faces);
            QVERIFY2(families.constFirst().startsWith(u"Gantari"_s), qPrintable(families.join(u", "_s)));
            ++faces;
        }
        QVERIFY(faces >= 2);
        // The face that waits in the resources is one that could be read.
        QVERIFY(QRawFont(u":/fonts/Montserrat-Regular.ttf"_s, 9).isValid());
        for (const QWidget *const child : window.findChildren<QWidget *>()) {
            QVERIFY2(!child->styleSheet().contains(u"Montserrat"_s), qPrintable(child->objectName()));
            QVERIFY2(!child->font().families().contains(u"Montserrat"_s), qPrintable(child->objectName()));
        }
    }

    void tellOfTheVersionInFourSections()
    {
        const MainWindow window;
        const QString notes = widget<QLabel>(window, "LargeText")->text();

        const QStringList expected{u"• SISTEMA"_s, u"• EXPERIENCIA DE USUARIO"_s, u"• MEJORAS VISUALES"_s,
            u"• NOTAS ADICIONALES Y PROBLEMAS IDENTIFICADOS"_s};
        QStringList headings;
        for (const Section &section : sections(notes)) {
            headings.append(section.heading);
        }
        QCOMPARE(headings, expected);
        QVERIFY(plainText(notes).section(u'\n', 0, 0).contains(u"Nubaria"_s));
        QVERIFY(notes.contains(u"font-style:italic"_s));
    }

    void numberTheNotesThroughout()
    {
        const MainWindow window;
        int expected = 1;
        for (const Section &section : sections(widget<QLabel>(window, "LargeText")->text())) {
            for (const QString &note : section.notes) {
                QVERIFY2(note.startsWith(u"%1. "_s.arg(expected)), qPrintable(note));
                ++expected;
            }
        }
        QVERIFY(expected > 5);
    }

    void noteInEverySection()
    {
        const MainWindow window;
        for (const Section &section : sections(widget<QLabel>(window, "LargeText")->text())) {
            QVERIFY2(!section.notes.isEmpty(), qPrintable(section.heading));
        }
    }

    void noteWhatTheVersionBrings_data()
    {
        QTest::addColumn<QString>("heading");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("redesign") << u"• SISTEMA"_s << QStringList{u"rediseñ"_s};
        QTest::newRow("memory leaks") << u"• SISTEMA"_s << QStringList{u"corrig"_s, u"fugas de memoria"_s};
        QTest::newRow("restoring") << u"• SISTEMA"_s << QStringList{u"corrig"_s, u"restauración"_s};
        QTest::newRow("update notice") << u"• EXPERIENCIA DE USUARIO"_s
                                       << QStringList{u"aviso de actualización"_s, u"menos intrusivo"_s,
                                              u"esquina inferior izquierda"_s};
        QTest::newRow("reminders") << u"• EXPERIENCIA DE USUARIO"_s
                                   << QStringList{u"recordatorios"_s, u"se activan en Ajustes"_s,
                                          u"en los próximos dos días"_s};
        QTest::newRow("first reminder") << u"• NOTAS ADICIONALES Y PROBLEMAS IDENTIFICADOS"_s
                                        << QStringList{u"primer recordatorio"_s, u"24 horas"_s};
        QTest::newRow("trays") << u"• NOTAS ADICIONALES Y PROBLEMAS IDENTIFICADOS"_s
                               << QStringList{u"sin bandeja"_s, u"no informa del doble clic"_s};
    }

    void noteWhatTheVersionBrings()
    {
        QFETCH(QString, heading);
        QFETCH(QStringList, words);
        const MainWindow window;
        int found = 0;
        for (const Section &section : sections(widget<QLabel>(window, "LargeText")->text())) {
            for (const QString &note : section.notes) {
                const bool tells = std::all_of(
                    words.begin(), words.end(), [&note](const QString &word) { return note.contains(word); });
                found += tells && section.heading == heading ? 1 : 0;
            }
        }
        QCOMPARE(found, 1);
    }

    void nameProgramImagesAndInterfaceInTheNotice()
    {
        const MainWindow window;
        const QString notice = plainText(widget<QLabel>(window, "BetaMessage")->text());
        for (const QString &subject : {u"programa"_s, u"imágenes"_s, u"interfaz"_s, u"garantía"_s}) {
            QVERIFY2(notice.contains(subject), qPrintable(subject));
        }
        QVERIFY(!notice.contains(u"preliminar"_s)); // nothing else calls this version so
    }

    void tellsTheProgramsOwnVersion_data()
    {
        QTest::addColumn<QByteArray>("label");
        QTest::newRow("about") << QByteArray("VersionProgram");
        QTest::newRow("release notes") << QByteArray("SubTitleLabelTxt_2");
    }

    void tellsTheProgramsOwnVersion()
    {
        QFETCH(QByteArray, label);
        const MainWindow window;

        const QString text = widget<QLabel>(window, label.constData())->text();

        QVERIFY2(text.contains(u"%1 (VBLOQnuWDEMSREL%1_"_s.arg(programVersion())), qPrintable(text));
    }
};

NUBARIA_TEST_MAIN(MainWindowWordsTest)

#include "mainwindowwordstest.moc"
