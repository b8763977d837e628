#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <ostream>

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "platform/storage/Bytes.h"
#include "platform/storage/Storage.h"

/// The kinds of files that every test of a whole database goes through.
struct FileKind {
    const char *name;
    storage::FileVersion version;
    std::uint32_t pageKey = 0; ///< 0: not encrypted
    QString password{};

    bool jet4() const { return version == storage::FileVersion::Jet4; }
    qsizetype pageSize() const { return jet4() ? 4096 : 2048; }
};
inline const FileKind plainKinds[] = {{"Jet3", storage::FileVersion::Jet3}, {"Jet4", storage::FileVersion::Jet4}};
inline const FileKind fileKinds[]
    = {plainKinds[0],
       plainKinds[1],
       {"Jet3Encrypted", storage::FileVersion::Jet3, 0x5A17C0DE},
       {"Jet4EncryptedWithPassword", storage::FileVersion::Jet4, 0x5A17C0DE, QStringLiteral("Größe 1")}};

inline void PrintTo(const FileKind &kind, std::ostream *out)
{
    *out << kind.name;
}

/// What a check of the whole file finds, as one text: empty if nothing.
QString faultsOf(const QString &path, const QString &password = {});

/// How `work` fails, and on which item; nothing if it does not.
std::optional<storage::StorageError::Kind> kindOf(const std::function<void()> &work, QString *item = nullptr);

std::size_t count(storage::Cursor &cursor);
QByteArray hex(storage::Bytes bytes);

/// A Jet file of a test's own; gone with the object.
class TestFile
{
public:
    explicit TestFile(const FileKind &kind);

    QString path() const { return m_folder.filePath(m_name); }
    std::unique_ptr<storage::Database> open(bool readOnly = false) const;
    QByteArray content() const;
    /// The file must be closed.
    void setContent(const QByteArray &content) const;
    QString faults() const { return faultsOf(path(), m_password); }

private:
    const QString m_name = QStringLiteral("test.mdb");
    QTemporaryDir m_folder{};
    QString m_password;
};

/// Two tables with a relationship: 40 rows with long texts in "Parent", none in "Child".
void fill(storage::Database &database);

/// A new database of one kind, open for writing. After the test the whole file must be in order.
class JetFileTest : public testing::TestWithParam<FileKind>
{
protected:
    void TearDown() override
    {
        database.reset();
        EXPECT_EQ(file.faults(), QString());
    }
    storage::Table &table(const QString &name) { return *database->table(name); }

    const TestFile file{GetParam()};
    std::unique_ptr<storage::Database> database = file.open();
};
