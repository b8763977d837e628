// Checks the pages, rows, long values and counters of a table.
#include "platform/jet/VerifierTable.h"

#include <algorithm>

#include "platform/jet/DataPage.h"
#include "platform/jet/FieldReader.h"
#include "platform/jet/LongValue.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/UsageMap.h"
#include "platform/jet/VerifierIndex.h"

using namespace Qt::StringLiterals;

namespace jet {

TableCheck::TableCheck(PageFile &file, const TextCodec &codec, const TableDef &def, const QString &name,
                       Findings &findings, PageBook &book)
    : m_file(file)
    , m_codec(codec)
    , m_def(def)
    , m_name(name)
    , m_findings(findings)
    , m_book(book)
{ }

void TableCheck::run()
{
    const QString table = u"Tabelle %1"_s.arg(m_name);
    const bool pagesAreKnown = m_findings.attempt(table, [this] { claimPages(); });
    for (const ColumnDef &column : m_def.columns) {
        if (column.isLong())
            m_findings.attempt(u"%1, Spalte %2"_s.arg(table, column.name), [&] { claimLongPages(column); });
    }
    if (pagesAreKnown) {
        checkRows();
        checkBodies();
        m_findings.attempt(table, [this] { checkCounters(); });
    }
    for (const ColumnDef &column : m_def.columns) {
        if (column.isLong())
            m_findings.attempt(u"%1, Spalte %2"_s.arg(table, column.name), [&] { checkLongRows(column); });
    }
    for (std::size_t i = 0; i < m_def.indexes.size(); ++i)
        IndexCheck(m_file, m_codec, m_def, i, m_name, m_findings, m_book).run(pagesAreKnown ? &m_pages : nullptr);
    m_findings.report().rows += m_rows;
    ++m_findings.report().tables;
}

void TableCheck::claimPages()
{
    for (const PageNo page : tableDefPages(m_file, m_def.page))
        m_book.claim(page, u"Definition der Tabelle %1"_s.arg(m_name));
    m_book.claimMap(m_def.ownedMap, u"Zeilen der Tabelle %1"_s.arg(m_name));
    m_book.claimMap(m_def.freeMap, u"freier Platz der Tabelle %1"_s.arg(m_name));
    m_pages = UsageMap(m_file, m_def.ownedMap).pages();
    for (const PageNo page : m_pages)
        m_book.claim(page, u"Zeilen der Tabelle %1"_s.arg(m_name));
    checkFreeMap(m_def.freeMap, m_pages, u"Tabelle %1"_s.arg(m_name));
}

void TableCheck::checkFreeMap(RowPointer freeMap, const std::vector<PageNo> &owned, const QString &user)
{
    if (freeMap.isNull())
        return;
    for (const PageNo page : UsageMap(m_file, freeMap).pages()) {
        if (!std::ranges::binary_search(owned, page))
            m_findings.fault(page, u"sie soll freien Platz für %1 haben, gehört ihr aber nicht"_s.arg(user));
    }
}

void TableCheck::checkRows()
{
    for (const PageNo page : m_pages)
        m_findings.attempt(u"Tabelle %1"_s.arg(m_name), [&] { checkPage(page); });
}

void TableCheck::checkPage(PageNo number)
{
    const DataPage page(m_file, number);
    page.requireOwner(m_def.page);
    for (std::size_t slot = 0; slot < page.slotCount() && !m_findings.full(); ++slot) {
        const RowPointer where{number, static_cast<std::uint8_t>(slot)};
        if (page.kind(slot) == SlotKind::Body)
            m_bodies.insert(where);
        else if (page.kind(slot) != SlotKind::Deleted)
            m_findings.attempt(place(where), [&] { checkRow(where); });
    }
}

void TableCheck::checkRow(RowPointer home)
{
    ++m_rows;
    const std::optional<FoundRow> row = findRow(m_file, m_def, home);
    if (!row)
        return m_findings.fault(home.page, u"Zeile %1 ist nicht zu finden"_s.arg(home.row));
    if (row->body != home && !m_targets.insert(row->body).second)
        m_findings.fault(row->body.page, u"auf Zeile %1 zeigen zwei verschobene Zeilen"_s.arg(row->body.row));
    for (const ColumnDef &column : m_def.columns)
        m_findings.attempt(u"%1, Spalte %2"_s.arg(place(home), column.name), [&] { checkField(*row, column); });
}

void TableCheck::checkField(const FoundRow &row, const ColumnDef &column)
{
    const storage::Value value = readField(m_file, m_codec, row.view, column);
    if (column.isAutonumber()) {
        if (const auto *number = std::get_if<std::int64_t>(&value))
            m_highestAutonumber = std::max(m_highestAutonumber, *number);
    }
    if (!column.isLong() || storage::isNull(value))
        return;
    for (const RowPointer where : longValueRows(m_file, *row.view.field(column))) {
        if (!m_longPages[column.number].contains(where.page))
            m_findings.fault(where.page,
                             u"sie enthält einen Wert der Spalte %1, gehört ihr aber nicht"_s.arg(column.name));
        if (!m_longRows[column.number].insert(where).second)
            m_findings.fault(where.page, u"Zeile %1 gehört zu zwei langen Werten"_s.arg(where.row));
    }
}

/// Other programs delete a moved row and leave its body.
void TableCheck::checkBodies()
{
    Oddities forgotten;
    for (const RowPointer body : m_bodies) {
        if (!m_targets.contains(body))
            forgotten.add(body);
    }
    m_findings.note(forgotten, u"Tabelle %1"_s.arg(m_name), u"auf die verschobene Zeile zeigt keine andere"_s);
}

/// The number of rows may differ in files that other programs have written: a note.
void TableCheck::checkCounters()
{
    const TableCounters counters(m_file, m_def.page);
    if (counters.rowCount() > m_rows) {
        m_findings.fault(
            u"Tabelle %1: es gibt %2 Zeilen, gezählt sind %3"_s.arg(m_name).arg(m_rows).arg(counters.rowCount()));
    } else if (counters.rowCount() < m_rows) {
        m_findings.note(
            u"Tabelle %1: es gibt %2 Zeilen, gezählt sind nur %3"_s.arg(m_name).arg(m_rows).arg(counters.rowCount()));
    }
    if (m_highestAutonumber > counters.lastAutonumber()) {
        m_findings.fault(
            u"Tabelle %1: die höchste automatische Nummer ist %2, die zuletzt vergebene aber %3"_s.arg(m_name)
                .arg(m_highestAutonumber)
                .arg(counters.lastAutonumber()));
    }
}

void TableCheck::claimLongPages(const ColumnDef &column)
{
    const QString use = u"lange Werte von %1.%2"_s.arg(m_name, column.name);
    m_book.claimMap(column.longOwnedMap, use);
    m_book.claimMap(column.longFreeMap, u"freier Platz für %1"_s.arg(use));
    if (column.longOwnedMap.isNull())
        return;
    const std::vector<PageNo> pages = UsageMap(m_file, column.longOwnedMap).pages();
    for (const PageNo page : pages) {
        m_book.claim(page, use);
        m_findings.attempt(use, [&] { DataPage(m_file, page).requireOwner(longValueOwner); });
    }
    m_longPages[column.number] = {pages.begin(), pages.end()};
    checkFreeMap(column.longFreeMap, pages, use);
}

/// Every row on the column's pages belongs to a value.
void TableCheck::checkLongRows(const ColumnDef &column)
{
    const std::set<RowPointer> &used = m_longRows[column.number];
    Oddities lost;
    for (const PageNo number : m_longPages[column.number]) {
        const DataPage page(m_file, number);
        for (std::size_t slot = 0; slot < page.slotCount(); ++slot) {
            const RowPointer where{number, static_cast<std::uint8_t>(slot)};
            if (page.kind(slot) != SlotKind::Deleted && !used.contains(where))
                lost.add(where);
        }
    }
    m_findings.note(lost, u"Tabelle %1"_s.arg(m_name),
                    u"sie gehört zu keinem langen Wert der Spalte %1"_s.arg(column.name));
}

QString TableCheck::place(RowPointer row) const
{
    return u"Tabelle %1, Seite %2, Zeile %3"_s.arg(m_name).arg(row.page).arg(row.row);
}

} // namespace jet
