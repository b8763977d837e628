// Databases that count and fail, and an engine over them.
#include "tests/dao/TestDatabase.h"

#include <map>
#include <utility>

#include "platform/dbf/DbfDriver.h"
#include "platform/jet/JetDatabase.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace {

/// Runs a check before each step.
class WatchedCursor : public storage::Cursor
{
public:
    WatchedCursor(std::unique_ptr<storage::Cursor> inner, std::function<void()> beforeStep)
        : m_inner(std::move(inner))
        , m_beforeStep(std::move(beforeStep))
    { }

    bool next() override
    {
        m_beforeStep();
        return m_inner->next();
    }
    storage::RowId rowId() const override { return m_inner->rowId(); }
    storage::Value value(int column) const override { return m_inner->value(column); }

private:
    std::unique_ptr<storage::Cursor> m_inner;
    std::function<void()> m_beforeStep;
};

class CountingTable : public storage::Table
{
public:
    CountingTable(TestDriver &driver, storage::Table &inner)
        : m_driver(driver)
        , m_inner(inner)
    { }

    const storage::TableSchema &schema() const override { return m_inner.schema(); }
    std::int64_t rowEstimate() const override { return m_inner.rowEstimate(); }
    std::unique_ptr<storage::Cursor> scan() override
    {
        ++m_driver.calls.scans;
        return watched(m_inner.scan());
    }
    std::unique_ptr<storage::Cursor> range(const storage::KeyRange &range) override
    {
        ++m_driver.calls.ranges;
        m_driver.calls.lastRange = range;
        return watched(m_inner.range(range));
    }
    std::unique_ptr<storage::Cursor> row(storage::RowId id) override
    {
        ++m_driver.calls.rows;
        return m_inner.row(id);
    }
    void requireStorable(const storage::Assignment &value) const override { m_inner.requireStorable(value); }
    storage::RowId insert(std::span<const storage::Assignment> values) override
    {
        failIfAsked();
        return m_inner.insert(values);
    }
    void update(storage::RowId id, std::span<const storage::Assignment> values) override
    {
        failIfAsked();
        m_inner.update(id, values);
    }
    void remove(storage::RowId id) override { m_inner.remove(id); }

private:
    std::unique_ptr<storage::Cursor> watched(std::unique_ptr<storage::Cursor> cursor)
    {
        return std::make_unique<WatchedCursor>(std::move(cursor), [this, first = true]() mutable {
            ++m_driver.calls.steps;
            if (!std::exchange(first, false) && m_driver.failOnRead)
                throw StorageError(*m_driver.failOnRead);
        });
    }
    void failIfAsked() const
    {
        if (m_driver.failOnWrite)
            throw StorageError(*m_driver.failOnWrite);
    }

    TestDriver &m_driver;
    storage::Table &m_inner;
};

class CountingDatabase : public storage::Database
{
public:
    CountingDatabase(TestDriver &driver, std::unique_ptr<storage::Database> inner)
        : m_driver(driver)
        , m_inner(std::move(inner))
    { }

    void requireWritable() const override { m_inner->requireWritable(); }
    QStringList tableNames() const override { return m_inner->tableNames(); }
    storage::Table *table(const QString &name) override
    {
        storage::Table *found = m_inner->table(name);
        if (found == nullptr)
            return nullptr;
        auto &table = m_tables[found];
        if (!table)
            table = std::make_unique<CountingTable>(m_driver, *found);
        return table.get();
    }
    int compareTexts(QStringView left, QStringView right) const override { return m_inner->compareTexts(left, right); }
    bool caseSensitive() const override { return m_inner->caseSensitive(); }
    std::unique_ptr<storage::WriteScope> beginWrite() override { return m_inner->beginWrite(); }
    void createTable(const storage::TableSchema &schema) override { m_inner->createTable(schema); }
    void createIndex(const QString &table, const storage::Index &index) override { m_inner->createIndex(table, index); }
    void createRelationship(const storage::Relationship &added) override { m_inner->createRelationship(added); }
    void dropTable(const QString &name) override { m_inner->dropTable(name); }
    std::vector<storage::Relationship> relationships() const override { return m_inner->relationships(); }

private:
    TestDriver &m_driver;
    std::unique_ptr<storage::Database> m_inner;
    std::map<storage::Table *, std::unique_ptr<storage::Table>> m_tables;
};

} // namespace

std::unique_ptr<storage::Database> TestDriver::open(const storage::OpenRequest &request)
{
    lastRequest = request;
    if (failOnOpen)
        throw StorageError(*failOnOpen);
    return std::make_unique<CountingDatabase>(*this, m_real->open(request));
}

std::unique_ptr<storage::Database> TestDriver::create(const storage::OpenRequest &request, storage::FileVersion version)
{
    return std::make_unique<CountingDatabase>(*this, m_real->create(request, version));
}

TestEngine::TestEngine()
    : path(folder.filePath(u"Muster.PCK"_s))
{
    auto jetDriver = std::make_unique<TestDriver>(std::make_unique<jet::JetDriver>());
    auto dbaseDriver = std::make_unique<TestDriver>(std::make_unique<dbf::DbfDriver>());
    jet = jetDriver.get();
    dbase = dbaseDriver.get();
    engine = std::make_unique<dao::EmbeddedEngine>(std::move(jetDriver), std::move(dbaseDriver));
    db = engine->CreateDatabase(path, {}, dao::DBEngine::dbVersion40);
    exact = engine->OpenDatabase(folder.path(), 0, false, u"FoxPro 2.6;"_s);
}

std::unique_ptr<storage::Database> TestEngine::otherProgram()
{
    return jet::JetDriver().open({path});
}

void TestEngine::run(std::initializer_list<const char16_t *> statements)
{
    for (const char16_t *statement : statements)
        db->Execute(QString::fromUtf16(statement));
}

QString TestEngine::rows(const QString &source)
{
    QStringList result;
    for (const auto records = db->OpenRecordset(source); !records->Eof(); records->MoveNext()) {
        QStringList row;
        for (int i = 0; i < records->FieldCount(); ++i) {
            const QVariant value = records->Fields(i).Value();
            row.append(value.isValid() ? dao::textOf(value) : u"-"_s);
        }
        result.append(row.join(u','));
    }
    return result.join(u';');
}

int TestEngine::errorOf(const std::function<void()> &call, QString *description)
{
    try {
        call();
    } catch (const dao::DaoError &error) {
        if (description != nullptr)
            *description = error.Description();
        return error.Number();
    }
    return 0;
}

int TestEngine::executeError(const QString &sql, QString *description)
{
    return errorOf([&] { db->Execute(sql); }, description);
}

int TestEngine::openError(const QString &source, QString *description)
{
    return errorOf([&] { db->OpenRecordset(source); }, description);
}
