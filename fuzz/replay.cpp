#include "session.h"

#include <QDirIterator>
#include <QFile>

#include <iostream>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

/// The files themselves and those of the folders among the arguments, in a fixed order.
QStringList inputs(int argc, char **argv)
{
    QStringList files;
    for (int i = 1; i < argc; ++i) {
        const QFileInfo argument(QFile::decodeName(argv[i]));
        if (!argument.isDir()) {
            files.append(argument.filePath());
            continue;
        }
        QDirIterator folder(argument.filePath(), QDir::Files);
        while (folder.hasNext()) {
            files.append(folder.next());
        }
    }
    files.sort();
    return files;
}

bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::cerr << "replay: cannot read " << qPrintable(path) << std::endl;
        return false;
    }
    std::cout << qPrintable(path) << std::endl; // the last line names the input that ended the process
    const QByteArray bytes = file.readAll();
    LLVMFuzzerTestOneInput(
        reinterpret_cast<const std::uint8_t *>(bytes.constData()), static_cast<std::size_t>(bytes.size()));
    return true;
}

} // namespace

// Feeds a target the given files, and every file of the given folders, without libFuzzer.
int main(int argc, char **argv)
{
    const QStringList files = inputs(argc, argv);
    if (files.isEmpty()) {
        std::cerr << "replay: no input; name files, or folders that hold some" << std::endl;
        return 1;
    }
    LLVMFuzzerInitialize(&argc, &argv);
    for (const QString &file : files) {
        if (!replay(file)) {
            return 1;
        }
    }
    closeSession();
    std::cout << files.size() << " inputs, no promise broken" << std::endl;
    return 0;
}
