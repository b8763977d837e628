// The record of everything that goes through the database port.
#include "tests/fakes/MitschreibendeEngine.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

class Datenbank : public dao::Database
{
public:
    Datenbank(MitschreibendeEngine &engine, std::shared_ptr<dao::Database> datenbank)
        : m_engine(engine)
        , m_datenbank(std::move(datenbank))
    { }

    QString Name() const override { return m_datenbank->Name(); }
    std::shared_ptr<dao::Recordset> OpenRecordset(const QString &source) override
    {
        notiere(source);
        return m_datenbank->OpenRecordset(source);
    }
    int Execute(const QString &sql) override
    {
        notiere(sql);
        return m_datenbank->Execute(sql);
    }
    void Close() override { m_datenbank->Close(); }

private:
    void notiere(const QString &sql)
    {
        m_engine.protokoll += sql;
        if (m_engine.vorher)
            m_engine.vorher(sql);
    }

    MitschreibendeEngine &m_engine;
    std::shared_ptr<dao::Database> m_datenbank;
};

std::shared_ptr<dao::Database> geoeffnet(MitschreibendeEngine &engine, const QString &name, const QString &connect,
                                         const std::function<std::shared_ptr<dao::Database>()> &oeffne)
{
    const QString datei = QFileInfo(name).fileName();
    if (engine.vorOeffnen)
        engine.vorOeffnen(datei);
    auto datenbank = oeffne();
    engine.protokoll += u"OpenDatabase(%1, %2)"_s.arg(datei, connect);
    return std::make_shared<Datenbank>(engine, std::move(datenbank));
}

class Sitzung : public dao::Workspace
{
public:
    Sitzung(MitschreibendeEngine &engine, std::shared_ptr<dao::Workspace> sitzung)
        : m_engine(engine)
        , m_sitzung(std::move(sitzung))
    { }

    QString Name() const override { return m_sitzung->Name(); }
    std::shared_ptr<dao::Database> OpenDatabase(const QString &name, int options, bool readOnly,
                                                const QString &connect) override
    {
        return geoeffnet(m_engine, name, connect,
                         [&] { return m_sitzung->OpenDatabase(name, options, readOnly, connect); });
    }
    void Close() override
    {
        m_engine.protokoll += u"Close(%1)"_s.arg(Name());
        m_sitzung->Close();
    }
    const std::shared_ptr<dao::Workspace> &dahinter() const { return m_sitzung; }

private:
    MitschreibendeEngine &m_engine;
    std::shared_ptr<dao::Workspace> m_sitzung;
};

} // namespace

MitschreibendeEngine::MitschreibendeEngine(std::unique_ptr<dao::DBEngine> engine)
    : m_engine(std::move(engine))
{ }

MitschreibendeEngine::~MitschreibendeEngine() = default;

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
    return geoeffnet(*this, name, connect, [&] { return m_engine->OpenDatabase(name, options, readOnly, connect); });
}

std::shared_ptr<dao::Database> MitschreibendeEngine::CreateDatabase(const QString &name, const QString &connect,
                                                                    Version version)
{
    return m_engine->CreateDatabase(name, connect, version);
}
