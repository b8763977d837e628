#pragma once

#include <functional>
#include <memory>

#include <QStringList>

#include "platform/dao/Dao.h"

/// A database engine that writes down what is asked of another one, and lets a test step in before each statement.
class MitschreibendeEngine : public dao::DBEngine
{
public:
    explicit MitschreibendeEngine(std::unique_ptr<dao::DBEngine> engine)
        : m_engine(std::move(engine))
    { }

    /// "CreateWorkspace(...)", "OpenDatabase(file, connect)" with ", read-only" if it is, "Close(workspace)", and all
    /// SQL.
    QStringList protokoll;
    /// Databases that nobody has closed or let go of, by file, and recordsets that nobody has closed, by SQL.
    QStringList offen;
    /// Called with each statement before it runs; may throw in its place.
    std::function<void(const QString &sql)> vorher;
    /// The same with each file before it is opened.
    std::function<void(const QString &datei)> vorOeffnen;
    /// The engine behind, past the record.
    dao::DBEngine &dahinter() { return *m_engine; }

    std::shared_ptr<dao::Workspace> CreateWorkspace(const QString &name, const QString &user,
                                                    const QString &password) override;
    void AppendWorkspace(std::shared_ptr<dao::Workspace> workspace) override;
    std::shared_ptr<dao::Database> OpenDatabase(const QString &name, int options, bool readOnly,
                                                const QString &connect) override;
    std::shared_ptr<dao::Database> CreateDatabase(const QString &name, const QString &connect,
                                                  Version version) override;

private:
    std::unique_ptr<dao::DBEngine> m_engine;
};
