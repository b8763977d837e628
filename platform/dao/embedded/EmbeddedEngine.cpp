// Sessions of the embedded engine, and the choice of the driver by connect string.
#include "platform/dao/embedded/EmbeddedEngine.h"

#include <algorithm>

#include "platform/dao/embedded/ConnectString.h"
#include "platform/dao/embedded/EmbeddedDatabase.h"
#include "platform/dao/embedded/Errors.h"
#include "platform/storage/LocalPath.h"

using namespace Qt::StringLiterals;

namespace dao {

struct Drivers {
    std::unique_ptr<storage::Driver> jet;
    std::unique_ptr<storage::Driver> dbase;
};

/// A session: the databases opened through it end with it.
class EmbeddedWorkspace : public Workspace
{
public:
    EmbeddedWorkspace(const QString &name, const QString &user, std::shared_ptr<Drivers> drivers,
                      const std::shared_ptr<WorkspaceCollection> &collection)
        : m_name(name)
        , m_user(user)
        , m_drivers(std::move(drivers))
        , m_collection(collection)
    { }

    QString Name() const override
    {
        requireOpen();
        return m_name;
    }

    QString UserName() const override
    {
        requireOpen();
        return m_user;
    }

    std::shared_ptr<Database> OpenDatabase(const QString &name, int, bool readOnly, const QString &connect) override
    {
        requireOpen();
        const ConnectString parts = connectStringOf(connect);
        if (!parts.isJet && !parts.isDBase)
            throw daoError(number::UnknownKind, parts.kind);
        const QString &given = name.isEmpty() ? parts.database : name;
        return translated(Doing::Open, [&] {
            storage::Driver &driver = parts.isJet ? *m_drivers->jet : *m_drivers->dbase;
            const QString path = storage::existingPath(storage::localPath(given));
            return keep(given, driver.open({path, parts.password, readOnly}),
                        parts.isJet ? DefinitionMode::InScope : DefinitionMode::AtOnce);
        });
    }

    std::shared_ptr<Database> createDatabase(const QString &name, const QString &connect, storage::FileVersion version)
    {
        const ConnectString parts = connectStringOf(connect);
        return translated(Doing::CreateDatabase, [&] {
            return keep(name, m_drivers->jet->create({storage::localPath(name), parts.password}, version),
                        DefinitionMode::InScope);
        });
    }

    void Close() override
    {
        requireOpen();
        m_isOpen = false;
        for (const auto &known : m_databases) {
            const auto database = known.lock();
            if (database && database->isOpen())
                database->Close();
        }
        if (const auto collection = m_collection.lock())
            std::erase_if(*collection, [this](const auto &workspace) { return workspace.get() == this; });
    }

private:
    void requireOpen() const
    {
        if (!m_isOpen)
            throw daoError(DaoError::ObjectClosed);
    }

    std::shared_ptr<Database> keep(const QString &name, std::unique_ptr<storage::Database> opened,
                                   DefinitionMode definitions)
    {
        auto database = std::make_shared<EmbeddedDatabase>(name, std::move(opened), definitions);
        std::erase_if(m_databases, [](const auto &known) { return known.expired(); });
        m_databases.push_back(database);
        return database;
    }

    QString m_name;
    QString m_user;
    std::shared_ptr<Drivers> m_drivers;
    std::weak_ptr<WorkspaceCollection> m_collection;
    std::vector<std::weak_ptr<EmbeddedDatabase>> m_databases;
    bool m_isOpen = true;
};

EmbeddedEngine::EmbeddedEngine(std::unique_ptr<storage::Driver> jet, std::unique_ptr<storage::Driver> dbase)
    : m_drivers(std::make_shared<Drivers>(Drivers{std::move(jet), std::move(dbase)}))
    , m_workspaces(std::make_shared<WorkspaceCollection>())
{ }

EmbeddedEngine::~EmbeddedEngine() = default;

std::shared_ptr<Workspace> EmbeddedEngine::CreateWorkspace(const QString &name, const QString &user, const QString &)
{
    return std::make_shared<EmbeddedWorkspace>(name, user.isEmpty() ? DefaultUser : user, m_drivers, m_workspaces);
}

// Made when it is first needed: the program sets the default account before it opens anything.
EmbeddedWorkspace &EmbeddedEngine::defaultWorkspace()
{
    if (!m_default) {
        m_default = std::make_shared<EmbeddedWorkspace>(u"#Default Workspace#"_s, DefaultUser, m_drivers, m_workspaces);
    }
    return *m_default;
}

void EmbeddedEngine::AppendWorkspace(std::shared_ptr<Workspace> workspace)
{
    const QString name = workspace->Name();
    const bool isTaken = std::ranges::any_of(
        *m_workspaces, [&](const auto &other) { return other->Name().compare(name, Qt::CaseInsensitive) == 0; });
    if (isTaken)
        throw daoError(number::DuplicateName, name);
    m_workspaces->push_back(std::move(workspace));
}

std::shared_ptr<Database> EmbeddedEngine::OpenDatabase(const QString &name, int options, bool readOnly,
                                                       const QString &connect)
{
    return defaultWorkspace().OpenDatabase(name, options, readOnly, connect);
}

std::shared_ptr<Database> EmbeddedEngine::CreateDatabase(const QString &name, const QString &connect, Version version)
{
    const auto format = version == dbVersion30 ? storage::FileVersion::Jet3 : storage::FileVersion::Jet4;
    return defaultWorkspace().createDatabase(name, connect, format);
}

} // namespace dao
