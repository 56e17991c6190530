#pragma once

#include <QIODevice>
#include <QJsonArray>
#include <QString>

#include <optional>

/// What came of opening the task file for reading.
struct TaskFileContents
{
    QJsonArray tasks; ///< empty as well where the file is not JSON or holds no array
    std::optional<QString> error; ///< why the file could not be opened
};

/// `rmc.json` in the home directory, computed anew at each call.
QString taskFilePath();
bool taskFileExists();

/// Size in bytes; 0 when there is no file.
qint64 taskFileSize();

/// Reads the whole file. With `ReadWrite` it opens only a file that could be written too, and creates a
/// missing one.
TaskFileContents readTaskFile(QIODevice::OpenMode mode = QIODevice::ReadOnly);

/// Replaces the file's content in place. The bytes are complete before the file is truncated.
/// \return why the file could not be opened; a failing write goes unnoticed.
std::optional<QString> writeTaskFile(const QJsonArray &tasks);

/// Makes an empty file. \return why it could not be made.
std::optional<QString> createTaskFile();

/// Two decimals, a point and a unit from "B" to "TB" in steps of 1024. The unit is chosen before rounding, so
/// that 1048575 bytes are "1024.00 KB".
QString fileSizeText(qint64 bytes);
