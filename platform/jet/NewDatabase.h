#pragma once

#include <memory>

#include "platform/jet/PageFile.h"
#include "platform/storage/Storage.h"

namespace jet {

/// Makes a new, empty database. Leaves no file behind when that fails.
std::unique_ptr<PageFile> createDatabase(storage::FileSystem &files, const storage::OpenRequest &request,
                                         storage::FileVersion version);

} // namespace jet
