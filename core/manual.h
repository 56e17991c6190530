#pragma once

#include <QString>

/// The page with the manual that was installed with the program in this folder; empty where there is none.
QString installedManual(const QString &programFolder);
