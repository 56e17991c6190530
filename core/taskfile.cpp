#include "core/taskfile.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QStandardPaths>

#include <array>

using namespace Qt::Literals::StringLiterals;

QString taskFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::HomeLocation) + "/rmc.json"_L1;
}

bool taskFileExists()
{
    return QFileInfo::exists(taskFilePath());
}

qint64 taskFileSize()
{
    const QFileInfo file(taskFilePath());
    return file.exists() ? file.size() : 0;
}

TaskFileContents readTaskFile(QIODevice::OpenMode mode)
{
    QFile file(taskFilePath());
    if (!file.open(mode)) {
        return {.tasks = {}, .error = file.errorString()};
    }
    return {.tasks = QJsonDocument::fromJson(file.readAll()).array(), .error = std::nullopt};
}

std::optional<QString> writeTaskFile(const QJsonArray &tasks)
{
    const QByteArray bytes = QJsonDocument(tasks).toJson(QJsonDocument::Indented);
    QFile file(taskFilePath());
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString();
    }
    file.write(bytes);
    return std::nullopt;
}

std::optional<QString> createTaskFile()
{
    QFile file(taskFilePath());
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString();
    }
    return std::nullopt;
}

QString fileSizeText(qint64 bytes)
{
    constexpr std::array units = {"B"_L1, "KB"_L1, "MB"_L1, "GB"_L1, "TB"_L1};
    constexpr double step = 1024.0;
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (value >= step && unit + 1 < units.size()) {
        value /= step;
        ++unit;
    }
    return QString::number(value, 'f', 2) + u' ' + units.at(unit);
}
