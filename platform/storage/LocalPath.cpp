// Paths of a world with backslashes and without case, on a machine that may have neither.
#include "platform/storage/LocalPath.h"

#include <QDir>
#include <QFileInfo>

namespace storage {

QString localPath(const QString &path)
{
    QString local = path;
    return local.replace(u'\\', u'/');
}

QString existingPath(const QString &path)
{
    const QFileInfo wanted(path);
    if (wanted.exists())
        return path;
    const QDir folder = wanted.dir();
    const QStringList entries = folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        if (entry.compare(wanted.fileName(), Qt::CaseInsensitive) == 0)
            return folder.filePath(entry);
    }
    return path;
}

} // namespace storage
