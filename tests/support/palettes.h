#pragma once

#include <QStringList>

/// The names of the palettes, as they are offered.
QStringList paletteNames();

/// The fifteen colours of a palette, read from the tests' own table.
QStringList paletteColors(const QString &palette);
