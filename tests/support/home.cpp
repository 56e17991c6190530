#include "support/home.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSettings>
#include <QUuid>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString organisation = u"Quenoli"_s;
const QString mainStore = u"Quenoli"_s;
const QString themeStore = u"QuenoliTheme"_s;

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("cannot write a file of the test");
    }
}

QVariant storedValue(const QString &application, const QString &key)
{
    QSettings store(organisation, application);
    store.sync();
    return store.value(key);
}

void storeValue(const QString &application, const QString &key, const QVariant &value)
{
    QSettings store(organisation, application);
    store.setValue(key, value);
    store.sync();
}

} // namespace

void home::reset()
{
    // Not what Qt makes of it: on Windows that is another folder when this one is missing.
    QDir folder(qEnvironmentVariable("HOME"));
    folder.removeRecursively();
    QDir().mkpath(folder.path());
    for (const QString &application : {mainStore, themeStore}) {
        QSettings store(organisation, application);
        store.clear();
        store.sync();
    }
}

QString home::taskFile()
{
    return QDir::homePath() + "/rmc.json"_L1;
}

void home::writeBytes(const QByteArray &bytes)
{
    writeFile(taskFile(), bytes);
}

QString home::writePicture(const QByteArray &bytes)
{
    const QString path = QDir::homePath() + "/foto.png"_L1;
    writeFile(path, bytes);
    return path;
}

QByteArray home::bytes()
{
    QFile file(taskFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void home::blockTaskFile()
{
    if (!QDir().mkpath(taskFile())) {
        qFatal("cannot put a directory in the task file's place");
    }
}

QString home::openError(QIODevice::OpenMode mode)
{
    QFile file(taskFile());
    return file.open(mode) ? QString() : file.errorString();
}

void home::writeTasks(const QJsonArray &tasks)
{
    writeBytes(QJsonDocument(tasks).toJson(QJsonDocument::Indented));
}

QJsonArray home::tasks()
{
    return QJsonDocument::fromJson(bytes()).array();
}

QJsonObject home::completeRecord()
{
    return {{u"id"_s, u"{0b1c}"_s}, {u"title"_s, u"Pagar la luz"_s},
        {u"description"_s, u"Recibo en el cajón"_s}, {u"category"_s, u"Personal"_s},
        {u"dateLimit"_s, u"05-03-2026"_s}, {u"urgency"_s, u"Muy baja"_s}};
}

QJsonObject home::record(const QString &id, const QString &title)
{
    return {{u"id"_s, id}, {u"title"_s, title}, {u"description"_s, u"Descripción de "_s + title},
        {u"category"_s, u"Trabajo"_s}, {u"dateLimit"_s, u"05-03-2026"_s}, {u"urgency"_s, u"Media"_s}};
}

QVariant home::preference(const QString &key)
{
    return storedValue(mainStore, key);
}

QVariant home::themePreference(const QString &key)
{
    return storedValue(themeStore, key);
}

void home::setPreference(const QString &key, const QVariant &value)
{
    storeValue(mainStore, key, value);
}

void home::setThemePreference(const QString &key, const QVariant &value)
{
    storeValue(themeStore, key, value);
}
