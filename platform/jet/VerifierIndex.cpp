// Checks an index against its table.
#include "platform/jet/VerifierIndex.h"

#include <algorithm>

#include "platform/jet/Damage.h"
#include "platform/jet/DataPage.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/IndexLookup.h"
#include "platform/jet/UsageMap.h"

using namespace Qt::StringLiterals;
using storage::Value;

namespace jet {

namespace {

QString nameOf(const TableDef &def, std::size_t index)
{
    for (const LogicalIndexDef &logical : def.logicalIndexes) {
        if (logical.real == index)
            return logical.name;
    }
    return QString::number(index);
}

} // namespace

IndexCheck::IndexCheck(PageFile &file, const TextCodec &codec, const TableDef &def, std::size_t index,
                       const QString &table, Findings &findings, PageBook &book)
    : m_file(file)
    , m_codec(codec)
    , m_def(def)
    , m_index(def.indexes[index])
    , m_place(u"Tabelle %1, Index %2"_s.arg(table, nameOf(def, index)))
    , m_findings(findings)
    , m_book(book)
    , m_support(keySupport(def, m_index, file.isJet4(), file.header().codePage))
{ }

void IndexCheck::run(const std::vector<PageNo> *rowPages)
{
    ++m_findings.report().indexes;
    m_book.claimMap(m_index.map, m_place);
    if (m_findings.attempt(m_place, [this] { checkPages(); }))
        m_findings.attempt(m_place, [this, rowPages] { checkEntries(rowPages); });
    m_findings.note(m_otherLetters, m_place, u"im Schlüssel sind Buchstaben wie „ß“ als einer gezählt"_s);
    if (m_levelsDiffer)
        m_findings.note(u"%1: die Ebenen der Seiten sind nicht angegeben"_s.arg(m_place));
}

/// The pages of the tree are those of its map, and all leaves are equally far from the root.
void IndexCheck::checkPages()
{
    std::set<PageNo> seen;
    visit(m_index.rootPage, 0, seen);
    const std::vector<PageNo> listed = UsageMap(m_file, m_index.map).pages();
    for (const PageNo page : listed) {
        m_book.claim(page, m_place);
        if (!seen.contains(page))
            m_findings.fault(u"%1: Seite %2 steht in der Seitenliste, aber nicht im Index"_s.arg(m_place).arg(page));
    }
    for (const PageNo page : seen) {
        if (!std::ranges::binary_search(listed, page))
            m_findings.fault(u"%1: Seite %2 fehlt in der Seitenliste"_s.arg(m_place).arg(page));
    }
}

/// Returns the height above the leaves.
std::size_t IndexCheck::visit(PageNo number, std::size_t depth, std::set<PageNo> &seen)
{
    constexpr std::size_t deepest = 16;
    if (!seen.insert(number).second || depth > deepest)
        damaged(number, u"sie hat zwei Plätze im Index"_s);
    const IndexNode node = IndexNode::read(m_file, number, m_def.page);
    if (node.isLeaf())
        return 0;
    const auto left = m_lastOfUpper.find(depth);
    if (left != m_lastOfUpper.end())
        checkLinks(left->second, node);
    m_lastOfUpper.insert_or_assign(depth, node);
    const std::size_t height = visit(node.child(0), depth + 1, seen) + 1;
    for (std::size_t i = 1; i <= node.count(); ++i) {
        if (visit(node.child(i), depth + 1, seen) + 1 != height)
            damaged(node.child(i), u"sie steht im Index auf einer anderen Ebene als die Seiten neben ihr"_s);
    }
    if (node.level() != height)
        m_levelsDiffer = true;
    return height;
}

/// Above the leaves, neighbours need not be linked; but a page has no others. The leaves' links are looked at when the
/// entries are walked through.
void IndexCheck::checkLinks(const IndexNode &left, const IndexNode &right)
{
    if (left.next() != 0 && left.next() != right.number())
        damaged(left.number(), u"ihre nächste Seite im Index ist %1 statt %2"_s.arg(left.next()).arg(right.number()));
    if (right.previous() != 0 && right.previous() != left.number()) {
        damaged(right.number(),
                u"ihre vorige Seite im Index ist %1 statt %2"_s.arg(right.previous()).arg(left.number()));
    }
}

void IndexCheck::checkEntries(const std::vector<PageNo> *rowPages)
{
    IndexCursor cursor(m_file, m_index, m_def.page);
    std::uint64_t entries = 0;
    while (cursor.next() && !m_findings.full()) {
        ++entries;
        m_findings.attempt(m_place, [&] { checkEntry(cursor.row(), cursor.key()); });
    }
    m_findings.report().entries += entries;
    if (rowPages == nullptr || m_findings.full())
        return;
    const std::uint64_t rows = countRows(*rowPages);
    if (rows != entries)
        m_findings.fault(u"%1: er hat %2 Einträge für %3 Zeilen"_s.arg(m_place).arg(entries).arg(rows));
}

void IndexCheck::checkEntry(RowPointer row, storage::Bytes key)
{
    const std::optional<FoundRow> found = findRow(m_file, m_def, row);
    if (!found) {
        m_findings.fault(
            u"%1: ein Eintrag nennt Zeile %2 der Seite %3, die es nicht gibt"_s.arg(m_place).arg(row.row).arg(
                row.page));
        return;
    }
    if (m_support == KeySupport::None)
        return;
    const std::vector<Value> values = keyValues(found->view);
    if (isLeftOut(values)) {
        m_findings.fault(
            u"%1: Zeile %2 der Seite %3 ist leer und gehört nicht hinein"_s.arg(m_place).arg(row.row).arg(row.page));
    }
    const bool hasNull = std::ranges::any_of(values, storage::isNull);
    if (hasNull && m_index.isRequired()) {
        m_findings.fault(u"%1: Zeile %2 der Seite %3 hat ein leeres Feld"_s.arg(m_place).arg(row.row).arg(row.page));
    }
    if (m_index.isUnique() && !hasNull && isSecond(values))
        m_findings.fault(u"%1: Zeile %2 der Seite %3 ist doppelt"_s.arg(m_place).arg(row.row).arg(row.page));
    compareKey(row, key, values);
}

/// Whether another row with these values came before, wherever its entry stands.
bool IndexCheck::isSecond(const std::vector<Value> &values)
{
    const IndexKeyMaker maker(m_def, m_index, m_file.isJet4());
    KeySpan span = maker.span(values);
    if (span.first != m_seenFrom)
        m_seen.clear();
    m_seenFrom = std::move(span.first);
    return !m_seen.insert(maker.make(values)).second;
}

/// A key that we would make differently is a fault, except where other programs are known to count a letter such as
/// "ß" as one instead of two.
void IndexCheck::compareKey(RowPointer row, storage::Bytes stored, const std::vector<Value> &values)
{
    const IndexKeyMaker maker(m_def, m_index, m_file.isJet4());
    if (compareKeys(stored, maker.make(values)) == 0) {
        ++m_findings.report().equalEntries;
        return;
    }
    if (maker.isOthersKey(values, stored)) {
        m_otherLetters.add(row);
        return;
    }
    m_findings.fault(
        u"%1: der Schlüssel für Zeile %2 der Seite %3 ist falsch"_s.arg(m_place).arg(row.row).arg(row.page));
}

std::vector<Value> IndexCheck::keyValues(const RowView &row) const
{
    return indexedValues(m_file, m_codec, m_def, m_index, row);
}

bool IndexCheck::isLeftOut(const std::vector<Value> &values) const
{
    return m_index.ignoresNulls() && std::ranges::all_of(values, storage::isNull);
}

/// The rows that must be in the index. Entries differ from each other, so equal numbers mean that none is missing.
std::uint64_t IndexCheck::countRows(const std::vector<PageNo> &rowPages) const
{
    std::uint64_t rows = 0;
    for (const PageNo number : rowPages) {
        const DataPage page(m_file, number);
        for (std::size_t slot = 0; slot < page.slotCount(); ++slot) {
            const auto row = findRow(m_file, m_def, {number, static_cast<std::uint8_t>(slot)});
            if (row && !(m_index.ignoresNulls() && isLeftOut(keyValues(row->view))))
                ++rows;
        }
    }
    return rows;
}

} // namespace jet
