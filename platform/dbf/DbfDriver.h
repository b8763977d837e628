#pragma once

#include "platform/storage/FileSystem.h"
#include "platform/storage/Storage.h"

namespace dbf {

/// Opens folders of dBASE III/IV and FoxPro 2.x tables: the folder is the database, each .dbf file in it a table.
/// Passwords do not exist in this format; a given one is not looked at.
class DbfDriver final : public storage::Driver
{
public:
    /// `files` must outlive the driver and what it opens.
    explicit DbfDriver(storage::FileSystem &files = storage::systemFiles())
        : m_files(files)
    { }

    /// `request.path` is a folder. Its tables are opened, and looked at, when they are asked for.
    std::unique_ptr<storage::Database> open(const storage::OpenRequest &request) override;
    /// Makes the folder, which must not exist yet; there is one file version only.
    std::unique_ptr<storage::Database> create(const storage::OpenRequest &request,
                                              storage::FileVersion version) override;

private:
    storage::FileSystem &m_files;
};

} // namespace dbf
