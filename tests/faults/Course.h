#pragma once

#include <memory>
#include <string>

#include <QStringList>
#include <QTemporaryDir>

#include "platform/dao/Dao.h"
#include "tests/fakes/FaultyFiles.h"

using Version = dao::DBEngine::Version;

/// A client, statements that change it, and what it holds before and after each of them.
class Course
{
public:
    /// The account with three contacts of the recorded transfer: its statements and the account's Recordset.Update.
    static const Course &transfer(Version version);
    /// Tables and indexes that come and go, long texts, changes of many rows.
    static const Course &definitions(Version version);

    static QString fileName() { return QStringLiteral("Muster.PCK"); }
    static std::unique_ptr<dao::DBEngine> engineOver(storage::FileSystem &files);
    static std::shared_ptr<dao::Database> open(dao::DBEngine &engine, const QTemporaryDir &folder);
    /// All rows of the users' tables.
    static QStringList rowsOf(const QString &path);

    std::size_t size() const { return m_statements.size(); }
    QString statement(std::size_t number) const { return m_statements[static_cast<qsizetype>(number)]; }
    void run(dao::Database &database, std::size_t number) const;
    /// The client before the statement of that number: its bytes, and its rows.
    const QByteArray &content(std::size_t number) const { return m_contents[number]; }
    const QStringList &rows(std::size_t number) const { return m_rows[number]; }

    /// All statements in one go, from opening to closing.
    const Recording &recording() const { return *m_recording; }
    /// How many statements had returned after so many operations of the recording.
    std::size_t returnedAfter(std::size_t operations) const;

private:
    Course(Version version, const QStringList &statements);

    QTemporaryDir m_folder{};
    QStringList m_statements;
    FaultyFiles m_files{};
    Recording *m_recording = nullptr;
    std::vector<QByteArray> m_contents{};
    std::vector<QStringList> m_rows{};
    std::vector<std::size_t> m_returned{}; // operations until then
};

/// What a check of the whole file says; empty if all is well.
QString faultsOf(const QString &path);

inline std::string versionName(Version version)
{
    return version == dao::DBEngine::dbVersion30 ? "Jet3" : "Jet4";
}
