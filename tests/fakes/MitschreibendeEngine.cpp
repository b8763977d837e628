// The record of everything that goes through the database port.
#include "tests/fakes/MitschreibendeEngine.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

class Datenbank : public dao::Database
{
public:
    Datenbank(MitschreibendeEngine &engine, std::shared_ptr<dao::Database> dahinter)
        : m_engine(engine)
        , m_dahinter(std::move(dahinter))
    { }

    QString Name() const override { return m_dahinter->Name(); }
    std::shared_ptr<dao::Recordset> OpenRecordset(const QString &source) override
    {
        return notiert(source).OpenRecordset(source);
    }
    int Execute(const QString &sql) override { return notiert(sql).Execute(sql); }
    void Close() override { m_dahinter->Close(); }

private:
    dao::Database &notiert(const QString &sql)
    {
        m_engine.protokoll += sql;
        if (m_engine.vorher)
            m_engine.vorher(sql);
        return *m_dahinter;
    }

    MitschreibendeEngine &m_engine;
    std::shared_ptr<dao::Database> m_dahinter;
};

/// Through a session or the engine itself.
std::shared_ptr<dao::Database> geoeffnet(MitschreibendeEngine &engine, auto &durch, const QString &name, int options,
                                         bool readOnly, const QString &connect)
{
    const QString datei = QFileInfo(name).fileName();
    if (engine.vorOeffnen)
        engine.vorOeffnen(datei);
    auto datenbank = std::make_shared<Datenbank>(engine, durch.OpenDatabase(name, options, readOnly, connect));
    engine.protokoll += u"OpenDatabase(%1, %2)"_s.arg(datei, connect);
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
