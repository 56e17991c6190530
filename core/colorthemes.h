#pragma once

#include <QList>
#include <QString>

/// One colour of the form's own sheets and what a theme puts in its place, both byte for byte.
struct ColorReplacement
{
    QString from;
    QString to;
};

/// The fifteen replacements of theme 1 to 6, in the order in which they are made; none for any other index,
/// which stands for the form's own colours. Built once, on first use.
QList<ColorReplacement> themeReplacements(int index);

/// The sheet with every occurrence of each colour replaced, one replacement after the other.
QString recolored(QString sheet, const QList<ColorReplacement> &replacements);
