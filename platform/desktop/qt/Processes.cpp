// The programs that run, as /proc shows them.
#include "platform/desktop/qt/Processes.h"

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

// The executable, and what the program was called as: under an emulator the executable is the emulator's.
QStringList namesOf(const QString &process)
{
    QFile commandLine(process + u"/cmdline"_s);
    QStringList names{QFileInfo(process + u"/exe"_s).symLinkTarget()};
    if (commandLine.open(QFile::ReadOnly)) // else it has ended meanwhile
        names += QString::fromLocal8Bit(commandLine.readAll().split('\0').first()).replace(u'\\', u'/');
    for (QString &name : names)
        name = name.section(u'/', -1);
    return names;
}

} // namespace

namespace desktop {

std::optional<bool> isProgramRunning(const QString &nameBegins)
{
    const QString us = u"/proc/%1"_s.arg(getpid());
    if (!QFileInfo::exists(us))
        return std::nullopt;
    for (const QFileInfo &process : QDir(u"/proc"_s).entryInfoList({u"[1-9]*"_s}, QDir::Dirs)) {
        if (process.ownerId() != getuid() || process.filePath() == us)
            continue;
        for (const QString &name : namesOf(process.filePath())) {
            if (name.startsWith(nameBegins, Qt::CaseInsensitive))
                return true;
        }
    }
    return false;
}

} // namespace desktop
