#pragma once

#include <functional>
#include <memory>
#include <ostream>

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "platform/dao/Dao.h"
#include "tests/fakes/FaultyFiles.h"
#include "tests/jet/JetFileTest.h"

using Version = dao::DBEngine::Version;
inline const auto bothVersions = testing::Values(dao::DBEngine::dbVersion30, dao::DBEngine::dbVersion40);
namespace dao {
inline void PrintTo(DBEngine::Version version, std::ostream *out)
{
    *out << (version == DBEngine::dbVersion30 ? "Jet3" : "Jet4");
}
} // namespace dao

std::unique_ptr<dao::DBEngine> engineOver(storage::FileSystem &files = storage::systemFiles());
/// The DAO number that an action tells, and its German text; 0 if all goes well.
std::pair<int, QString> told(const std::function<void()> &action);
/// All rows of the users' tables.
QStringList rowsOf(const QString &path);

/// Where a test puts its client.
struct ClientFolder {
    QString path(const QString &name = QStringLiteral("Muster.PCK")) const { return folder.filePath(name); }
    std::shared_ptr<dao::Database> open(dao::DBEngine &engine) const;
    FolderContent content() const { return readFolder(folder.path()); }
    void setContent(const FolderContent &content) const { writeFolder(folder.path(), content); }

    QTemporaryDir folder{};
};

/// A client, statements that change it, and what it holds before and after each of them.
class Course
{
public:
    /// The account with three contacts of the recorded transfer: its statements and the account's Recordset.Update.
    static const Course &transfer(Version version);
    /// Tables and indexes that come and go, long texts, changes of many rows.
    static const Course &definitions(Version version);

    std::size_t size() const { return static_cast<std::size_t>(m_statements.size()); }
    QString statement(std::size_t number) const { return m_statements[static_cast<qsizetype>(number)]; }
    void run(dao::Database &database, std::size_t number) const;
    /// The folder before the statement of that number, which holds the client alone, and the client's rows.
    const FolderContent &content(std::size_t number) const { return m_contents[number]; }
    const QStringList &rows(std::size_t number) const { return m_rows[number]; }

    /// All statements in one go, from opening to closing.
    const Recording &recording() const { return *m_recording; }
    /// How many statements had returned after so many operations of the recording.
    std::size_t returnedAfter(std::size_t operations) const;

private:
    Course(Version version, const QStringList &statements);

    QStringList m_statements;
    FaultyFiles m_files{};
    Recording *m_recording = nullptr;
    std::vector<FolderContent> m_contents{};
    std::vector<QStringList> m_rows{};
    std::vector<std::size_t> m_returned{}; // operations until then
};

class CourseTest : public testing::TestWithParam<Version>
{
protected:
    const Course &transfer = Course::transfer(GetParam());
    const Course &definitions = Course::definitions(GetParam());
    const ClientFolder folder{};
    const std::unique_ptr<dao::DBEngine> engine = engineOver();
};
