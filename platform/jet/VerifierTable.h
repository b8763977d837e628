#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "platform/jet/PageFile.h"
#include "platform/jet/RowScan.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/jet/VerifierPages.h"

namespace jet {

/// Checks one table: its pages, rows, long values, counters and indexes.
class TableCheck
{
public:
    TableCheck(PageFile &file, const TextCodec &codec, const TableDef &def, const QString &name, Findings &findings,
               PageBook &book);

    void run();

private:
    void claimPages();
    void checkOwnedPages();
    void checkFreeMap(RowPointer freeMap, const std::vector<PageNo> &owned, const QString &user);

    void checkRows();
    void checkPage(PageNo number);
    void checkRow(RowPointer home);
    void checkField(const FoundRow &row, const ColumnDef &column);
    void checkBodies();
    void checkCounters();

    void claimLongPages(const ColumnDef &column);
    void checkLongRows(const ColumnDef &column);

    QString place(RowPointer row) const;

    PageFile &m_file;
    const TextCodec &m_codec;
    const TableDef &m_def;
    QString m_name;
    Findings &m_findings;
    PageBook &m_book;

    std::vector<PageNo> m_pages{}; // of rows
    std::map<std::uint16_t, std::set<PageNo>> m_longPages{}; // by column number
    std::map<std::uint16_t, std::set<RowPointer>> m_longRows{}; // those that fields point to
    std::set<RowPointer> m_bodies{}; // of moved rows: on the pages
    std::set<RowPointer> m_targets{}; // and those pointed to
    std::uint64_t m_rows = 0;
    std::int64_t m_highestAutonumber = 0;
};

} // namespace jet
