#pragma once

#include <map>
#include <set>
#include <vector>

#include <QString>

#include "platform/jet/IndexKey.h"
#include "platform/jet/IndexNode.h"
#include "platform/jet/PageFile.h"
#include "platform/jet/RowScan.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/jet/VerifierPages.h"

namespace jet {

/// Checks one real index: its pages, the shape of its tree, and that it has one entry with the right key for each row.
class IndexCheck
{
public:
    IndexCheck(PageFile &file, const TextCodec &codec, const TableDef &def, std::size_t index, const QString &table,
               Findings &findings, PageBook &book);

    /// `rowPages` are the table's pages of rows; nullptr if they are not known.
    void run(const std::vector<PageNo> *rowPages);

private:
    void checkPages();
    std::size_t visit(PageNo number, std::size_t depth, std::set<PageNo> &seen);
    static void checkLinks(const IndexNode &left, const IndexNode &right);
    void checkEntries(const std::vector<PageNo> *rowPages);
    void checkEntry(RowPointer row, storage::Bytes key);
    void compareKey(RowPointer row, storage::Bytes stored, const std::vector<storage::Value> &values);
    bool isSecond(const std::vector<storage::Value> &values);
    std::vector<storage::Value> keyValues(const RowView &row) const;
    bool isLeftOut(const std::vector<storage::Value> &values) const;
    std::uint64_t countRows(const std::vector<PageNo> &rowPages) const;

    PageFile &m_file;
    const TextCodec &m_codec;
    const TableDef &m_def;
    const IndexDef &m_index;
    QString m_place;
    Findings &m_findings;
    PageBook &m_book;
    KeySupport m_support;
    std::set<KeyBytes> m_seen{}; // the keys of the rows whose entries can stand where those of the row before can
    KeyBytes m_seenFrom{}; // where these begin
    bool m_levelsDiffer = false;
    Oddities m_otherLetters{}; // keys in which other programs count a letter as one instead of two
    std::map<std::size_t, IndexNode> m_lastOfUpper{}; // pages above the leaves seen last, by distance from the root
};

} // namespace jet
