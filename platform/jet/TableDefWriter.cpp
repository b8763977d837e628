// Writing table definitions; TableDefReader.cpp describes them.
#include "platform/jet/TableDefFile.h"

#include <algorithm>

#include "platform/jet/Format.h"
#include "platform/jet/PageFile.h"
#include "platform/storage/Bytes.h"

using storage::MutableBytes;
using storage::writeLE;

namespace jet {

namespace {

constexpr std::size_t pageHeader = 8;
constexpr std::uint16_t definitionTag = 0x0102;
constexpr std::uint16_t jet3PageTag = 0x4356; // "VC"
// Constants of Jet 4 in front of columns, indexes and the definition itself.
constexpr std::uint32_t definitionConstant = 1625;
constexpr std::uint32_t indexConstant = 1923;
constexpr std::uint8_t noCascade = 4; // what the cascade bytes say when there is no relationship

/// Puts the stream together from front to back.
class Builder
{
public:
    Builder(const TableDef &def, const FileHeader &header, const TextCodec &codec)
        : m_def(def)
        , m_header(header)
        , m_codec(codec)
    { }

    std::vector<std::byte> build()
    {
        zeros(pageHeader);
        fixedPart();
        for (const IndexDef &index : m_def.indexes) {
            put(index.entriesAtCompact);
            put(index.distinctKeys);
            zeros(format().indexStatisticsSize - 8);
        }
        for (const ColumnDef &column : m_def.columns)
            putColumn(column);
        for (const ColumnDef &column : m_def.columns)
            putName(column.name);
        for (const IndexDef &index : m_def.indexes)
            putIndex(index);
        for (const LogicalIndexDef &index : m_def.logicalIndexes)
            putLogicalIndex(index);
        for (const LogicalIndexDef &index : m_def.logicalIndexes)
            putName(index.name);
        putLongColumns();
        writeLE(MutableBytes(m_stream), pageHeader, static_cast<std::uint32_t>(m_stream.size()));
        return std::move(m_stream);
    }

private:
    bool jet4() const { return m_header.jet4; }
    const Format &format() const { return jet4() ? jet4Format : jet3Format; }
    template <typename T> void put(T number)
    {
        const std::size_t at = m_stream.size();
        m_stream.resize(at + sizeof(T));
        writeLE(MutableBytes(m_stream), at, number);
    }
    void zeros(std::size_t count) { m_stream.resize(m_stream.size() + count); }
    void putConstant(std::uint32_t constant)
    {
        if (jet4())
            put(constant);
    }

    void fixedPart()
    {
        zeros(4); // the length, filled in at the end
        putConstant(definitionConstant);
        put(m_def.rowCount);
        put(m_def.lastAutonumber);
        putConstant(1);
        if (jet4())
            zeros(12);
        put(m_def.type);
        put(m_def.columnsEver);
        put(m_def.variableSlots);
        put(static_cast<std::uint16_t>(m_def.columns.size()));
        put(static_cast<std::uint32_t>(m_def.logicalIndexes.size()));
        put(static_cast<std::uint32_t>(m_def.indexes.size()));
        put(m_def.ownedMap.number());
        put(m_def.freeMap.number());
    }

    void putColumn(const ColumnDef &column)
    {
        put(static_cast<std::uint8_t>(column.type));
        putConstant(definitionConstant);
        put(column.number);
        put(column.slot);
        put(column.ordinal);
        if (!jet4())
            put(std::uint16_t{column.sortVersion});
        if (jet4() && column.type == ColumnType::Numeric) {
            put(column.precision);
            put(column.scale);
            zeros(2);
        } else {
            put(column.sortLcid);
            put(jet4() ? static_cast<std::uint16_t>(column.sortVersion << 8) : m_header.codePage);
        }
        put(column.flags);
        if (jet4()) {
            put(column.extendedFlags);
            zeros(4);
        }
        put(column.fixedOffset);
        put(column.length);
    }

    void putName(const QString &name)
    {
        const QByteArray bytes = m_codec.encode(name);
        if (jet4())
            put(static_cast<std::uint16_t>(bytes.size()));
        else
            put(static_cast<std::uint8_t>(bytes.size()));
        const auto view = std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
        m_stream.insert(m_stream.end(), view.begin(), view.end());
    }

    void putIndex(const IndexDef &index)
    {
        putConstant(indexConstant);
        for (std::size_t i = 0; i < maxIndexColumns; ++i) {
            const bool used = i < index.columns.size();
            put(used ? index.columns[i].column : std::uint16_t{0xFFFF});
            put(static_cast<std::uint8_t>(used && index.columns[i].ascending ? 1 : 0));
        }
        put(index.map.number());
        put(index.rootPage);
        if (jet4())
            zeros(4);
        put(index.flags);
        if (jet4())
            zeros(5);
    }

    void putLogicalIndex(const LogicalIndexDef &index)
    {
        const bool related = index.side != LogicalIndexDef::Side::None;
        putConstant(definitionConstant);
        put(index.number);
        put(index.real);
        put(static_cast<std::uint8_t>(index.side));
        put(index.partner.value_or(0xFFFFFFFF));
        put(index.partnerTable);
        put(related ? std::uint8_t{index.cascadeUpdates} : noCascade);
        put(related ? std::uint8_t{index.cascadeDeletes} : noCascade);
        put(static_cast<std::uint8_t>(index.kind));
        if (jet4())
            zeros(4);
    }

    void putLongColumns()
    {
        for (const ColumnDef &column : m_def.columns) {
            if (!column.isLong())
                continue;
            put(column.number);
            put(column.longOwnedMap.number());
            put(column.longFreeMap.number());
        }
        put(std::uint16_t{0xFFFF});
    }

    const TableDef &m_def;
    const FileHeader &m_header;
    const TextCodec &m_codec;
    std::vector<std::byte> m_stream{};
};

/// The pages for a stream of that length: those that the definition has, more or fewer as needed.
std::vector<PageNo> pagesFor(PageFile &file, const TableDef &def, std::size_t length)
{
    const std::size_t payload = file.pageSize() - pageHeader;
    const std::size_t needed = std::max<std::size_t>(1, (length - pageHeader + payload - 1) / payload);
    const bool isNew = storage::readLE<std::uint16_t>(*file.read(def.page), 0) != definitionTag;
    std::vector<PageNo> pages = isNew ? std::vector{def.page} : tableDefPages(file, def.page);
    while (pages.size() > needed) {
        file.release(pages.back());
        pages.pop_back();
    }
    while (pages.size() < needed)
        pages.push_back(file.allocate());
    return pages;
}

} // namespace

void writeTableDef(PageFile &file, const TextCodec &codec, const TableDef &def)
{
    const std::vector<std::byte> stream = Builder(def, file.header(), codec).build();
    const std::vector<PageNo> pages = pagesFor(file, def, stream.size());
    const std::size_t payload = file.pageSize() - pageHeader;
    std::size_t from = pageHeader;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const std::size_t size = std::min(payload, stream.size() - from);
        Page &page = file.modify(pages[i]);
        std::ranges::fill(page, std::byte{0});
        std::copy_n(stream.begin() + static_cast<std::ptrdiff_t>(from), size, page.begin() + pageHeader);
        const std::size_t room = payload - size;
        writeLE(MutableBytes(page), 0, definitionTag);
        writeLE(MutableBytes(page), 2,
                file.isJet4() ? static_cast<std::uint16_t>(room > 8 ? room - 8 : 0) : jet3PageTag);
        writeLE(MutableBytes(page), 4, i + 1 < pages.size() ? pages[i + 1] : PageNo{0});
        from += size;
    }
}

} // namespace jet
