#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QByteArray>
#include <QString>

#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Value.h"

namespace jet {

/// A row of MSysObjects.
struct CatalogEntry {
    RowPointer row{};
    std::uint32_t id = 0; ///< of a table: its definition's page
    std::uint32_t parent = 0;
    QString name{};
    std::int16_t type = 0;
    std::uint32_t flags = 0;
    QByteArray owner{};

    bool isUserTable() const;
};

/// The definition of a listed table. Throws StorageError::Damaged also for a user's table whose definition is a system
/// table's.
TableDef readTableDef(PageStore &store, const TextCodec &codec, const CatalogEntry &table);

/// The objects of the database, as MSysObjects lists them. Read anew on demand; holds nothing but the store.
class Catalog
{
public:
    Catalog(PageStore &store, const TextCodec &codec);

    const TableDef &def() const { return m_def; }
    std::vector<CatalogEntry> entries() const;
    /// Whether an object that was read before is still listed, under the same name.
    bool has(const CatalogEntry &entry) const;
    /// The property list of an entry; empty if it has none.
    QByteArray properties(RowPointer row) const;

private:
    void checkEntry(const CatalogEntry &entry) const;
    bool isListed(const IndexDef &names, const CatalogEntry &entry) const;

    PageStore &m_store;
    const TextCodec &m_codec;
    TableDef m_def;
};

/// Reads a column of a row of a system table, by name; Null also for a column that the table lacks.
class SystemRow
{
public:
    SystemRow(PageStore &store, const TextCodec &codec, const TableDef &def, const class RowView &row);

    storage::Value value(QStringView column) const;
    std::int64_t number(QStringView column) const; ///< 0 for Null
    QString text(QStringView column) const;
    QByteArray bytes(QStringView column) const;

private:
    PageStore &m_store;
    const TextCodec &m_codec;
    const TableDef &m_def;
    const RowView &m_row;
};

} // namespace jet
