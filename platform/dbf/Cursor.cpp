// The walk over a table's records, a block at a time.
#include "platform/dbf/Cursor.h"

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::RowId;
using storage::StorageError;

namespace dbf {

namespace {

constexpr qint64 blockSize = 262'144;

} // namespace

Cursor::Cursor(Table &table, RowId first, RowId last)
    : m_table(table)
    , m_id(first - 1)
    , m_last(last)
{ }

bool Cursor::next()
{
    while (m_id < m_last) {
        ++m_id;
        if (m_id >= m_blockEnd)
            readBlock();
        if (!isDeleted(m_table, record(), m_id))
            return true;
    }
    return false;
}

storage::Value Cursor::value(int column) const
{
    return m_table.valueOf(m_table.layout().fields.at(std::size_t(column)), record(), m_id);
}

bool Cursor::readText(int column, QString &into) const
{
    const Layout &layout = m_table.layout();
    const Field &field = layout.fields.at(std::size_t(column));
    return decodeText(field, record().subspan(std::size_t(field.offset), std::size_t(field.width)), *layout.codepage,
                      into);
}

storage::Bytes Cursor::record() const
{
    const auto length = std::size_t(m_table.layout().recordLength);
    return storage::bytesOf(m_block).subspan(std::size_t(m_id - m_blockBegin) * length, length);
}

void Cursor::readBlock()
{
    const Layout &layout = m_table.layout();
    const RowId count = std::min(m_last - m_id + 1, std::max<RowId>(1, blockSize / layout.recordLength));
    m_block.resize(count * layout.recordLength);
    m_table.file().read(layout.positionOf(m_id),
                        std::as_writable_bytes(std::span(m_block.data(), std::size_t(m_block.size()))));
    m_blockBegin = m_id;
    m_blockEnd = m_id + count;
}

bool isDeleted(const Table &table, storage::Bytes record, RowId id)
{
    switch (std::to_integer<char>(record.front())) {
    case ' ':
        return false;
    case '*':
        return true;
    default:
        throw StorageError(
            StorageError::Damaged,
            u"%1, Satz %2: Der Satz beginnt nicht mit einer Löschmarke"_s.arg(table.file().path()).arg(id));
    }
}

} // namespace dbf
