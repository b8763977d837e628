#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "platform/jet/Catalog.h"
#include "platform/jet/PageFile.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Storage.h"

namespace jet {

class JetTable;
class SchemaWriter;

/// Opens and makes Jet 3 and Jet 4 files.
class JetDriver final : public storage::Driver
{
public:
    /// `files` must outlive the driver and what it opens.
    explicit JetDriver(storage::FileSystem &files = storage::systemFiles())
        : m_files(files)
    { }

    std::unique_ptr<storage::Database> open(const storage::OpenRequest &request) override;
    std::unique_ptr<storage::Database> create(const storage::OpenRequest &request,
                                              storage::FileVersion version) override;

private:
    storage::FileSystem &m_files;
};

/// An open Jet file. Owns the file and its tables.
///
/// Threads  only the one that opened it.
class JetDatabase final : public storage::Database
{
public:
    explicit JetDatabase(std::unique_ptr<PageFile> file);
    ~JetDatabase() override;

    void requireWritable() const override { m_file->requireWritable(); }
    QStringList tableNames() const override;
    storage::Table *table(const QString &name) override;
    int compareTexts(QStringView left, QStringView right) const override;
    bool caseSensitive() const override { return false; }
    std::unique_ptr<storage::WriteScope> beginWrite() override;
    void createTable(const storage::TableSchema &schema) override;
    void createIndex(const QString &table, const storage::Index &index) override;
    void createRelationship(const storage::Relationship &relationship) override;
    void dropTable(const QString &name) override;
    std::vector<storage::Relationship> relationships() const override;

    PageFile &file() const { return *m_file; }
    const TextCodec &codec() const { return m_codec; }
    /// The table whose definition starts on that page, system tables included. Throws Damaged if the catalog has none.
    JetTable &tableAt(PageNo definition);
    /// The catalog's objects, as of the last write by whoever it was.
    const std::vector<CatalogEntry> &entries() const;
    /// Forgets what was read of the catalog and of definitions; to be called after a change of them.
    void catalogChanged();

private:
    bool isSystemTable(const QString &name) const;
    std::vector<storage::Relationship> allRelationships() const;
    const CatalogEntry *findTable(const QString &name) const;
    /// Throws NoSuchTable.
    const CatalogEntry &requireTable(const QString &name) const;
    JetTable &tableOf(const CatalogEntry &entry);
    void changeSchema(const std::function<void(SchemaWriter &)> &change);

    std::unique_ptr<PageFile> m_file;
    TextCodec m_codec;
    mutable std::vector<CatalogEntry> m_entries{};
    mutable std::uint64_t m_entriesGeneration = 0;
    mutable bool m_entriesRead = false;
    std::map<PageNo, std::unique_ptr<JetTable>> m_tables;
    std::vector<std::unique_ptr<JetTable>> m_formerTables; // cursors may still refer to them
};

} // namespace jet
