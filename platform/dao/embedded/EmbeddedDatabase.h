#pragma once

#include <memory>

#include "platform/dao/Dao.h"
#include "platform/dao/embedded/Connection.h"

namespace dao {

/// How a driver takes data definition: as part of a write scope, or only outside of one (each table is a file then).
enum class DefinitionMode { InScope, AtOnce };

/// A database over a storage driver's. Its recordsets keep the file open until they or the database are closed.
class EmbeddedDatabase : public Database
{
public:
    EmbeddedDatabase(const QString &name, std::unique_ptr<storage::Database> database, DefinitionMode definitions);

    QString Name() const override;
    std::shared_ptr<Recordset> OpenRecordset(const QString &source) override;
    int Execute(const QString &sql) override;
    void Close() override;

    bool isOpen() const;

private:
    void runDefinition(const std::vector<Token> &tokens);

    QString m_name;
    DefinitionMode m_definitions;
    std::shared_ptr<Connection> m_connection;
};

} // namespace dao
