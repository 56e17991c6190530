#include "support/formfacts.h"

#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDataStream>
#include <QDebug>
#include <QFile>
#include <QIcon>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMetaProperty>
#include <QRect>
#include <QRegularExpression>
#include <QSize>
#include <QVariant>
#include <QWidget>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct StyleRule
{
    QStringList selectors; // one empty selector for a sheet without braces
    QStringList declarations;
};

QStringList simplifiedParts(const QString &text, QChar separator)
{
    QStringList parts = text.split(separator);
    for (QString &part : parts) {
        part = part.simplified();
    }
    return parts;
}

QList<StyleRule> parseSheet(QString sheet)
{
    static const QRegularExpression comment(u"/\\*.*?\\*/"_s, QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression shortBackground(u"^background: "_s);
    sheet.remove(comment);
    if (!sheet.contains(u'{')) {
        sheet = u'{' + sheet + u'}';
    }
    QList<StyleRule> rules;
    const QStringList blocks = sheet.split(u'}');
    for (const QString &block : blocks) {
        const qsizetype brace = block.indexOf(u'{');
        if (brace < 0) {
            continue;
        }
        StyleRule rule{
            simplifiedParts(block.first(brace), u','), simplifiedParts(block.mid(brace + 1), u';')};
        rule.declarations.replaceInStrings(shortBackground, u"background-color: "_s);
        rules.append(rule);
    }
    return rules;
}

// "base" is the widget itself in its normal state, "=" asks for exactly this selector.
bool selects(const QString &selector, QString key, const QWidget &widget)
{
    const auto className = QString::fromLatin1(widget.metaObject()->className());
    const QString ownName = u'#' + widget.objectName();
    if (key == "any"_L1) {
        return true;
    }
    if (key == "base"_L1) {
        return QStringList{QString(), className, ownName, className + ownName}.contains(selector);
    }
    key.replace("{name}"_L1, widget.objectName());
    return key.startsWith(u'=') ? selector == key.mid(1) : selector.contains(key);
}

bool declares(const StyleRule &rule, const QString &entry)
{
    return std::any_of(
        rule.declarations.begin(), rule.declarations.end(), [&entry](const QString &declaration) {
            if (entry.endsWith(u'*')) {
                return declaration.startsWith(entry.chopped(1));
            }
            return entry.contains(": "_L1) ? declaration == entry : declaration.contains(entry);
        });
}

// A combo box, an editor or a view makes its own children.
bool isComposite(const QWidget &widget)
{
    return qobject_cast<const QComboBox *>(&widget) || qobject_cast<const QAbstractSpinBox *>(&widget)
        || qobject_cast<const QLineEdit *>(&widget) || qobject_cast<const QAbstractScrollArea *>(&widget);
}

QList<const QWidget *> formChildren(const QWidget &widget)
{
    QList<const QWidget *> found;
    if (isComposite(widget)) {
        return found;
    }
    const auto children = widget.findChildren<const QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *child : children) {
        if (!child->objectName().startsWith("qt_"_L1)) {
            found.append(child);
        }
    }
    return found;
}

QVariant expectedValue(const QMetaProperty &property, const QJsonValue &value)
{
    if (property.isEnumType()) {
        return property.enumerator().keysToValue(value.toString().toLatin1().constData());
    }
    const QJsonArray numbers = value.toArray();
    if (numbers.size() == 2) {
        return QSize(numbers[0].toInt(), numbers[1].toInt());
    }
    if (numbers.size() == 4) {
        return QRect(numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt());
    }
    return value.toVariant();
}

} // namespace

bool FormFacts::load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "no table of the form:" << file.errorString();
        return false;
    }
    QJsonParseError error;
    m_root = QJsonDocument::fromJson(file.readAll(), &error).object();
    if (error.error != QJsonParseError::NoError) {
        qWarning() << "the table of the form is damaged:" << error.errorString() << "at" << error.offset;
        return false;
    }
    const QJsonArray widgets = m_root["widgets"_L1].toArray();
    for (const auto &widget : widgets) {
        m_widgets.append(widget.toObject());
    }
    return !m_widgets.isEmpty();
}

QStringList FormFacts::names() const
{
    QStringList names;
    for (const QJsonObject &facts : m_widgets) {
        names.append(facts["name"_L1].toString());
    }
    return names;
}

QStringList FormFacts::childrenOf(const QString &parent) const
{
    QStringList names;
    for (const QJsonObject &facts : m_widgets) {
        if (facts["parent"_L1].toString() == parent) {
            names.append(facts["name"_L1].toString());
        }
    }
    return names;
}

QJsonObject FormFacts::properties(const QJsonObject &facts) const
{
    const QJsonObject defaults = table(u"defaults"_s);
    QJsonObject merged;
    for (const QJsonValue &part : {defaults["QWidget"_L1], defaults[facts["class"_L1].toString()],
             facts["state"_L1], facts["texts"_L1]}) {
        const QJsonObject properties = part.toObject();
        for (auto it = properties.begin(); it != properties.end(); ++it) {
            merged.insert(it.key(), it.value());
        }
    }
    return merged;
}

// An entry is a list of alternatives, one of the table's words or the text of a declaration.
QStringList FormFacts::alternatives(const QJsonValue &entry) const
{
    const QJsonValue choice = entry.isString() ? table(u"words"_s)[entry.toString()] : entry;
    return choice.isArray() ? choice.toVariant().toStringList() : QStringList{entry.toString()};
}

QStringList FormFacts::styleFaults(const QString &style, const QWidget &widget) const
{
    const QList<StyleRule> rules = parseSheet(widget.styleSheet());
    const auto declared = [&rules, &widget](const QString &key, const QString &entry) {
        return std::any_of(rules.begin(), rules.end(), [&](const StyleRule &rule) {
            const auto matches = [&](const QString &selector) {
                return selects(selector, key, widget);
            };
            return std::any_of(rule.selectors.begin(), rule.selectors.end(), matches)
                && declares(rule, entry);
        });
    };
    const QJsonObject demands = table(u"styles"_s)[style].toObject();
    if (demands.isEmpty()) {
        return {"no style called "_L1 + style};
    }
    const QString like = demands["like"_L1].toString();
    QStringList faults = like.isEmpty() ? QStringList() : styleFaults(like, widget);
    for (auto it = demands.begin(); it != demands.end(); ++it) {
        const bool forbidden = it.key() == "never"_L1;
        const QString key = forbidden ? u"any"_s : it.key();
        const QJsonArray entries = it.value().toArray();
        for (const auto &entry : entries) {
            const QStringList choices = alternatives(entry);
            const bool found = std::any_of(
                choices.begin(), choices.end(), [&](const QString &choice) { return declared(key, choice); });
            if (found == forbidden) {
                faults.append(it.key() + " { "_L1 + choices.join(" or "_L1) + " }"_L1);
            }
        }
    }
    return faults;
}

QStringList propertyFaults(const QObject &object, const QJsonObject &expected)
{
    QStringList faults;
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        const int index = object.metaObject()->indexOfProperty(it.key().toLatin1().constData());
        const QMetaProperty property = object.metaObject()->property(index);
        const QVariant actual
            = property.isEnumType() ? property.read(&object).toInt() : property.read(&object);
        const QVariant wanted = expectedValue(property, it.value());
        if (!property.isValid() || actual != wanted) {
            faults.append(
                u"%1: %2 instead of %3"_s.arg(it.key(), QDebug::toString(actual), QDebug::toString(wanted)));
        }
    }
    return faults;
}

QStringList childNames(const QWidget &widget)
{
    QStringList names;
    for (const QWidget *child : formChildren(widget)) {
        names.append(child->objectName());
    }
    return names;
}

QStringList descendantNames(const QWidget &widget)
{
    QStringList names;
    for (const QWidget *child : formChildren(widget)) {
        names.append(child->objectName());
        names.append(descendantNames(*child));
    }
    return names;
}

QStringList itemTexts(const QComboBox &combo)
{
    QStringList texts;
    for (int row = 0; row < combo.count(); ++row) {
        texts.append(combo.itemText(row));
    }
    return texts;
}

QByteArray iconStream(const QIcon &icon)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << icon;
    return bytes;
}

QString squashed(const QString &text)
{
    static const QRegularExpression blanks(u"\\s"_s);
    return text.toLower().remove(blanks);
}
