#pragma once

#include <vector>

#include "platform/jet/PageFile.h"
#include "platform/jet/PageStore.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"

namespace jet {

/// Reads the definition that starts on `page`. Throws StorageError::Damaged when the pages do not form one.
TableDef readTableDef(PageStore &store, const TextCodec &codec, PageNo page);

/// All pages of the definition that starts on `page`, in order; Damaged when they run in a circle.
std::vector<PageNo> tableDefPages(PageStore &store, PageNo page);

/// Writes a definition to its page and as many further ones as it needs; surplus pages are released.
void writeTableDef(PageFile &file, const TextCodec &codec, const TableDef &def);

/// The counters of a definition, which change with the rows; they are always read from and written to the file.
class TableCounters
{
public:
    TableCounters(PageStore &store, PageNo page);

    std::uint32_t rowCount() const;
    void addRows(std::int32_t difference);
    std::uint32_t lastAutonumber() const;
    void setLastAutonumber(std::uint32_t number);
    /// Adds 1 to the number of distinct keys of a real index.
    void countDistinctKey(std::size_t index);
    void setDistinctKeys(std::size_t index, std::uint32_t count);

private:
    std::size_t distinctKeysAt(std::size_t index) const;

    PageStore &m_store;
    PageNo m_page;
};

} // namespace jet
