#pragma once

#include <QString>
#include <QStringList>

/**
 * The least that each operation on the task file can do: what it must read and write, by Qt's own functions,
 * and what it asks of the values. Nothing is shown. `path` is a task file of the floor's own.
 */
namespace floors {

/// Read and parsed, and the titles and ids of the tasks whose title contains the text.
qsizetype search(const QString &path, const QString &text);
/// Read and parsed, and the titles and ids by title.
qsizetype order(const QString &path);
/// One task more: read, written with its titles and ids taken, and read again to be counted.
qsizetype save(const QString &path);
/// One task replaced: read, written, read for the list and read to be counted.
qsizetype update(const QString &path, const QString &id);
/// One task less: read, written, read for the list and read twice to be counted.
qsizetype finish(const QString &path, const QString &id);

} // namespace floors
