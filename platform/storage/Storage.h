#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include <QString>
#include <QStringList>

#include "platform/storage/StorageError.h"
#include "platform/storage/Value.h"

/// What a file format offers to the database engine: tables of rows, found by scan, by row number or through an index.
namespace storage {

/// The column types of the Jet engine; a format uses those it has.
enum class Type {
    Boolean,
    Byte, // 0 to 255
    Integer, // 16 bit
    Long, // 32 bit
    Currency,
    Single,
    Double,
    DateTime,
    Binary, // up to 255 bytes (Jet 4: 510)
    Text, // up to 255 characters
    LongBinary,
    Memo,
    Guid,
    Numeric // exact decimal, up to 28 digits
};

struct Column {
    QString name;
    Type type = Type::Text;
    int size = 0; ///< Text: characters; Binary: bytes; Numeric: digits in all; otherwise 0
    int scale = 0; ///< Numeric: digits behind the point
    bool required = false;
    bool zeroLengthAllowed = true; ///< Text and Memo
    bool autonumber = false; ///< Long, counted up by the table; Guid, made by it
    QString defaultValue{}; ///< as an expression ("0", "\"D\"", "Now()"); empty: none
    QString validationRule{}; ///< as an expression; empty: none
    QString validationText{};
};

struct IndexColumn {
    int column = 0; ///< position in TableSchema::columns
    bool descending = false;
};

struct Index {
    QString name;
    std::vector<IndexColumn> columns;
    bool unique = false;
    bool primary = false;
    bool required = false; ///< refuses Null in its columns
    bool ignoreNulls = false; ///< rows whose indexed columns are all Null are not in the index
    bool usable = true; ///< false: the driver cannot walk it (kept all the same)
};

struct TableSchema {
    QString name;
    std::vector<Column> columns;
    std::vector<Index> indexes{};

    /// Position of a column by name, case-insensitively; nothing if there is none.
    std::optional<int> find(const QString &column) const;
};

/// An enforced or merely drawn connection between two tables; column lists go pairwise.
struct Relationship {
    QString name;
    QString table; ///< the referenced ("one") side
    QStringList columns;
    QString foreignTable; ///< the referring ("many") side
    QStringList foreignColumns;
    bool enforced = true;
    bool cascadeUpdates = false;
    bool cascadeDeletes = false;
};

/// A row's address in its table: at least 0, stable while the row is neither deleted nor the file compacted.
using RowId = std::int64_t;

/// One end of an index range: values for the index's first columns, in index order.
struct Bound {
    std::vector<Value> key;
    bool inclusive = true;
};

/// The rows whose keys lie between the two ends, in the order of the index (or backwards).
struct KeyRange {
    int index = 0; ///< position in TableSchema::indexes
    std::optional<Bound> lower{}; ///< in the sense of the index's own order
    std::optional<Bound> upper{};
    bool backwards = false;
};

/// One column's new content.
struct Assignment {
    int column = 0;
    Value value{};
};

/// Walks over rows. Stands before the first row when made. A table must outlive its cursors, and a write to the table
/// ends them: make a new one.
class Cursor
{
public:
    virtual ~Cursor() = default;

    /// Moves to the next row; false when there is none. Throws StorageError, and never just stops at a fault.
    virtual bool next() = 0;
    virtual RowId rowId() const = 0;
    /// The value of one column of the current row, decoded when asked for.
    virtual Value value(int column) const = 0;
    /// Puts the value of a column into `into`, whose room is used again, if it is a text that the cursor has at hand.
    /// False: see value().
    virtual bool readText(int column, QString &into) const;
};

/// A table of an open database. Owned by it.
class Table
{
public:
    virtual ~Table() = default;

    virtual const TableSchema &schema() const = 0;
    /// The number of rows as the format records it (dBASE: with the deleted ones); good for estimates.
    virtual std::int64_t rowEstimate() const = 0;

    virtual std::unique_ptr<Cursor> scan() = 0;
    /// A cursor over an index range; only for an index that is `usable`.
    virtual std::unique_ptr<Cursor> range(const KeyRange &range) = 0;
    /// A cursor that already stands on the row; nullptr if the row does not exist. What other programs write shows from
    /// the next Database::table() on.
    virtual std::unique_ptr<Cursor> row(RowId id) = 0;

    /// Throws what a write would throw for this value by itself: WrongType, OutOfRange, TooLong, NotEncodable. Whether
    /// the row and the database allow it (Required, rules, indexes, relationships) shows at the write.
    virtual void requireStorable(const Assignment &value) const = 0;
    /// Adds a row; columns not named get their default, else Null. Returns its address.
    virtual RowId insert(std::span<const Assignment> values) = 0;
    virtual void update(RowId id, std::span<const Assignment> values) = 0;
    virtual void remove(RowId id) = 0;
};

/// Groups writes: everything since its making is undone at its end unless committed. One at a time per database.
class WriteScope
{
public:
    virtual ~WriteScope() = default;
    virtual void commit() = 0;
};

/// An open database file (Jet) or folder of tables (dBASE).
class Database
{
public:
    virtual ~Database() = default;

    /// Throws why nothing can be written, if so: ReadOnly, FolderReadOnly.
    virtual void requireWritable() const = 0;
    /// The names of the users' tables; no system tables.
    virtual QStringList tableNames() const = 0;
    /// The table of that name, case-insensitively; nullptr if there is none. The database owns it.
    virtual Table *table(const QString &name) = 0;

    /// The order of texts in this format: below, equal to or above 0. Jet: General order, without case.
    virtual int compareTexts(QStringView left, QStringView right) const = 0;
    /// Whether `=` and `Like` tell capitals from small letters (dBASE: yes; Jet: no).
    virtual bool caseSensitive() const = 0;

    virtual std::unique_ptr<WriteScope> beginWrite() = 0;

    virtual void createTable(const TableSchema &schema) = 0;
    /// `index` names columns by position in the table's schema.
    virtual void createIndex(const QString &table, const Index &index) = 0;
    virtual void createRelationship(const Relationship &relationship) = 0;
    virtual void dropTable(const QString &name) = 0;
    virtual std::vector<Relationship> relationships() const = 0; ///< of the users' tables
};

struct OpenRequest {
    QString path;
    QString password{};
    bool readOnly = false;
};

enum class FileVersion { Jet3, Jet4 };

/// Opens and makes the databases of one format.
class Driver
{
public:
    virtual ~Driver() = default;

    virtual std::unique_ptr<Database> open(const OpenRequest &request) = 0;
    /// Makes a new, empty database and opens it for writing; AlreadyExists if there is a file of that name.
    virtual std::unique_ptr<Database> create(const OpenRequest &request, FileVersion version) = 0;
};

} // namespace storage
