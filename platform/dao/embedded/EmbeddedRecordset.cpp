// Movement, fields and editing of a recordset, as DAO has them.
#include "platform/dao/embedded/EmbeddedRecordset.h"

#include <algorithm>

#include "platform/dao/embedded/Convert.h"
#include "platform/dao/embedded/Errors.h"

namespace dao {

class EmbeddedRecordset::ResultField : public Field
{
public:
    ResultField(EmbeddedRecordset &owner, std::size_t column)
        : m_owner(owner)
        , m_column(column)
    { }

    QString Name() const override { return m_owner.rows().columns()[m_column].name; }
    int Type() const override { return m_owner.rows().columns()[m_column].type; }
    int Attributes() const override
    {
        return m_owner.rows().columns()[m_column].stored.autonumber ? dbAutoIncrField : 0;
    }
    QVariant Value() const override { return m_owner.value(m_column); }
    void setValue(const QVariant &value) override { m_owner.setValue(m_column, value); }

private:
    EmbeddedRecordset &m_owner;
    std::size_t m_column;
};

EmbeddedRecordset::EmbeddedRecordset(std::shared_ptr<Connection> connection, std::unique_ptr<RowSource> rows)
    : m_connection(std::move(connection))
    , m_rows(std::move(rows))
{
    for (std::size_t i = 0; i < m_rows->columns().size(); ++i)
        m_fields.push_back(std::make_unique<ResultField>(*this, i));
    m_visited = m_rows->has(0) ? 1 : 0;
}

EmbeddedRecordset::~EmbeddedRecordset() = default;

RowSource &EmbeddedRecordset::rows() const
{
    if (!m_rows)
        throw daoError(DaoError::ObjectClosed);
    static_cast<void>(m_connection->database()); // closed with its database
    return *m_rows;
}

int EmbeddedRecordset::RecordCount() const
{
    const RowSource &source = rows();
    return static_cast<int>(m_sawLast ? source.count() : m_visited);
}

bool EmbeddedRecordset::Eof() const
{
    return !rows().has(m_row);
}

void EmbeddedRecordset::moveTo(qsizetype row)
{
    m_editing = false; // what was set but not written is dropped
    m_edited.clear();
    m_row = row;
    rows().moved();
    if (rows().has(row))
        m_visited = std::max(m_visited, row + 1);
}

void EmbeddedRecordset::MoveFirst()
{
    if (!rows().has(0))
        throw daoError(DaoError::NoCurrentRecord);
    moveTo(0);
}

void EmbeddedRecordset::MoveLast()
{
    if (!rows().has(Keyset::last))
        throw daoError(DaoError::NoCurrentRecord);
    moveTo(Keyset::last);
    m_sawLast = true;
}

void EmbeddedRecordset::MoveNext()
{
    requireRecord();
    moveTo(m_row == Keyset::last ? rows().count() : m_row + 1);
}

int EmbeddedRecordset::FieldCount() const
{
    rows();
    return static_cast<int>(m_fields.size());
}

Field &EmbeddedRecordset::Fields(int index)
{
    rows();
    if (index < 0 || index >= FieldCount())
        throw daoError(DaoError::ItemNotFound, QString::number(index));
    return *m_fields[static_cast<std::size_t>(index)];
}

Field &EmbeddedRecordset::Fields(const QString &name)
{
    const auto &columns = rows().columns();
    const auto found = std::ranges::find_if(
        columns, [&](const ResultColumn &column) { return column.name.compare(name, Qt::CaseInsensitive) == 0; });
    if (found == columns.end())
        throw daoError(DaoError::ItemNotFound, name);
    return *m_fields[static_cast<std::size_t>(found - columns.begin())];
}

void EmbeddedRecordset::requireRecord() const
{
    if (Eof())
        throw daoError(DaoError::NoCurrentRecord);
}

void EmbeddedRecordset::Edit()
{
    requireRecord();
    rows().requireEditable();
    m_edited.clear();
    m_editing = true;
}

void EmbeddedRecordset::Update()
{
    RowSource &source = rows();
    if (!m_editing)
        throw daoError(number::EditMissing);
    std::vector<storage::Assignment> values;
    for (const auto &[column, value] : m_edited)
        values.push_back({source.columns()[column].position, value});
    if (!values.empty())
        source.update(m_row, values);
    m_editing = false;
    m_edited.clear();
}

QVariant EmbeddedRecordset::value(std::size_t column) const
{
    requireRecord();
    const auto edited = m_edited.find(column);
    if (edited != m_edited.end())
        return variantOf(edited->second, rows().columns()[column].stored.type);
    return rows().value(m_row, column);
}

void EmbeddedRecordset::setValue(std::size_t column, const QVariant &value)
{
    const ResultColumn &target = rows().columns()[column];
    if (!m_editing)
        throw daoError(number::EditMissing);
    if (target.stored.autonumber)
        throw daoError(number::NotUpdatableField, target.name);
    try {
        storage::Value fitting = coerced(valueOf(value, target.name), target.stored);
        rows().requireStorable(column, fitting);
        m_edited[column] = std::move(fitting);
    } catch (const storage::StorageError &error) {
        // A number that is too large is, for a single field, a value that cannot become the field's type.
        const bool isTooLarge = error.kind() == storage::StorageError::OutOfRange;
        throw daoError(isTooLarge ? storage::StorageError(storage::StorageError::WrongType, error.text(), error.item())
                                  : error,
                       Doing::Work);
    }
}

void EmbeddedRecordset::Close()
{
    rows();
    m_rows.reset();
}

} // namespace dao
