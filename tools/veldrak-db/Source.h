#pragma once

#include <memory>

#include <QString>

#include "platform/jet/FileHeader.h"
#include "platform/storage/Storage.h"

/// The file that the user named.
class Source
{
public:
    /// Asks for the password, or reads it from the input, if the file wants one. Throws StorageError::Missing if the
    /// file does not exist.
    Source(const QString &path, bool passwordFromInput);

    const QString &path() const { return m_path; }
    const QString &password() const { return m_password; }
    /// A single table of a folder, as dBASE has it.
    bool isDbf() const { return m_isDbf; }
    /// The file's name without folder and ending.
    QString tableName() const;
    /// The folder that a dBASE file's database is.
    QString folder() const;

    std::unique_ptr<storage::Database> open() const;
    /// The table of that name; without a name that of a dBASE file. Throws StorageError::NoSuchTable.
    storage::Table &table(storage::Database &database, const QString &name) const;

private:
    QString m_path;
    bool m_isDbf;
    QString m_password{};
};

/// The head of a Jet file; no password is needed for it.
jet::FileHeader readHeader(const QString &path);

/// The first line of the standard input, without its end.
QString passwordFromInput();
