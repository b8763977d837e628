#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/jet/Catalog.h"
#include "platform/jet/JetDatabase.h"
#include "platform/jet/RowScan.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TableSchema.h"
#include "platform/storage/Storage.h"

namespace jet {

/// A table of an open database. A row's id is its home address as one number.
class JetTable final : public storage::Table
{
public:
    JetTable(JetDatabase &database, const CatalogEntry &entry);

    const storage::TableSchema &schema() const override;
    std::int64_t rowEstimate() const override;
    std::unique_ptr<storage::Cursor> scan() override;
    std::unique_ptr<storage::Cursor> range(const storage::KeyRange &range) override;
    std::unique_ptr<storage::Cursor> row(storage::RowId id) override;
    void requireStorable(const storage::Assignment &value) const override;
    storage::RowId insert(std::span<const storage::Assignment> values) override;
    void update(storage::RowId id, std::span<const storage::Assignment> values) override;
    void remove(storage::RowId id) override;

    /// What the file says about the table. Kept by those who need it past the next call.
    struct Known {
        std::uint64_t generation;
        TableDef def;
        SchemaMap map;
    };
    using KnownPtr = std::shared_ptr<const Known>;
    /// Read anew when the definition or the whole file has changed. Throws NoSuchTable when the table is gone.
    KnownPtr known() const;
    /// The same as of the last look at the file.
    KnownPtr knownAsSeen() const;
    /// Forgets what was read of the definition.
    void definitionChanged() { m_known.reset(); }

    const CatalogEntry &entry() const { return m_entry; }
    JetDatabase &database() const { return m_database; }
    /// The file's name and the table's, for messages.
    QString place() const;

private:
    KnownPtr readDefinition() const;
    void requireUsersTable() const;
    /// Runs a change within a write scope.
    storage::RowId change(const std::function<storage::RowId(const Known &)> &work);

    JetDatabase &m_database;
    CatalogEntry m_entry;
    mutable KnownPtr m_known{};
    mutable storage::TableSchema m_schema{}; // its users hold references
};

} // namespace jet
