#include "mainwindow/colorthemes.h"

#include "mainwindow/mainwindow.h"
#include "mainwindow/preferences.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t colorCount = 15;
constexpr std::size_t themeCount = 7;
using Colors = std::array<QLatin1StringView, colorCount>;

// The colours of the form's own sheets, "Bugambilia": first what the theme table replaces, in this order.
constexpr Colors formColors = {
    "#d199e5"_L1,
    "#9D39E3"_L1,
    "#E0C8E3"_L1,
    "#D8BADB"_L1,
    "#7200c1"_L1,
    "#932ED9"_L1,
    "#FCE3FF"_L1,
    "#8A2BE2"_L1,
    "rgba(74, 20, 140, 255)"_L1,
    "rgba(255, 199, 232, 255)"_L1,
    "rgba(255, 196, 251, 255)"_L1,
    "rgba(239, 194, 255, 255)"_L1,
    "rgba(218, 212, 255, 255)"_L1,
    "rgba(198, 141, 224, 255)"_L1,
    "rgba(167, 121, 175, 255)"_L1,
};

// The same places in each other theme; the form's own needs no replacing.
constexpr std::array<Colors, themeCount> themeColors = {
    Colors{},
    Colors{
        // Myosotis
        "#99d6e8"_L1,
        "#2ba9e0"_L1,
        "#C8E3E6"_L1,
        "#BAD8DB"_L1,
        "#005fc1"_L1,
        "#2E7FD9"_L1,
        "#E3FBFF"_L1,
        "#2B8AE2"_L1,
        "rgba(20, 90, 140, 255)"_L1,
        "rgba(199, 236, 255, 255)"_L1,
        "rgba(196, 232, 251, 255)"_L1,
        "rgba(194, 235, 255, 255)"_L1,
        "rgba(212, 245, 255, 255)"_L1,
        "rgba(141, 200, 224, 255)"_L1,
        "rgba(121, 160, 175, 255)"_L1,
    },
    Colors{
        // Helianthus
        "#e5c799"_L1,
        "#e3c239"_L1,
        "#E3DCC8"_L1,
        "#DBD0BA"_L1,
        "#c17800"_L1,
        "#D9A02E"_L1,
        "#FFF9E3"_L1,
        "#E2A82B"_L1,
        "rgba(140, 90, 20, 255)"_L1,
        "rgba(255, 238, 199, 255)"_L1,
        "rgba(255, 235, 196, 255)"_L1,
        "rgba(255, 239, 194, 255)"_L1,
        "rgba(255, 250, 218, 255)"_L1,
        "rgba(224, 190, 141, 255)"_L1,
        "rgba(175, 152, 121, 255)"_L1,
    },
    Colors{
        // Amapola
        "#e59999"_L1,
        "#e3393d"_L1,
        "#E3C8C9"_L1,
        "#DBBABA"_L1,
        "#c10007"_L1,
        "#D92E33"_L1,
        "#FFE3E4"_L1,
        "#E22B30"_L1,
        "rgba(140, 20, 25, 255)"_L1,
        "rgba(255, 199, 201, 255)"_L1,
        "rgba(255, 196, 199, 255)"_L1,
        "rgba(255, 194, 196, 255)"_L1,
        "rgba(255, 213, 214, 255)"_L1,
        "rgba(224, 141, 145, 255)"_L1,
        "rgba(175, 121, 124, 255)"_L1,
    },
    Colors{
        // Orchidaceae
        "#e599c9"_L1,
        "#e339b0"_L1,
        "#E3C8D9"_L1,
        "#DBBAD3"_L1,
        "#c10091"_L1,
        "#D92EA8"_L1,
        "#FFE3F5"_L1,
        "#E22BA0"_L1,
        "rgba(140, 20, 110, 255)"_L1,
        "rgba(255, 199, 240, 255)"_L1,
        "rgba(255, 196, 240, 255)"_L1,
        "rgba(255, 194, 245, 255)"_L1,
        "rgba(255, 212, 245, 255)"_L1,
        "rgba(224, 141, 205, 255)"_L1,
        "rgba(175, 121, 160, 255)"_L1,
    },
    Colors{
        // Jasminum
        "#e5dd99"_L1,
        "#e3d739"_L1,
        "#E3E0C8"_L1,
        "#DBD8BA"_L1,
        "#c1b800"_L1,
        "#D9CE2E"_L1,
        "#FFFEE3"_L1,
        "#E2DA2B"_L1,
        "rgba(140, 133, 20, 255)"_L1,
        "rgba(255, 253, 199, 255)"_L1,
        "rgba(255, 252, 196, 255)"_L1,
        "rgba(254, 255, 194, 255)"_L1,
        "rgba(253, 255, 218, 255)"_L1,
        "rgba(221, 224, 141, 255)"_L1,
        "rgba(172, 175, 121, 255)"_L1,
    },
    Colors{
        // Hydrangea
        "#99e5d1"_L1,
        "#39e3ab"_L1,
        "#C8E3DC"_L1,
        "#BADBD3"_L1,
        "#00c193"_L1,
        "#2ED9AC"_L1,
        "#E3FFF7"_L1,
        "#2BE2B0"_L1,
        "rgba(20, 140, 109, 255)"_L1,
        "rgba(199, 255, 236, 255)"_L1,
        "rgba(196, 255, 242, 255)"_L1,
        "rgba(194, 255, 239, 255)"_L1,
        "rgba(212, 255, 246, 255)"_L1,
        "rgba(141, 224, 197, 255)"_L1,
        "rgba(121, 175, 151, 255)"_L1,
    },
};

QList<ColorReplacement> replacementsOfTheme(std::size_t theme)
{
    QList<ColorReplacement> replacements;
    for (std::size_t i = 0; i < colorCount; ++i) {
        replacements.append({formColors.at(i), themeColors.at(theme).at(i)});
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

void MainWindow::captureBaseStyleSheets(QWidget *root)
{
    if (!root) {
        return;
    }
    if (!root->styleSheet().isEmpty()) {
        baseStyleSheets.insert(root, root->styleSheet());
    }
    const QList<QWidget *> descendants = root->findChildren<QWidget *>();
    for (QWidget *widget : descendants) {
        if (!widget->styleSheet().isEmpty()) {
            baseStyleSheets.insert(widget, widget->styleSheet());
        }
    }
}

void MainWindow::applyColorTheme(int index)
{
    const QList<ColorReplacement> replacements = themeReplacements(index);
    for (auto entry = baseStyleSheets.cbegin(); entry != baseStyleSheets.cend(); ++entry) {
        QWidget *widget = entry.key();
        if (!widget) {
            continue;
        }
        const QString sheet = recolored(entry.value(), replacements);
        // Setting a sheet polishes the widget and all its descendants anew, at three times the cost of a
        // whole pass without that. One that has this very sheet already would come out the same.
        if (widget->styleSheet() != sheet) {
            widget->setStyleSheet(sheet);
        }
    }
    themeSettings.setValue(preferences::colorIndex, index);
}
