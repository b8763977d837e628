#pragma once

#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include "platform/jet/JetDatabase.h"
#include "tests/jet/TestFile.h"

/// The kinds of files that every test of a whole database goes through.
struct FileKind {
    const char *name;
    storage::FileVersion version;
    std::uint32_t pageKey = 0; ///< 0: not encrypted
    QString password{};

    bool jet4() const { return version == storage::FileVersion::Jet4; }
    qsizetype pageSize() const { return jet4() ? 4096 : 2048; }
};

inline std::vector<FileKind> fileKinds()
{
    using storage::FileVersion;
    return {{"Jet3", FileVersion::Jet3},
            {"Jet4", FileVersion::Jet4},
            {"Jet3Encrypted", FileVersion::Jet3, 0x5A17C0DE},
            {"Jet4EncryptedWithPassword", FileVersion::Jet4, 0x5A17C0DE, QStringLiteral("Größe 1")}};
}

inline std::string kindName(const testing::TestParamInfo<FileKind> &kind)
{
    return kind.param.name;
}

/// A new database of one kind, open for writing. After the test the whole file must be in order.
class JetFileTest : public testing::TestWithParam<FileKind>
{
protected:
    JetFileTest()
        : m_file(GetParam().version, GetParam().password)
    {
        if (GetParam().pageKey != 0)
            m_file.encrypt(GetParam().pageKey);
        m_database = m_file.open();
    }
    void TearDown() override
    {
        close();
        expectSound();
    }

    const TestFile &file() const { return m_file; }
    QString path() const { return m_file.path(); }
    QByteArray content() const { return m_file.content(); }
    storage::Database &database() { return *m_database; }
    storage::Table &table(const QString &name) { return *m_database->table(name); }
    void close() { m_database.reset(); }
    void reopen()
    {
        close();
        m_database = m_file.open();
    }
    void expectSound() { EXPECT_EQ(m_file.faults(), QString()); }

    static storage::Index index(const QString &name, std::vector<storage::IndexColumn> columns)
    {
        storage::Index made;
        made.name = name;
        made.columns = std::move(columns);
        return made;
    }
    static storage::Index primaryKey(int column)
    {
        storage::Index made = index(QStringLiteral("PrimaryKey"), {{column, false}});
        made.primary = true;
        return made;
    }
    static std::size_t count(storage::Cursor &cursor)
    {
        std::size_t rows = 0;
        while (cursor.next())
            ++rows;
        return rows;
    }
    /// Runs `work`, which must throw; returns the error.
    template <typename Work> static storage::StorageError errorOf(const Work &work)
    {
        try {
            work();
        } catch (const storage::StorageError &error) {
            return error;
        }
        ADD_FAILURE() << "nothing was thrown";
        return {storage::StorageError::InputOutput, {}};
    }

private:
    TestFile m_file;
    std::unique_ptr<storage::Database> m_database;
};
