#pragma once

#include <memory>

#include "platform/dao/Dao.h"
#include "platform/dao/embedded/Connection.h"

namespace dao {

/// A database over a storage driver's. Its recordsets keep the file open until they or the database are closed.
class EmbeddedDatabase : public Database
{
public:
    EmbeddedDatabase(const QString &name, std::unique_ptr<storage::Database> database);

    QString Name() const override;
    std::shared_ptr<Recordset> OpenRecordset(const QString &source) override;
    int Execute(const QString &sql) override;
    void Close() override;

    bool isOpen() const;

private:
    QString m_name;
    std::shared_ptr<Connection> m_connection;
};

} // namespace dao
