#pragma once

#include <QString>

namespace storage {

/// A path as this machine's file system takes it: a path written with backslashes means the same file everywhere.
QString localPath(const QString &path);

/// The file or folder `path` with its last part's letters in whatever case the folder has them, since the files come
/// from a world in which case does not count; `path` itself if it exists as written or nothing matches.
QString existingPath(const QString &path);

} // namespace storage
