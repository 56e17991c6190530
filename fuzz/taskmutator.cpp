#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <random>

using namespace Qt::Literals::StringLiterals;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);

namespace {

using Random = std::minstd_rand;

qsizetype below(Random &random, qsizetype limit)
{
    return static_cast<qsizetype>(random() % static_cast<std::size_t>(limit));
}

QString anyKey(Random &random)
{
    const QStringList keys
        = {u"id"_s, u"title"_s, u"description"_s, u"category"_s, u"dateLimit"_s, u"urgency"_s, u"otra"_s};
    return keys.at(below(random, keys.size()));
}

/// A value that the program knows, or one of a type that it does not expect.
QJsonValue anyValue(Random &random)
{
    const QJsonArray values
        = {u""_s, u"Urgente"_s, u"Alta"_s, u"Media"_s, u"Baja"_s, u"Muy baja"_s, u"Personal"_s, u"Trabajo"_s,
            u"Escuela"_s, u"Otro"_s, u"05-03-2026"_s, u"06-03-2026"_s, u"07-03-2026"_s, u"08-03-2026"_s,
            u"29-02-2025"_s, u"01-01-0001"_s, QJsonValue(), true, 7, 0.5, QJsonArray(), QJsonObject()};
    return values.at(below(random, values.size()));
}

QString mutatedText(const QString &text)
{
    constexpr qsizetype room = 64;
    QByteArray bytes = text.toUtf8();
    const qsizetype size = bytes.size();
    bytes.resize(size + room);
    bytes.resize(static_cast<qsizetype>(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t *>(bytes.data()),
        static_cast<std::size_t>(size), static_cast<std::size_t>(bytes.size()))));
    return QString::fromUtf8(bytes);
}

void mutateRecord(QJsonArray &tasks, Random &random)
{
    const qsizetype index = below(random, tasks.size());
    const QString key = anyKey(random);
    QJsonObject record = tasks.at(index).toObject();
    switch (below(random, 5)) {
    case 0:
        record.remove(key);
        break;
    case 1:
        record.insert(key, anyValue(random));
        break;
    case 2:
        record.insert(key, tasks.at(below(random, tasks.size())).toObject().value(key));
        break;
    default:
        record.insert(key, mutatedText(record.value(key).toString()));
    }
    tasks.replace(index, record);
}

void mutateArray(QJsonArray &tasks, Random &random)
{
    const qsizetype index = tasks.isEmpty() ? 0 : below(random, tasks.size());
    switch (tasks.isEmpty() ? 0 : below(random, 4)) {
    case 0:
        tasks.insert(index, tasks.isEmpty() ? QJsonObject() : tasks.at(below(random, tasks.size())));
        break;
    case 1:
        tasks.removeAt(index);
        break;
    case 2:
        tasks.replace(index, anyValue(random));
        break;
    default:
        tasks.append(tasks.takeAt(index));
    }
}

} // namespace

// Half of the time the bytes change, else the tasks in them: most changed bytes are not JSON any more.
extern "C" std::size_t LLVMFuzzerCustomMutator(
    std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
    Random random(seed);
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isArray() || below(random, 2) == 0) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    QJsonArray tasks = document.array();
    if (tasks.isEmpty() || below(random, 4) == 0) {
        mutateArray(tasks, random);
    } else {
        mutateRecord(tasks, random);
    }
    const auto layout = below(random, 2) == 0 ? QJsonDocument::Compact : QJsonDocument::Indented;
    const QByteArray mutated = QJsonDocument(tasks).toJson(layout);
    if (static_cast<std::size_t>(mutated.size()) > maxSize) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    std::copy(mutated.begin(), mutated.end(), data);
    return static_cast<std::size_t>(mutated.size());
}
