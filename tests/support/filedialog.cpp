#include "support/filedialog.h"

#include "support/replaced.h"

#include <QFileDialog>

namespace {

QList<AskedFile> &calls()
{
    static QList<AskedFile> made;
    return made;
}

} // namespace

void filedialog::clear()
{
    calls().clear();
    answer().clear();
}

QList<AskedFile> filedialog::asked()
{
    return calls();
}

QString &filedialog::answer()
{
    static QString path;
    return path;
}

// The program's own definition wins over that of Qt's library when the test is linked.
QString QFileDialog::getOpenFileName(QWidget *parent, const QString &caption, const QString &dir,
    const QString &filter, QString *selectedFilter, Options options)
{
    if (selectedFilter || options != Options()) {
        qFatal("the file dialog is asked for more than a file");
    }
    calls().append({parent, caption, dir, filter});
    return filedialog::answer();
}
NUBARIA_REPLACES("_ZN11QFileDialog15getOpenFileNameEP7QWidgetRK7QStringS4_S4_PS2_6QFlagsINS_6OptionEE");
