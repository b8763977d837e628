// Looks for files the way a world without case and with wildcards does.
#include "platform/desktop/qt/DiskFiles.h"

#include <algorithm>

#include <QDir>
#include <QRegularExpression>

#include "platform/storage/LocalPath.h"

using namespace Qt::StringLiterals;

namespace {

// `*` and `?` only: brackets are ordinary letters in file names.
QRegularExpression expressionOf(const QString &wildcards)
{
    QString expression = QRegularExpression::escape(wildcards);
    expression.replace(u"\\*"_s, u".*"_s).replace(u"\\?"_s, u"."_s);
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::CaseInsensitiveOption
                                  | QRegularExpression::DotMatchesEverythingOption);
}

} // namespace

namespace desktop {

bool DiskFiles::exists(const QString &path) const
{
    return QFileInfo::exists(storage::existingPath(storage::localPath(path)));
}

QStringList DiskFiles::list(const QString &pattern) const
{
    const QFileInfo wanted(storage::localPath(pattern));
    const QDir folder(storage::existingPath(wanted.path()));
    QStringList names = folder.entryList(QDir::Files).filter(expressionOf(wanted.fileName()));
    std::sort(names.begin(), names.end(), [](const QString &left, const QString &right) {
        const int order = left.compare(right, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : left < right;
    });
    return names;
}

QString DiskFiles::shortPath(const QString &path) const
{
    return path; // no file system here keeps a second name
}

} // namespace desktop
