// Runs a target over all files of the folders and files named as arguments: what a fuzzer once found stays mended.
#include <cstdio>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "fuzz/Target.h"

using namespace Qt::StringLiterals;

namespace {

void replay(const QString &path)
{
    QFile file(path);
    fuzz::require(file.open(QIODevice::ReadOnly), path + u": "_s + file.errorString());
    std::printf("%s\n", qPrintable(path));
    std::fflush(stdout); // a crash must not hide which one it was
    const QByteArray bytes = file.readAll();
    fuzz::run(std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
}

} // namespace

int main(int count, char **arguments)
{
    fuzz::run({});
    for (int i = 1; i < count; ++i) {
        const QString path = QFile::decodeName(arguments[i]);
        if (!QFileInfo(path).isDir()) {
            replay(path);
            continue;
        }
        for (const QFileInfo &file : QDir(path).entryInfoList(QDir::Files))
            replay(file.filePath());
    }
    return 0;
}
