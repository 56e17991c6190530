#pragma once

#include <QLatin1StringView>
#include <QLibraryInfo>
#include <QVersionNumber>

/// What differs between the Qt 6.4 of Debian 12 and the Qt 6.8 of Debian 13, by the Qt that runs.
namespace qtversion {

inline bool isThatOfDebian12()
{
    return QLibraryInfo::version() < QVersionNumber(6, 8);
}

/// A menu without entries opens as an empty one, or not at all.
inline bool showsEmptyMenus()
{
    return isThatOfDebian12();
}

/// The megabytes that the pixels of a picture may take unless told otherwise.
inline int pictureLimit()
{
    return isThatOfDebian12() ? 128 : 256;
}

/// The name of a request's header that tells the server's, as it is sent.
inline QLatin1StringView hostHeader()
{
    return isThatOfDebian12() ? QLatin1StringView("Host") : QLatin1StringView("host");
}

} // namespace qtversion
