// Databases that count and fail, and an engine over them.
#include "tests/dao/TestDatabase.h"

#include <map>
#include <utility>

#include "platform/dbf/DbfDriver.h"
#include "platform/jet/JetDatabase.h"

using namespace Qt::StringLiterals;

namespace {

class WatchedCursor : public storage::Cursor
{
public:
    WatchedCursor(TestDriver &driver, std::unique_ptr<storage::Cursor> inner)
        : m_driver(driver)
        , m_inner(std::move(inner))
    { }

    bool next() override
    {
        ++m_driver.steps;
        if (std::exchange(m_started, true) && m_driver.fault)
            throw storage::StorageError(*m_driver.fault);
        return m_inner->next();
    }
    storage::RowId rowId() const override { return m_inner->rowId(); }
    storage::Value value(int column) const override { return m_inner->value(column); }

private:
    TestDriver &m_driver;
    std::unique_ptr<storage::Cursor> m_inner;
    bool m_started = false;
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
        ++m_driver.scans;
        return std::make_unique<WatchedCursor>(m_driver, m_inner.scan());
    }
    std::unique_ptr<storage::Cursor> range(const storage::KeyRange &range) override
    {
        m_driver.lastRange = range;
        return std::make_unique<WatchedCursor>(m_driver, m_inner.range(range));
    }
    std::unique_ptr<storage::Cursor> row(storage::RowId id) override { return m_inner.row(id); }
    void requireStorable(const storage::Assignment &value) const override { m_inner.requireStorable(value); }
    storage::RowId insert(std::span<const storage::Assignment> values) override { return m_inner.insert(values); }
    void update(storage::RowId id, std::span<const storage::Assignment> values) override { m_inner.update(id, values); }
    void remove(storage::RowId id) override { m_inner.remove(id); }

private:
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
        return found == nullptr ? nullptr : &m_tables.try_emplace(found, m_driver, *found).first->second;
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
    std::map<storage::Table *, CountingTable> m_tables;
};

} // namespace

std::unique_ptr<storage::Database> TestDriver::open(const storage::OpenRequest &request)
{
    lastRequest = request;
    if (fault)
        throw storage::StorageError(*fault);
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

QString TestEngine::trace(dao::Recordset &records, const QString &calls)
{
    QStringList shown;
    for (const QChar call : calls) {
        if (call == u'S') {
            records.Edit();
            records.Fields(u"Stufe"_s).setValue(9);
            records.Update();
        } else if (call != u'C') {
            call == u'F' ? records.MoveFirst() : call == u'L' ? records.MoveLast() : records.MoveNext();
        }
        shown += call == u'C' ? QString::number(records.RecordCount())
            : records.Eof()   ? u"-"_s
                              : dao::textOf(records.Fields(0).Value());
    }
    return shown.join(u' ');
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
