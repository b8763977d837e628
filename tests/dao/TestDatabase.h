#pragma once

#include <functional>
#include <memory>

#include <QTemporaryDir>

#include "platform/dao/embedded/EmbeddedEngine.h"

/// What the engine asked of a table.
struct Calls {
    int scans = 0;
    int ranges = 0;
    int rows = 0;
    int steps = 0; // of scans and ranges
    storage::KeyRange lastRange{};

    bool operator()(int scanned, int ranged) const { return scans == scanned && ranges == ranged; }
};

/// Opens databases through a real driver, counts what is asked of their tables and fails on demand.
class TestDriver : public storage::Driver
{
public:
    explicit TestDriver(std::unique_ptr<storage::Driver> real)
        : m_real(std::move(real))
    { }

    std::unique_ptr<storage::Database> open(const storage::OpenRequest &request) override;
    std::unique_ptr<storage::Database> create(const storage::OpenRequest &request,
                                              storage::FileVersion version) override;

    Calls calls{};
    storage::OpenRequest lastRequest{};
    std::optional<storage::StorageError> failOnOpen{};
    std::optional<storage::StorageError> failOnWrite{};
    std::optional<storage::StorageError> failOnRead{}; // at the second row of a cursor

private:
    std::unique_ptr<storage::Driver> m_real;
};

/// An engine over test drivers with one open database of each kind.
struct TestEngine {
    TestEngine();

    /// Runs statements that must succeed.
    void run(std::initializer_list<const char16_t *> statements);
    /// All rows of a query as text: fields by ",", rows by ";"; Null is "-".
    QString rows(const QString &source);
    /// The number of the error that the call raises; 0 if it raises none.
    static int errorOf(const std::function<void()> &call, QString *description = nullptr);
    int executeError(const QString &sql, QString *description = nullptr);
    int openError(const QString &source, QString *description = nullptr);
    /// The Jet file as another program sees it.
    std::unique_ptr<storage::Database> otherProgram();

    QTemporaryDir folder;
    QString path; // of the Jet file
    TestDriver *jet;
    TestDriver *dbase;
    std::unique_ptr<dao::EmbeddedEngine> engine;
    std::shared_ptr<dao::Database> db; // Jet's ways
    std::shared_ptr<dao::Database> exact; // dBASE's
};
