#pragma once

#include <QLatin1StringView>

/// The two stores of `QSettings` (native format, user scope) and every key in them, all at top level.
namespace preferences {

inline constexpr QLatin1StringView organisation{"Quenoli"};
inline constexpr QLatin1StringView mainStore{"Quenoli"};
inline constexpr QLatin1StringView themeStore{"QuenoliTheme"};

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
