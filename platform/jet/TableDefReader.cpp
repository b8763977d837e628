// Reading table definitions. One stream of bytes over several pages: the first page whole, the others without their
// header of 8 bytes (02 01, a word, the next page). Figures for Jet 3 / Jet 4:
//
//   8   4  length of the stream               Then, one kind after the other:
//   12/16  4  rows                              index statistics        8/12 bytes each
//   16/20  4  last autonumber                   columns                 18/25
//   20/40  1  type: 'S' or 'N'                  column names            length of 1/2 bytes, name
//   21/41  2  columns ever                      real indexes            39/52
//   23/43  2  variable slots                    logical indexes         20/28
//   25/45  2  columns                           names of these
//   27/47  4  logical indexes                   long columns            number 2, owned map 4, free map 4
//   31/51  4  real indexes                      FF FF
//   35/55  4  owned map, 39/59  4  free map
#include "platform/jet/TableDefFile.h"

#include <algorithm>

#include "platform/jet/Damage.h"
#include "platform/jet/Format.h"
#include "platform/jet/TableLayout.h"
#include "platform/storage/Bytes.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::readLE;

namespace jet {

namespace {

constexpr std::uint16_t definitionTag = 0x0102;
constexpr std::size_t pageHeader = 8;
constexpr std::size_t lengthAt = 8;
constexpr std::size_t nextAt = 4;
constexpr std::size_t longestStream = 1U << 20; // far more than 255 columns need
constexpr std::uint16_t endMark = 0xFFFF;

PagePtr readDefinitionPage(PageStore &store, PageNo number)
{
    PagePtr page = store.read(number);
    if (readLE<std::uint16_t>(*page, 0) != definitionTag)
        damaged(number, u"keine Tabellendefinition"_s);
    return page;
}

/// Takes the stream apart from front to back.
class Parser
{
public:
    Parser(std::vector<std::byte> stream, const Format &format, const TextCodec &codec, PageNo page)
        : m_stream(std::move(stream))
        , m_format(format)
        , m_codec(codec)
    {
        m_def.page = page;
    }

    TableDef parse()
    {
        readFixedPart();
        readStatistics();
        readColumns();
        for (IndexDef &index : m_def.indexes)
            readIndex(index);
        for (LogicalIndexDef &index : m_def.logicalIndexes)
            readLogicalIndex(index);
        for (LogicalIndexDef &index : m_def.logicalIndexes)
            index.name = readName();
        readLongColumns();
        if (m_at != m_stream.size())
            damaged(m_def.page, u"Definition endet bei %1 statt bei %2"_s.arg(m_at).arg(m_stream.size()));
        checkColumns();
        checkIndexes();
        return std::move(m_def);
    }

private:
    bool jet4() const { return m_codec.isJet4(); }
    template <typename T> T at(std::size_t offset) const { return readLE<T>(m_stream, offset); }
    template <typename T> T take()
    {
        const T number = readLE<T>(m_stream, m_at);
        m_at += sizeof(T);
        return number;
    }

    void readFixedPart()
    {
        m_def.rowCount = at<std::uint32_t>(m_format.rowCountAt);
        m_def.lastAutonumber = at<std::uint32_t>(m_format.autonumberAt);
        m_def.type = at<std::uint8_t>(m_format.tableTypeAt);
        m_at = m_format.columnsEverAt;
        m_def.columnsEver = take<std::uint16_t>();
        m_def.variableSlots = take<std::uint16_t>();
        const auto columns = take<std::uint16_t>();
        const auto logical = take<std::uint32_t>();
        const auto real = take<std::uint32_t>();
        m_def.ownedMap = RowPointer::fromNumber(take<std::uint32_t>());
        m_def.freeMap = RowPointer::fromNumber(take<std::uint32_t>());
        requireRoom(columns, m_format.columnSize, u"Spalten"_s);
        requireRoom(logical, m_format.logicalIndexSize, u"Indizes"_s);
        requireRoom(real, m_format.indexSize, u"Indexbäume"_s);
        m_def.columns.resize(columns);
        m_def.logicalIndexes.resize(logical);
        m_def.indexes.resize(real);
    }

    void requireRoom(std::uint64_t count, std::size_t size, const QString &what) const
    {
        if (count * size > m_stream.size())
            damaged(m_def.page, u"%1 %2 passen nicht in die Definition"_s.arg(count).arg(what));
    }

    void readStatistics()
    {
        m_at = m_format.indexStatisticsAt;
        for (IndexDef &index : m_def.indexes) {
            index.entriesAtCompact = at<std::uint32_t>(m_at);
            index.distinctKeys = at<std::uint32_t>(m_at + 4);
            m_at += m_format.indexStatisticsSize;
        }
    }

    void readColumns()
    {
        for (ColumnDef &column : m_def.columns) {
            readColumn(column);
            m_at += m_format.columnSize;
        }
        for (ColumnDef &column : m_def.columns)
            column.name = readName();
    }

    void readColumn(ColumnDef &column) const
    {
        const std::size_t shift = jet4() ? 4 : 0; // Jet 4 has a constant behind the type
        column.type = static_cast<ColumnType>(at<std::uint8_t>(m_at));
        column.number = at<std::uint16_t>(m_at + shift + 1);
        column.slot = at<std::uint16_t>(m_at + shift + 3);
        column.ordinal = at<std::uint16_t>(m_at + shift + 5);
        if (column.type == ColumnType::Numeric) {
            column.precision = at<std::uint8_t>(m_at + 11);
            column.scale = at<std::uint8_t>(m_at + 12);
        } else if (jet4()) {
            column.sortLcid = at<std::uint16_t>(m_at + 11);
            column.sortVersion = at<std::uint8_t>(m_at + 14);
        } else {
            column.sortVersion = at<std::uint8_t>(m_at + 7);
            column.sortLcid = at<std::uint16_t>(m_at + 9);
        }
        column.flags = at<std::uint8_t>(m_at + (jet4() ? 15 : 13));
        column.extendedFlags = jet4() ? at<std::uint8_t>(m_at + 16) : 0;
        column.fixedOffset = at<std::uint16_t>(m_at + (jet4() ? 21 : 14));
        column.length = at<std::uint16_t>(m_at + (jet4() ? 23 : 16));
    }

    QString readName()
    {
        const std::size_t length = jet4() ? take<std::uint16_t>() : take<std::uint8_t>();
        const Bytes bytes = storage::part(m_stream, m_at, length);
        m_at += length;
        return m_codec.decodeName(bytes);
    }

    void readIndex(IndexDef &index)
    {
        const std::size_t start = m_at + (jet4() ? 4 : 0);
        for (std::size_t i = 0; i < maxIndexColumns; ++i) {
            const auto column = at<std::uint16_t>(start + 3 * i);
            if (column != 0xFFFF)
                index.columns.push_back({column, at<std::uint8_t>(start + 3 * i + 2) == 1});
        }
        index.map = RowPointer::fromNumber(at<std::uint32_t>(start + 30));
        index.rootPage = at<std::uint32_t>(start + 34);
        index.flags = at<std::uint8_t>(start + (jet4() ? 42 : 38));
        m_at += m_format.indexSize;
    }

    void readLogicalIndex(LogicalIndexDef &index)
    {
        const std::size_t start = m_at + (jet4() ? 4 : 0);
        index.number = at<std::uint32_t>(start);
        index.real = at<std::uint32_t>(start + 4);
        index.side = static_cast<LogicalIndexDef::Side>(at<std::uint8_t>(start + 8));
        if (const auto partner = at<std::uint32_t>(start + 9); partner != 0xFFFFFFFF)
            index.partner = partner;
        index.partnerTable = at<std::uint32_t>(start + 13);
        index.cascadeUpdates = at<std::uint8_t>(start + 17) == 1;
        index.cascadeDeletes = at<std::uint8_t>(start + 18) == 1;
        index.kind = static_cast<LogicalIndexDef::Kind>(at<std::uint8_t>(start + 19));
        m_at += m_format.logicalIndexSize;
    }

    void readLongColumns()
    {
        for (auto number = take<std::uint16_t>(); number != endMark; number = take<std::uint16_t>()) {
            const auto owned = RowPointer::fromNumber(take<std::uint32_t>());
            const auto free = RowPointer::fromNumber(take<std::uint32_t>());
            const auto column = std::find_if(m_def.columns.begin(), m_def.columns.end(),
                                             [number](const ColumnDef &c) { return c.number == number; });
            if (column == m_def.columns.end() || !column->isLong())
                damaged(m_def.page, u"Spalte %1 hat lange Werte und ist nicht definiert"_s.arg(number));
            column->longOwnedMap = owned;
            column->longFreeMap = free;
        }
    }

    void checkColumns() const
    {
        for (const ColumnDef &column : m_def.columns) {
            if (column.number >= m_def.columnsEver)
                damaged(m_def.page, u"Spalte %1 hat die Nummer %2"_s.arg(column.name).arg(column.number));
            if (!column.isFixed() && column.type != ColumnType::Boolean && column.slot >= m_def.variableSlots)
                damaged(m_def.page, u"Spalte %1 steht an Stelle %2"_s.arg(column.name).arg(column.slot));
            const std::size_t length = fixedLength(column.type);
            if (column.isFixed() && length != 0 && column.length != length)
                damaged(m_def.page, u"Spalte %1 ist %2 Bytes lang"_s.arg(column.name).arg(column.length));
            if (m_def.column(column.number) != &column)
                damaged(m_def.page, u"Spaltennummer %1 kommt zweimal vor"_s.arg(column.number));
        }
    }

    void checkIndexes() const
    {
        for (const IndexDef &index : m_def.indexes) {
            const bool known = std::all_of(index.columns.begin(), index.columns.end(), [this](const IndexColumnDef &c) {
                return m_def.column(c.column) != nullptr;
            });
            if (index.columns.empty() || !known)
                damaged(m_def.page, u"Ein Index hat Spalten, die es nicht gibt"_s);
        }
        for (const LogicalIndexDef &index : m_def.logicalIndexes) {
            if (index.real >= m_def.indexes.size())
                damaged(m_def.page, u"Index %1 hat keinen Baum"_s.arg(index.name));
        }
    }

    std::vector<std::byte> m_stream;
    const Format &m_format;
    const TextCodec &m_codec;
    std::size_t m_at = 0;
    TableDef m_def;
};

} // namespace

std::vector<PageNo> tableDefPages(PageStore &store, PageNo page)
{
    std::vector<PageNo> pages;
    const std::size_t most = longestStream / store.pageSize();
    for (PageNo number = page; number != 0;
         number = readLE<std::uint32_t>(*readDefinitionPage(store, number), nextAt)) {
        if (pages.size() >= most || std::find(pages.begin(), pages.end(), number) != pages.end())
            damaged(number, u"Die Seiten der Definition %1 laufen im Kreis"_s.arg(page));
        pages.push_back(number);
    }
    return pages;
}

TableDef readTableDef(PageStore &store, const TextCodec &codec, PageNo page)
{
    std::vector<std::byte> stream;
    for (const PageNo number : tableDefPages(store, page)) {
        const PagePtr bytes = readDefinitionPage(store, number);
        stream.insert(stream.end(), bytes->begin() + (stream.empty() ? 0 : pageHeader), bytes->end());
    }
    const auto length = readLE<std::uint32_t>(stream, lengthAt);
    const std::size_t pagesNeeded = length <= store.pageSize()
        ? 1
        : 1 + (length - store.pageSize() + store.pageSize() - pageHeader - 1) / (store.pageSize() - pageHeader);
    if (length > stream.size() || length < formatOf(store).indexStatisticsAt)
        damaged(page, u"Definition von %1 Bytes auf Seiten mit %2"_s.arg(length).arg(stream.size()));
    if (stream.size() != store.pageSize() + (pagesNeeded - 1) * (store.pageSize() - pageHeader))
        damaged(page, u"Definition von %1 Bytes hat überzählige Seiten"_s.arg(length));
    stream.resize(length);
    return Parser(std::move(stream), formatOf(store), codec, page).parse();
}

} // namespace jet
