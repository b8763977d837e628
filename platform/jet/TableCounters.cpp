// The counters in a definition's first page, changed in place.
#include "platform/jet/Format.h"
#include "platform/jet/TableDefFile.h"
#include "platform/storage/Bytes.h"

using storage::MutableBytes;
using storage::readLE;
using storage::writeLE;

namespace jet {

TableCounters::TableCounters(PageStore &store, PageNo page)
    : m_store(store)
    , m_page(page)
{ }

std::uint32_t TableCounters::rowCount() const
{
    return readLE<std::uint32_t>(*m_store.read(m_page), formatOf(m_store).rowCountAt);
}

void TableCounters::addRows(std::int32_t difference)
{
    // The counter lags behind in some files made by other programs; it must not wrap.
    const std::int64_t rows = std::int64_t{rowCount()} + difference;
    writeLE(MutableBytes(m_store.modify(m_page)), formatOf(m_store).rowCountAt,
            static_cast<std::uint32_t>(rows < 0 ? 0 : rows));
}

std::uint32_t TableCounters::lastAutonumber() const
{
    return readLE<std::uint32_t>(*m_store.read(m_page), formatOf(m_store).autonumberAt);
}

void TableCounters::setLastAutonumber(std::uint32_t number)
{
    writeLE(MutableBytes(m_store.modify(m_page)), formatOf(m_store).autonumberAt, number);
}

void TableCounters::countDistinctKey(std::size_t index)
{
    setDistinctKeys(index, readLE<std::uint32_t>(*m_store.read(m_page), distinctKeysAt(index)) + 1);
}

void TableCounters::setDistinctKeys(std::size_t index, std::uint32_t count)
{
    writeLE(MutableBytes(m_store.modify(m_page)), distinctKeysAt(index), count);
}

std::size_t TableCounters::distinctKeysAt(std::size_t index) const
{
    const Format &format = formatOf(m_store);
    return format.indexStatisticsAt + index * format.indexStatisticsSize + 4;
}

} // namespace jet
