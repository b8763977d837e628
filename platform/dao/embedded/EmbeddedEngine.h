#pragma once

#include <memory>
#include <vector>

#include "platform/dao/Dao.h"
#include "platform/storage/Storage.h"

namespace dao {

class EmbeddedWorkspace;
struct Drivers;

/// The sessions that were appended; a session that is closed leaves.
using WorkspaceCollection = std::vector<std::shared_ptr<Workspace>>;

/// The engine that needs no installation: SQLite runs the SQL, storage drivers hold the tables.
///
/// Owns    the drivers; databases that are still open when it goes stay usable.
/// Errors  DaoError as Dao.h says.
/// Users   a session knows its account, but nothing is asked of it: the files are opened by their database password.
class EmbeddedEngine : public DBEngine
{
public:
    /// `jet` opens files (connect strings without a kind), `dbase` folders ("FoxPro 2.6;", "dBASE III;" and so on).
    EmbeddedEngine(std::unique_ptr<storage::Driver> jet, std::unique_ptr<storage::Driver> dbase);
    ~EmbeddedEngine() override;

    std::shared_ptr<Workspace> CreateWorkspace(const QString &name, const QString &user,
                                               const QString &password) override;
    void AppendWorkspace(std::shared_ptr<Workspace> workspace) override;
    std::shared_ptr<Database> OpenDatabase(const QString &name, int options, bool readOnly,
                                           const QString &connect) override;
    std::shared_ptr<Database> CreateDatabase(const QString &name, const QString &connect, Version version) override;

private:
    EmbeddedWorkspace &defaultWorkspace();

    std::shared_ptr<Drivers> m_drivers;
    std::shared_ptr<WorkspaceCollection> m_workspaces;
    std::shared_ptr<EmbeddedWorkspace> m_default;
};

/// The engine with this program's own drivers.
std::unique_ptr<DBEngine> makeEmbeddedEngine();

} // namespace dao
