#pragma once

#include <functional>
#include <ostream>

#include <QByteArray>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "platform/dbf/DbfDriver.h"
#include "platform/storage/StorageError.h"

/// Tables put together byte by byte, so that the driver is not tested against itself.
struct RawField {
    const char *name;
    char type;
    int width;
    int decimals = 0;
};

/// Each record: its deletion mark, then the values, to which blanks are added behind; values left out are blank.
QByteArray rawTable(const std::vector<RawField> &fields, const std::vector<QByteArrayList> &records, int version = 0x03,
                    int codepage = 0x03);
/// A .fpt with blocks of 64 bytes and these memos from block 8 on, each in one block.
QByteArray rawMemos(const QByteArrayList &memos);
/// The number as `size` bytes, little-endian.
QByteArray littleEndian(quint32 number, int size);

/// A folder for one test, with its tables.
class Folder
{
public:
    QString path(const QString &name = {}) const { return m_folder.filePath(name); }
    void put(const QString &name, const QByteArray &content) const;
    QByteArray get(const QString &name) const;
    std::unique_ptr<storage::Database> open(bool readOnly = false) const;

private:
    QTemporaryDir m_folder;
};

/// A customer table KUNDEN with a memo: NAME C 10, ZAHL N 6.2, TAG D, JA L, NOTIZ M; three records, the second deleted.
void putCustomers(const Folder &folder);

/// They, open for writing.
class CustomersTest : public testing::Test
{
protected:
    CustomersTest()
    {
        putCustomers(folder);
        database = folder.open();
        table = database->table(QStringLiteral("KUNDEN"));
    }

    Folder folder;
    std::unique_ptr<storage::Database> database;
    storage::Table *table;
};

/// All values of all rows, one line each: values by "|", Null as "-", dates as day numbers.
QStringList rowsOf(storage::Table &table);

/// The kind that `action` throws; the text must name `mention`. Nothing thrown gives no kind.
std::optional<storage::StorageError::Kind> kindOf(const std::function<void()> &action, const QString &mention = {});

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << text.toStdString();
}
