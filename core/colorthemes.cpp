#include "core/colorthemes.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t themeCount = 7;
using Color = std::array<const char *, themeCount>;

// One row a colour, in the order in which they are replaced; one column a theme, the form's own first:
// Bugambilia, Myosotis, Helianthus, Amapola, Orchidaceae, Jasminum, Hydrangea. Red, green and blue alone
// stand for "rgba(..., 255)".
// clang-format off
constexpr std::array colors = {
    Color{"#d199e5", "#99d6e8", "#e5c799", "#e59999", "#e599c9", "#e5dd99", "#99e5d1"},
    Color{"#9D39E3", "#2ba9e0", "#e3c239", "#e3393d", "#e339b0", "#e3d739", "#39e3ab"},
    Color{"#E0C8E3", "#C8E3E6", "#E3DCC8", "#E3C8C9", "#E3C8D9", "#E3E0C8", "#C8E3DC"},
    Color{"#D8BADB", "#BAD8DB", "#DBD0BA", "#DBBABA", "#DBBAD3", "#DBD8BA", "#BADBD3"},
    Color{"#7200c1", "#005fc1", "#c17800", "#c10007", "#c10091", "#c1b800", "#00c193"},
    Color{"#932ED9", "#2E7FD9", "#D9A02E", "#D92E33", "#D92EA8", "#D9CE2E", "#2ED9AC"},
    Color{"#FCE3FF", "#E3FBFF", "#FFF9E3", "#FFE3E4", "#FFE3F5", "#FFFEE3", "#E3FFF7"},
    Color{"#8A2BE2", "#2B8AE2", "#E2A82B", "#E22B30", "#E22BA0", "#E2DA2B", "#2BE2B0"},
    Color{"74, 20, 140",   "20, 90, 140",   "140, 90, 20",   "140, 20, 25",   "140, 20, 110",  "140, 133, 20",  "20, 140, 109"},
    Color{"255, 199, 232", "199, 236, 255", "255, 238, 199", "255, 199, 201", "255, 199, 240", "255, 253, 199", "199, 255, 236"},
    Color{"255, 196, 251", "196, 232, 251", "255, 235, 196", "255, 196, 199", "255, 196, 240", "255, 252, 196", "196, 255, 242"},
    Color{"239, 194, 255", "194, 235, 255", "255, 239, 194", "255, 194, 196", "255, 194, 245", "254, 255, 194", "194, 255, 239"},
    Color{"218, 212, 255", "212, 245, 255", "255, 250, 218", "255, 213, 214", "255, 212, 245", "253, 255, 218", "212, 255, 246"},
    Color{"198, 141, 224", "141, 200, 224", "224, 190, 141", "224, 141, 145", "224, 141, 205", "221, 224, 141", "141, 224, 197"},
    Color{"167, 121, 175", "121, 160, 175", "175, 152, 121", "175, 121, 124", "175, 121, 160", "172, 175, 121", "121, 175, 151"},
};
// clang-format on

QString colorText(const char *color)
{
    const QLatin1StringView text(color);
    return text.startsWith('#'_L1) ? QString(text) : u"rgba(%1, 255)"_s.arg(text);
}

QList<ColorReplacement> replacementsOfTheme(std::size_t theme)
{
    QList<ColorReplacement> replacements;
    for (const Color &color : colors) {
        replacements.append({.from = colorText(color.front()), .to = colorText(color.at(theme))});
    }
    return replacements;
}

} // namespace

QList<ColorReplacement> themeReplacements(int index)
{
    static const auto table = [] {
        std::array<QList<ColorReplacement>, themeCount> lists;
        for (std::size_t theme = 1; theme < themeCount; ++theme) {
            lists.at(theme) = replacementsOfTheme(theme);
        }
        return lists;
    }();
    const auto theme = static_cast<std::size_t>(index); // larger than any other, of an index below 0
    return theme < themeCount ? table.at(theme) : QList<ColorReplacement>();
}

QString recolored(QString sheet, const QList<ColorReplacement> &replacements)
{
    for (const auto &[from, to] : replacements) {
        sheet.replace(from, to, Qt::CaseSensitive);
    }
    return sheet;
}
