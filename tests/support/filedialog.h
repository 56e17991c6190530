#pragma once

#include <QList>
#include <QString>

class QWidget;

/// One call of `QFileDialog::getOpenFileName`, which every test program replaces.
struct AskedFile
{
    const QWidget *parent = nullptr;
    QString caption;
    QString folder;
    QString filter;

    bool operator==(const AskedFile &other) const = default;
};

namespace filedialog {

void clear();
QList<AskedFile> asked();

/// What the person chooses; empty for "cancel".
QString &answer();

} // namespace filedialog
