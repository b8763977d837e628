#pragma once

#include <map>
#include <memory>
#include <vector>

#include "platform/dao/Dao.h"
#include "platform/dao/embedded/RowSource.h"

namespace dao {

/// A recordset over the rows of a query. It ends with its database.
class EmbeddedRecordset : public Recordset
{
public:
    EmbeddedRecordset(std::shared_ptr<Connection> connection, std::unique_ptr<RowSource> rows);
    ~EmbeddedRecordset() override;

    int RecordCount() const override;
    bool Eof() const override;
    void MoveFirst() override;
    void MoveLast() override;
    void MoveNext() override;
    int FieldCount() const override;
    Field &Fields(int index) override;
    Field &Fields(const QString &name) override;
    void Edit() override;
    void Update() override;
    void Close() override;

private:
    class ResultField;

    RowSource &rows() const; ///< 3420 when closed
    void moveTo(qsizetype row);
    void requireRecord() const;
    QVariant value(std::size_t column) const;
    void setValue(std::size_t column, const QVariant &value);

    std::shared_ptr<Connection> m_connection;
    std::unique_ptr<RowSource> m_rows;
    std::vector<std::unique_ptr<ResultField>> m_fields;
    qsizetype m_row = 0; // or Keyset::last
    qsizetype m_visited = 0; // rows seen so far
    bool m_sawLast = false; // all rows count as seen
    bool m_editing = false;
    std::map<std::size_t, storage::Value> m_edited; // by column of the result
};

} // namespace dao
