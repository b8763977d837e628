// The record of everything that goes through the database port.
#include "tests/fakes/MitschreibendeEngine.h"

#include <utility>

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

class Zeilen : public dao::Recordset
{
public:
    Zeilen(MitschreibendeEngine &engine, const QString &sql, std::shared_ptr<dao::Recordset> dahinter)
        : m_engine(engine)
        , m_sql(sql)
        , m_dahinter(std::move(dahinter))
    {
        m_engine.offen += sql;
    }

    int RecordCount() const override { return m_dahinter->RecordCount(); }
    bool Eof() const override { return m_dahinter->Eof(); }
    void MoveFirst() override { m_dahinter->MoveFirst(); }
    void MoveLast() override { m_dahinter->MoveLast(); }
    void MoveNext() override { m_dahinter->MoveNext(); }
    int FieldCount() const override { return m_dahinter->FieldCount(); }
    dao::Field &Fields(int index) override { return m_dahinter->Fields(index); }
    dao::Field &Fields(const QString &name) override { return m_dahinter->Fields(name); }
    void Edit() override { m_dahinter->Edit(); }
    void Update() override { m_dahinter->Update(); }
    void Close() override
    {
        m_engine.offen.removeOne(m_sql);
        m_dahinter->Close();
    }

private:
    MitschreibendeEngine &m_engine;
    QString m_sql;
    std::shared_ptr<dao::Recordset> m_dahinter;
};

class Datenbank : public dao::Database
{
public:
    Datenbank(MitschreibendeEngine &engine, const QString &datei, std::shared_ptr<dao::Database> dahinter)
        : m_engine(engine)
        , m_datei(datei)
        , m_dahinter(std::move(dahinter))
    {
        m_engine.offen += datei;
    }
    ~Datenbank() override { zu(); }
    Datenbank(const Datenbank &) = delete;
    Datenbank &operator=(const Datenbank &) = delete;

    QString Name() const override { return m_dahinter->Name(); }
    std::shared_ptr<dao::Recordset> OpenRecordset(const QString &source) override
    {
        return std::make_shared<Zeilen>(m_engine, source, notiert(source).OpenRecordset(source));
    }
    int Execute(const QString &sql) override { return notiert(sql).Execute(sql); }
    void Close() override
    {
        zu();
        m_dahinter->Close();
    }

private:
    dao::Database &notiert(const QString &sql)
    {
        m_engine.protokoll += sql;
        if (m_engine.vorher)
            m_engine.vorher(sql);
        return *m_dahinter;
    }
    void zu()
    {
        if (!std::exchange(m_zu, true))
            m_engine.offen.removeOne(m_datei);
    }

    MitschreibendeEngine &m_engine;
    QString m_datei;
    std::shared_ptr<dao::Database> m_dahinter;
    bool m_zu = false;
};

/// Through a session or the engine itself.
std::shared_ptr<dao::Database> geoeffnet(MitschreibendeEngine &engine, auto &durch, const QString &name, int options,
                                         bool readOnly, const QString &connect)
{
    const QString datei = QFileInfo(name).fileName();
    if (engine.vorOeffnen)
        engine.vorOeffnen(datei);
    auto datenbank = std::make_shared<Datenbank>(engine, datei, durch.OpenDatabase(name, options, readOnly, connect));
    engine.protokoll += u"OpenDatabase(%1, %2%3)"_s.arg(datei, connect, readOnly ? u", read-only"_s : QString());
    return datenbank;
}

class Sitzung : public dao::Workspace
{
public:
    Sitzung(MitschreibendeEngine &engine, std::shared_ptr<dao::Workspace> dahinter)
        : m_engine(engine)
        , m_dahinter(std::move(dahinter))
    { }

    QString Name() const override { return m_dahinter->Name(); }
    QString UserName() const override { return m_dahinter->UserName(); }
    std::shared_ptr<dao::Database> OpenDatabase(const QString &name, int options, bool readOnly,
                                                const QString &connect) override
    {
        return geoeffnet(m_engine, *m_dahinter, name, options, readOnly, connect);
    }
    void Close() override
    {
        m_engine.protokoll += u"Close(%1)"_s.arg(Name());
        m_dahinter->Close();
    }
    const std::shared_ptr<dao::Workspace> &dahinter() const { return m_dahinter; }

private:
    MitschreibendeEngine &m_engine;
    std::shared_ptr<dao::Workspace> m_dahinter;
};

} // namespace

std::shared_ptr<dao::Workspace> MitschreibendeEngine::CreateWorkspace(const QString &name, const QString &user,
                                                                      const QString &password)
{
    protokoll += u"CreateWorkspace(%1)"_s.arg(name);
    return std::make_shared<Sitzung>(*this, m_engine->CreateWorkspace(name, user, password));
}

void MitschreibendeEngine::AppendWorkspace(std::shared_ptr<dao::Workspace> workspace)
{
    m_engine->AppendWorkspace(dynamic_cast<Sitzung &>(*workspace).dahinter());
}

std::shared_ptr<dao::Database> MitschreibendeEngine::OpenDatabase(const QString &name, int options, bool readOnly,
                                                                  const QString &connect)
{
    return geoeffnet(*this, *m_engine, name, options, readOnly, connect);
}

std::shared_ptr<dao::Database> MitschreibendeEngine::CreateDatabase(const QString &name, const QString &connect,
                                                                    Version version)
{
    return m_engine->CreateDatabase(name, connect, version);
}
