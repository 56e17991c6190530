#pragma once

#include <QLatin1StringView>
#include <QSettings>

/// The two stores of `QSettings` (native format, user scope) and every key in them, all at top level.
namespace preferences {

/// Has the store hold the truth value or number. One that it holds already is not written again: every start
/// sets what it has just read, and each writing waits for the disk.
void keep(QSettings &store, QLatin1StringView key, const QVariant &value);

/// The main store; every object of it sees what the others have written.
inline QSettings mainStore()
{
    return QSettings(QStringLiteral("Quenoli"), QStringLiteral("Quenoli"));
}

/// The theme store.
inline QSettings themeStore()
{
    return QSettings(QStringLiteral("Quenoli"), QStringLiteral("QuenoliTheme"));
}

inline constexpr QLatin1StringView simpleNotify{"simpleNotify"}; ///< bool, default true
inline constexpr QLatin1StringView advancedNotify{"advancedNotify"}; ///< bool, default false
inline constexpr QLatin1StringView changeClose{"changeClose"}; ///< bool, default false
inline constexpr QLatin1StringView colorIndex{"colorIndex"}; ///< int, default 0, in the theme store
inline constexpr QLatin1StringView textEmphasis{"textEmphasis"}; ///< int, default 0
inline constexpr QLatin1StringView displayMessageIndex{"displayMessageIndex"}; ///< int, default 0
inline constexpr QLatin1StringView firstName{"firstName"}; ///< text, default empty
inline constexpr QLatin1StringView email{"email"}; ///< text, default empty
inline constexpr QLatin1StringView profilePicturePath{"profilePicturePath"}; ///< path, default empty
inline constexpr QLatin1StringView soundThemeIndex{"soundThemeIndex"}; ///< int, written but never read
inline constexpr QLatin1StringView lastActivityDate{"lastActivityDate"}; ///< date, read but never written

} // namespace preferences
