#include "core/manual.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

QString installedManual(const QString &programFolder)
{
    const QDir folder(programFolder);
    // Beside the program on Windows, in the folder for documents on Debian.
    for (const QString &place : {u"manual"_s, u"../share/doc/nubaria"_s}) {
        const QString page = QDir::cleanPath(folder.filePath(place + "/manual.es.html"_L1));
        if (QFileInfo(page).isFile()) {
            return page;
        }
    }
    return {};
}
