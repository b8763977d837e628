// Checks a whole file: the catalog leads to the tables, and in the end every page must have had its use.
#include "platform/jet/Verifier.h"

#include <algorithm>
#include <map>
#include <utility>

#include "platform/jet/Catalog.h"
#include "platform/jet/FieldReader.h"
#include "platform/jet/Format.h"
#include "platform/jet/PropertyBlob.h"
#include "platform/jet/Relationships.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/VerifierPages.h"
#include "platform/jet/VerifierRelation.h"
#include "platform/jet/VerifierTable.h"

using namespace Qt::StringLiterals;

namespace jet {

namespace {

class FileCheck
{
public:
    FileCheck(PageFile &file, const VerifyProgress &progress)
        : m_file(file)
        , m_codec(file.isJet4() ? TextCodec::jet4() : TextCodec::jet3(file.header().codePage))
        , m_progress(progress)
        , m_book(file, m_findings)
    { }

    VerifyReport run()
    {
        checkCommitArea();
        m_book.claim(0, u"Dateikopf"_s);
        m_book.claimMap(globalFreeMap, u"freie Seiten der Datei"_s);
        m_book.claimMap(globalSecondMap, u"zweite Liste der Datei"_s);
        const Catalog catalog(m_file, m_codec);
        for (const CatalogEntry &entry : catalog.entries())
            checkObject(catalog, entry);
        for (const auto &[page, table] : m_tables)
            checkPartners(table);
        m_findings.attempt(u"Beziehungen"_s, [this] { checkRelationships(); });
        if (!m_findings.full())
            m_findings.attempt(u"Freie Seiten"_s, [this] { m_book.compareWithFree(globalFreeMap); });
        return std::move(m_report);
    }

private:
    struct Table {
        QString name;
        TableDef def;
    };

    void checkCommitArea()
    {
        constexpr std::uint16_t atRest = 0x0100;
        const PagePtr page = m_file.read(0);
        for (std::size_t i = 0; i < 256; ++i) {
            if (storage::readLE<std::uint16_t>(*page, formatOf(m_file).commitArea + 2 * i) < atRest)
                m_findings.fault(0, u"Benutzer %1 hat eine Änderung nicht zu Ende geschrieben"_s.arg(i));
        }
    }

    void checkObject(const Catalog &catalog, const CatalogEntry &entry)
    {
        if (entry.type == TableObject && !m_findings.full()) {
            if (m_progress)
                m_progress(u"Tabelle %1"_s.arg(entry.name));
            checkTable(entry);
        }
        m_findings.attempt(u"Eigenschaften von %1"_s.arg(entry.name), [&] { checkProperties(catalog, entry); });
    }

    void checkTable(const CatalogEntry &entry)
    {
        m_findings.attempt(u"Tabelle %1"_s.arg(entry.name), [&] {
            const auto known = m_tables.try_emplace(entry.id, Table{entry.name, {}});
            if (!known.second)
                return m_findings.fault(
                    entry.id, u"zwei Tabellen im Katalog: %1 und %2"_s.arg(known.first->second.name, entry.name));
            TableDef &def = known.first->second.def;
            def = readTableDef(m_file, m_codec, entry);
            TableCheck(m_file, m_codec, def, entry.name, m_findings, m_book).run();
        });
    }

    void checkProperties(const Catalog &catalog, const CatalogEntry &entry)
    {
        const QByteArray blob = catalog.properties(entry.row);
        const auto table = m_tables.find(entry.id);
        if (blob.isEmpty())
            return;
        for (const PropertyBlock &block : parseProperties(std::as_bytes(std::span(blob)), m_codec)) {
            if (entry.type == TableObject && block.kind == PropertyBlock::OfColumn && table != m_tables.end()
                && findColumn(table->second.def, block.owner) == nullptr) {
                m_findings.fault(u"Tabelle %1: die Eigenschaften nennen die Spalte %2, die es nicht gibt"_s.arg(
                    entry.name, block.owner));
            }
        }
    }

    /// The two sides of a relationship point at each other.
    void checkPartners(const Table &table)
    {
        for (const LogicalIndexDef &index : table.def.logicalIndexes) {
            if (index.kind != LogicalIndexDef::Kind::Relation || !index.partner)
                continue;
            const LogicalIndexDef *partner = findPartner(index);
            if (partner == nullptr || partner->partnerTable != table.def.page || partner->partner != index.number
                || partner->side == index.side) {
                m_findings.fault(u"Tabelle %1: die Beziehung %2 hat kein Gegenstück"_s.arg(table.name, index.name));
            }
        }
    }

    const LogicalIndexDef *findPartner(const LogicalIndexDef &index) const
    {
        const auto other = m_tables.find(index.partnerTable);
        if (other == m_tables.end())
            return nullptr;
        const auto &candidates = other->second.def.logicalIndexes;
        const auto found = std::ranges::find(candidates, *index.partner, &LogicalIndexDef::number);
        return found == candidates.end() ? nullptr : &*found;
    }

    /// The rows of a relationship whose two sides are known; the index of the referencing side bears its name.
    void checkRows(const storage::Relationship &relationship)
    {
        for (const auto &[page, table] : m_tables) {
            for (const LogicalIndexDef &index : table.def.logicalIndexes) {
                if (index.side != LogicalIndexDef::Side::Referencing || !index.partner
                    || index.name.compare(relationship.name, Qt::CaseInsensitive) != 0) {
                    continue;
                }
                const LogicalIndexDef *partner = findPartner(index);
                if (partner == nullptr)
                    continue; // told already
                const Table &other = m_tables.at(index.partnerTable);
                checkReferences(m_file, m_codec, {table.name, table.def, index}, {other.name, other.def, *partner},
                                m_findings);
            }
        }
    }

    /// Relationships name tables and columns that exist.
    void checkRelationships()
    {
        for (const storage::Relationship &relationship : readRelationships(m_file, m_codec)) {
            checkColumns(relationship, relationship.table, relationship.columns);
            checkColumns(relationship, relationship.foreignTable, relationship.foreignColumns);
            if (relationship.enforced) {
                m_findings.attempt(u"Beziehung %1"_s.arg(relationship.name), [&] { checkRows(relationship); });
            }
        }
    }

    void checkColumns(const storage::Relationship &relationship, const QString &tableName, const QStringList &columns)
    {
        const auto table = std::ranges::find_if(m_tables, [&tableName](const auto &known) {
            return known.second.name.compare(tableName, Qt::CaseInsensitive) == 0;
        });
        if (table == m_tables.end()) {
            m_findings.note(
                u"Beziehung %1: die Tabelle %2 ist nicht in dieser Datei"_s.arg(relationship.name, tableName));
            return;
        }
        for (const QString &column : columns) {
            if (findColumn(table->second.def, column) == nullptr) {
                m_findings.fault(
                    u"Beziehung %1: die Tabelle %2 hat keine Spalte %3"_s.arg(relationship.name, tableName, column));
            }
        }
    }

    PageFile &m_file;
    TextCodec m_codec;
    const VerifyProgress &m_progress;
    VerifyReport m_report{};
    Findings m_findings{m_report};
    PageBook m_book;
    std::map<PageNo, Table> m_tables{}; // by page of the definition
};

} // namespace

VerifyReport verify(PageFile &file, const VerifyProgress &progress)
{
    return FileCheck(file, progress).run();
}

} // namespace jet
