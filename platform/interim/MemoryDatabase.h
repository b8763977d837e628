#pragma once

#include <map>
#include <memory>

#include "platform/storage/Storage.h"

namespace storage {

/// What a memory database holds; copied whole to undo a write.
struct MemoryContent {
    struct Rows {
        TableSchema schema{};
        std::map<RowId, std::vector<Value>> rows{};
        RowId next = 0;
        std::int64_t autonumber = 0;
    };
    std::map<QString, Rows> tables{}; // by name without case
    std::vector<Relationship> relationships{};
};

/// A database held in memory, without any format: for trying out what stands above the drivers.
class MemoryDatabase : public Database
{
public:
    MemoryDatabase(bool readOnly, bool caseSensitive);
    ~MemoryDatabase() override;

    bool readOnly() const override { return m_readOnly; }
    QStringList tableNames() const override;
    Table *table(const QString &name) override;
    int compareTexts(QStringView left, QStringView right) const override;
    bool caseSensitive() const override { return m_caseSensitive; }
    std::unique_ptr<WriteScope> beginWrite() override;
    void createTable(const TableSchema &schema) override;
    void createIndex(const QString &table, const Index &index) override;
    void createRelationship(const Relationship &relationship) override;
    void dropTable(const QString &name) override;
    std::vector<Relationship> relationships() const override;

    MemoryContent content;

protected:
    /// Called at the end of each committed write.
    virtual void save() { }

private:
    friend class MemoryScope;

    bool m_readOnly;
    bool m_caseSensitive;
    std::map<QString, std::unique_ptr<Table>> m_tables;
};

} // namespace storage
