#include "support/palettes.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonObject readPalettes()
{
    QFile file(QFINDTESTDATA("../data/palettes.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no table of palettes");
    }
    return QJsonDocument::fromJson(file.readAll()).object();
}

} // namespace

QStringList paletteNames()
{
    return {u"Bugambilia"_s, u"Myosotis"_s, u"Helianthus"_s, u"Amapola"_s, u"Orchidaceae"_s, u"Jasminum"_s,
        u"Hydrangea"_s};
}

QStringList paletteColors(const QString &palette)
{
    static const QJsonObject palettes = readPalettes();
    const QStringList colors = palettes.value(palette).toVariant().toStringList();
    if (colors.size() != 15) {
        qFatal("not fifteen colours");
    }
    return colors;
}
