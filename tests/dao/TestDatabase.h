#pragma once

#include <functional>
#include <memory>

#include <QTemporaryDir>

#include "platform/dao/embedded/EmbeddedEngine.h"

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

    int scans = 0;
    int steps = 0; // of scans and ranges
    storage::KeyRange lastRange{};
    storage::OpenRequest lastRequest{};
    std::optional<storage::StorageError> fault{}; // at opening and at the second row of a cursor

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
    /// What the calls show: F, L and N move (first, last, next) and give the first field, C counts, S sets Stufe to 9.
    static QString trace(dao::Recordset &records, const QString &calls);
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
