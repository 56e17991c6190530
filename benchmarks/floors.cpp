#include "benchmarks/floors.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonArray read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("the floor's task file cannot be read");
    }
    return QJsonDocument::fromJson(file.readAll()).array();
}

void write(const QString &path, const QJsonArray &tasks)
{
    const QByteArray bytes = QJsonDocument(tasks).toJson(QJsonDocument::Indented);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("the floor's task file cannot be written");
    }
}

QString text(const QJsonObject &task, QLatin1StringView key)
{
    return task.value(key).toString();
}

qsizetype list(const QJsonArray &tasks)
{
    QStringList titles;
    QStringList ids;
    for (const auto &record : tasks) {
        const QJsonObject task = record.toObject();
        titles.append(text(task, "title"_L1));
        ids.append(text(task, "id"_L1));
    }
    return titles.size() + ids.size();
}

QJsonObject sample(const QString &id)
{
    return {{u"id"_s, id}, {u"title"_s, u"Revisar el informe"_s}, {u"description"_s, u"Antes del lunes"_s},
        {u"category"_s, u"Trabajo"_s}, {u"dateLimit"_s, u"05-03-2026"_s}, {u"urgency"_s, u"Media"_s}};
}

qsizetype place(const QJsonArray &tasks, const QString &id)
{
    const auto *const key = "id";
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        if (tasks.at(i).toObject().value(QLatin1StringView(key)).toString() == id) {
            return i;
        }
    }
    qFatal("the floor's task is not there");
}

} // namespace

qsizetype floors::search(const QString &path, const QString &searched)
{
    const QJsonArray tasks = read(path);
    QStringList titles;
    QStringList ids;
    for (const auto &record : tasks) {
        const QJsonObject task = record.toObject();
        const QString title = text(task, "title"_L1);
        if (title.contains(searched, Qt::CaseInsensitive)) {
            titles.append(title);
            ids.append(text(task, "id"_L1));
        }
    }
    return titles.size() + ids.size();
}

qsizetype floors::order(const QString &path)
{
    const QJsonArray tasks = read(path);
    std::vector<std::pair<QString, QString>> rows;
    rows.reserve(static_cast<std::size_t>(tasks.size()));
    for (const auto &record : tasks) {
        const QJsonObject task = record.toObject();
        rows.emplace_back(text(task, "title"_L1), text(task, "id"_L1));
    }
    std::ranges::sort(rows, {}, &std::pair<QString, QString>::first);
    QStringList titles;
    QStringList ids;
    for (auto &[title, id] : rows) {
        titles.append(std::move(title));
        ids.append(std::move(id));
    }
    return titles.size() + ids.size();
}

qsizetype floors::save(const QString &path)
{
    QJsonArray tasks = read(path);
    tasks.append(sample(u"{00000000-0000-4000-8000-000000000000}"_s));
    write(path, tasks);
    return list(tasks) + read(path).size();
}

qsizetype floors::update(const QString &path, const QString &id)
{
    QJsonArray tasks = read(path);
    tasks.replace(place(tasks, id), sample(id));
    write(path, tasks);
    return list(read(path)) + read(path).size();
}

qsizetype floors::finish(const QString &path, const QString &id)
{
    QJsonArray tasks = read(path);
    tasks.removeAt(place(tasks, id));
    write(path, tasks);
    return list(read(path)) + read(path).size() + read(path).size();
}
