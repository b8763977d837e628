// Looks for files the way a world without case and with wildcards does.
#include "platform/desktop/qt/DiskFiles.h"

#include <algorithm>
#include <filesystem>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include "platform/errors/RunTimeError.h"
#include "platform/storage/FileSystem.h"
#include "platform/storage/LocalPath.h"
#include "platform/storage/StorageError.h"

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

/// "Not there" and "empty" are answers only where we may look, at a drive that works.
void requireKnown(const QString &path)
{
    const std::filesystem::path name = QFileInfo(path).filesystemFilePath();
    std::error_code error;
    if (is_directory(name, error))
        std::filesystem::directory_iterator(name, error);
    if (!error || error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
        return;
    const bool forbidden = error == std::errc::permission_denied;
    throw RunTimeError(forbidden ? RunTimeError::PathAccess : RunTimeError::DeviceFailed,
                       storage::fileError(error.value(), path, u"Lesen"_s).text());
}

} // namespace

namespace desktop {

bool DiskFiles::exists(const QString &path) const
{
    const QString local = storage::existingPath(storage::localPath(path));
    const QFileInfo found(local);
    if (found.exists())
        return found.isFile();
    requireKnown(local);
    return false;
}

QStringList DiskFiles::list(const QString &pattern) const
{
    const QFileInfo wanted(storage::localPath(pattern));
    const QDir folder(storage::existingPath(wanted.path()));
    requireKnown(folder.path());
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
