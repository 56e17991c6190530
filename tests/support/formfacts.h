#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QStringList>

class QComboBox;
class QIcon;
class QObject;
class QWidget;

/// What the form must be, widget by widget, read from a JSON table that knows nothing of mainwindow.ui.
class FormFacts final
{
public:
    /// Reads the table; false, with a warning, when there is none.
    bool load(const QString &path);

    /// The window first, then its members in their order.
    QList<QJsonObject> widgets() const { return m_widgets; }
    QStringList names() const;
    QStringList childrenOf(const QString &parent) const;
    /// Every property that is fixed for the widget: those of its class, then its own state and texts.
    QJsonObject properties(const QJsonObject &facts) const;
    QJsonObject table(const QString &name) const { return m_root[name].toObject(); }

    /**
     * What the widget's style sheet lacks of a style of the table, or has beside it.
     *
     * A style lists, by selector, declarations ("width: 8px") or parts of one ("#d199e5", "color: rgb(*").
     * The selector is part of one in the sheet, or all of it after "=". "base" stands for the widget itself,
     * "any" for every rule, "never" for what no rule may declare, "like" for the style this one extends.
     * Of a list within the list, or of a name among the table's words, one choice is enough.
     */
    QStringList styleFaults(const QString &style, const QWidget &widget) const;

private:
    QStringList alternatives(const QJsonValue &entry) const;

    QJsonObject m_root;
    QList<QJsonObject> m_widgets;
};

/// The properties that differ from the table, each as "name: actual instead of expected".
QStringList propertyFaults(const QObject &object, const QJsonObject &expected);

/// Object names of the form's widgets right below `widget`, in stacking order; Qt's own widgets are left out.
QStringList childNames(const QWidget &widget);
/// The same for the whole tree below it, depth first.
QStringList descendantNames(const QWidget &widget);

QStringList itemTexts(const QComboBox &combo);
/// The stream of an icon holds its file names, which tell two alike pictures apart.
QByteArray iconStream(const QIcon &icon);
/// Without letter case and blanks: what a careless spelling of a colour has in common with the right one.
QString squashed(const QString &text);
