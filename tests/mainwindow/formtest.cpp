#include "support/form.h"
#include "support/formfacts.h"
#include "support/windowtest.h"

#include <QFile>
#include <QIcon>
#include <QMainWindow>
#include <QPixmap>
#include <QRegularExpression>
#include <QTest>
#include <QTranslator>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QWidget *widgetOf(Form &form, const QJsonObject &facts)
{
    const QString name = facts["name"_L1].toString();
    return name == form.window.objectName() ? &form.window : form.window.findChild<QWidget *>(name);
}

// Quotes what it translates, so that a text it was never asked for stands out.
class QuotingTranslator final : public QTranslator
{
public:
    static QString quoted(const QString &text) { return text.isEmpty() ? text : u'«' + text + u'»'; }
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return qstrcmp(context, "MainWindow") == 0 ? quoted(QString::fromUtf8(text)) : QString();
    }
};

QIcon iconOf(const QWidget &widget)
{
    return widget.property(widget.isWindow() ? "windowIcon" : "icon").value<QIcon>();
}

} // namespace

class FormTest final : public WindowTest
{
    Q_OBJECT

    FormFacts m_facts;

    // One row, named after the widget, for each widget that has any of these facts in the table.
    void addRows(const QStringList &wanted) const
    {
        QTest::addColumn<QJsonObject>("facts");
        const QList<QJsonObject> widgets = m_facts.widgets();
        for (const QJsonObject &facts : widgets) {
            const auto given = [&facts](const QString &fact) {
                return facts.contains(fact);
            };
            if (std::any_of(wanted.begin(), wanted.end(), given)) {
                QTest::newRow(facts["name"_L1].toString().toUtf8().constData()) << facts;
            }
        }
    }

private slots:
    void initTestCase() { QVERIFY(m_facts.load(QFINDTESTDATA("data/form.json"))); }

    void placesEveryWidgetInItsParent_data() { addRows({u"parent"_s}); }

    void placesEveryWidgetInItsParent()
    {
        QFETCH(QJsonObject, facts);
        Form form;
        const QWidget *widget = widgetOf(form, facts);
        QVERIFY(widget);

        QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), facts["class"_L1].toString());
        QVERIFY(widget->parentWidget());
        QCOMPARE(widget->parentWidget()->objectName(), facts["parent"_L1].toString());
        if (facts.contains("geometry"_L1)) {
            QCOMPARE(propertyFaults(*widget, {{u"geometry"_s, facts["geometry"_L1]}}), QStringList());
        }
    }

    void holdsNoFurtherWidget()
    {
        Form form;
        QStringList found = descendantNames(form.window);
        QStringList expected = m_facts.names().mid(1);
        QCOMPARE(expected.size(), 137);

        found.sort();
        expected.sort();
        QCOMPARE(found, expected);
    }

    // The focus chain runs through the widgets in the order of their creation, whatever was raised later.
    void buildsTheWidgetsInMemberOrder()
    {
        Form form;
        const QStringList expected = m_facts.names().mid(1);
        QStringList found;
        for (QWidget *next = form.window.nextInFocusChain(); next != &form.window;
             next = next->nextInFocusChain()) {
            if (expected.contains(next->objectName())) {
                found.append(next->objectName());
            }
        }
        QCOMPARE(found, expected);
    }

    void stacksSiblingsInOrder_data()
    {
        QTest::addColumn<QString>("parent");
        QTest::addColumn<QStringList>("order");
        const QJsonObject stacking = m_facts.table(u"stacking"_s);
        const QStringList names = m_facts.names();
        for (const QString &name : names) {
            const QStringList raised = stacking[name].toVariant().toStringList();
            const QStringList order = raised.isEmpty() ? m_facts.childrenOf(name) : raised;
            if (order.size() > 1) {
                QTest::newRow(name.toUtf8().constData()) << name << order;
            }
        }
    }

    void stacksSiblingsInOrder()
    {
        QFETCH(QString, parent);
        QFETCH(QStringList, order);
        Form form;
        const auto *widget = form.window.findChild<QWidget *>(parent);
        QVERIFY(widget);

        QCOMPARE(childNames(*widget), order);
    }

    void setsExactlyTheGivenFonts_data() { addRows({u"name"_s}); }

    void setsExactlyTheGivenFonts()
    {
        QFETCH(QJsonObject, facts);
        Form form;
        const QWidget *widget = widgetOf(form, facts);
        QVERIFY(widget);
        const QFont font = widget->font();
        const QJsonObject given = facts["font"_L1].toObject();

        const uint families = QFont::FamilyResolved | QFont::FamiliesResolved;
        const bool hasFamily = font.resolveMask() & families;
        const bool hasSize = font.resolveMask() & QFont::SizeResolved;
        QCOMPARE(hasFamily, given.contains("family"_L1));
        QCOMPARE(hasSize, given.contains("size"_L1));
        if (hasFamily) {
            QCOMPARE(font.families(), QStringList{given["family"_L1].toString()});
        }
        if (hasSize) {
            QCOMPARE(font.pointSize(), given["size"_L1].toInt());
        }
        QCOMPARE(font.weight(), QFont::Normal);
        QCOMPARE(font.resolveMask() & ~(families | QFont::SizeResolved | QFont::WeightResolved), 0U);
    }

    void showsTheGivenTexts_data() { addRows({u"texts"_s}); }

    void showsTheGivenTexts()
    {
        QFETCH(QJsonObject, facts);
        Form form;
        const QWidget *widget = widgetOf(form, facts);
        QVERIFY(widget);

        QCOMPARE(propertyFaults(*widget, facts["texts"_L1].toObject()), QStringList());
    }

    void keepsTheOutlineOfFreeTexts_data() { addRows({u"freeText"_s}); }

    void keepsTheOutlineOfFreeTexts()
    {
        QFETCH(QJsonObject, facts);
        Form form;
        const auto *label = qobject_cast<QLabel *>(widgetOf(form, facts));
        QVERIFY(label);
        QVERIFY(!label->text().trimmed().isEmpty());

        qsizetype from = 0;
        const QStringList parts = facts["textInOrder"_L1].toVariant().toStringList();
        for (const QString &part : parts) {
            const qsizetype at = label->text().indexOf(part, from);
            QVERIFY2(at >= 0, qUtf8Printable(part));
            from = at + part.size();
        }
        if (!parts.isEmpty()) {
            static const QRegularExpression italic(u"<i>|<em>|font-style: ?italic"_s);
            QVERIFY(label->text().contains(italic));
        }
    }

    void fillsTheChoosers_data() { addRows({u"items"_s}); }

    void fillsTheChoosers()
    {
        QFETCH(QJsonObject, facts);
        Form form;
        const auto *combo = qobject_cast<QComboBox *>(widgetOf(form, facts));
        QVERIFY(combo);

        QCOMPARE(itemTexts(*combo), facts["items"_L1].toVariant().toStringList());
        QCOMPARE(combo->currentIndex(), facts["index"_L1].toInt(-2));
    }

    void carriesTheGivenIcons_data() { addRows({u"icon"_s}); }

    void carriesTheGivenIcons()
    {
        QFETCH(QJsonObject, facts);
        const QString resource = facts["icon"_L1].toString();
        QVERIFY2(QFile::exists(resource), qUtf8Printable(resource));
        const QIcon expected(resource);
        const QSize size(64, 64);
        QVERIFY2(!expected.pixmap(size).isNull(), qUtf8Printable(resource));
        Form form;
        const QWidget *widget = widgetOf(form, facts);
        QVERIFY(widget);

        QCOMPARE(iconStream(iconOf(*widget)), iconStream(expected));
        QCOMPARE(iconOf(*widget).pixmap(size).toImage(), expected.pixmap(size).toImage());
    }

    void showsTheGivenPictures_data() { addRows({u"pixmap"_s}); }

    void showsTheGivenPictures()
    {
        QFETCH(QJsonObject, facts);
        const QPixmap expected(facts["pixmap"_L1].toString());
        QVERIFY(!expected.isNull());
        Form form;
        const auto *label = qobject_cast<QLabel *>(widgetOf(form, facts));
        QVERIFY(label);

        QCOMPARE(label->pixmap(Qt::ReturnByValue).toImage(), expected.toImage());
    }

    void startsInTheGivenState_data() { addRows({u"name"_s}); }

    void startsInTheGivenState()
    {
        QFETCH(QJsonObject, facts);
        Form form;
        const QWidget *widget = widgetOf(form, facts);
        QVERIFY(widget);

        QCOMPARE(propertyFaults(*widget, m_facts.properties(facts)), QStringList());
    }

    void setsTheExactSheets_data() { addRows({u"sheet"_s, u"textColour"_s}); }

    void setsTheExactSheets()
    {
        QFETCH(QJsonObject, facts);
        Form form;
        const QWidget *widget = widgetOf(form, facts);
        QVERIFY(widget);

        const QString textColour = facts["textColour"_L1].toString();
        const QString sheet = textColour.isEmpty()
            ? facts["sheet"_L1].toString()
            : u"background-color: transparent;\ncolor: %1;"_s.arg(textColour);
        QCOMPARE(widget->styleSheet(), sheet);
    }

    void declaresTheGivenStyles_data() { addRows({u"style"_s}); }

    void declaresTheGivenStyles()
    {
        QFETCH(QJsonObject, facts);
        Form form;
        const QWidget *widget = widgetOf(form, facts);
        QVERIFY(widget);

        QCOMPARE(m_facts.styleFaults(facts["style"_L1].toString(), *widget), QStringList());
    }

    void keepsThemeColoursToTheirWidgets_data()
    {
        QTest::addColumn<QString>("colour");
        QTest::addColumn<QStringList>("holders");
        const QJsonObject palette = m_facts.table(u"palette"_s);
        for (auto it = palette.begin(); it != palette.end(); ++it) {
            QTest::newRow(it.key().toUtf8().constData()) << it.key() << it.value().toVariant().toStringList();
        }
    }

    void keepsThemeColoursToTheirWidgets()
    {
        QFETCH(QString, colour);
        QFETCH(QStringList, holders);
        Form form;
        QStringList found;
        const QList<QJsonObject> widgets = m_facts.widgets();
        for (const QJsonObject &facts : widgets) {
            const QWidget *widget = widgetOf(form, facts);
            QVERIFY(widget);
            const qsizetype exact = widget->styleSheet().count(colour);
            QVERIFY2(squashed(widget->styleSheet()).count(squashed(colour)) == exact,
                qUtf8Printable(widget->objectName() + " spells the colour in another way"_L1));
            if (exact > 0) {
                found.append(widget->objectName());
            }
        }
        QCOMPARE(found, holders);
    }

    void translatesEveryText_data() { addRows({u"texts"_s, u"freeText"_s}); }

    void translatesEveryText()
    {
        QFETCH(QJsonObject, facts);
        Form form;
        const QWidget *widget = widgetOf(form, facts);
        QVERIFY(widget);
        QStringList properties = facts["texts"_L1].toObject().keys();
        if (properties.isEmpty()) {
            properties.append(u"text"_s);
        }
        QJsonObject expected;
        for (const QString &name : std::as_const(properties)) {
            const QString text = widget->property(name.toLatin1().constData()).toString();
            QVERIFY(!text.isEmpty());
            expected.insert(name, QuotingTranslator::quoted(text));
        }
        QStringList items = facts["items"_L1].toVariant().toStringList();
        items.replaceInStrings(QRegularExpression(u"^(.*)$"_s), u"«\\1»"_s);

        QuotingTranslator translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        form.ui.retranslateUi(&form.window);

        QCOMPARE(propertyFaults(*widget, expected), QStringList());
        if (const auto *combo = qobject_cast<const QComboBox *>(widget)) {
            QCOMPARE(itemTexts(*combo), items);
        }
    }
};

NUBARIA_TEST_MAIN(FormTest)
#include "formtest.moc"
