#pragma once

#include <map>

#include "platform/dbf/Table.h"

namespace dbf {

/// A folder of tables, each opened when it is first asked for and kept open until the database closes.
class Database final : public storage::Database
{
public:
    /// `files` must outlive the database.
    Database(storage::FileSystem &files, const QString &folder, bool readOnly);

    void requireWritable() const override;
    QStringList tableNames() const override;
    storage::Table *table(const QString &name) override;

    /// By code units: dBASE tables know no language.
    int compareTexts(QStringView left, QStringView right) const override;
    bool caseSensitive() const override { return true; }

    std::unique_ptr<storage::WriteScope> beginWrite() override;

    /// Tables are made and dropped outside of a write scope only (Unsupported): files cannot be brought back.
    void createTable(const storage::TableSchema &schema) override;
    void createIndex(const QString &table, const storage::Index &index) override;
    void createRelationship(const storage::Relationship &relationship) override;
    void dropTable(const QString &name) override;
    std::vector<storage::Relationship> relationships() const override { return {}; }

private:
    QString pathOf(const QString &table, const QString &suffix) const;
    Table *find(const QString &name);
    void requireChangeable() const;
    void makeFiles(const QString &table, const QByteArray &content, bool withMemos);
    void makeFile(const QString &path, const QByteArray &content);
    void removeLeavings(const QString &table);
    bool isEmptyMemoFile(const QString &path) const;

    storage::FileSystem &m_files;
    QString m_folder;
    WriteState m_state;
    std::map<QString, std::unique_ptr<Table>> m_tables; // by upper-case name
};

} // namespace dbf
