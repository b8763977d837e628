// Files to test with.
#include "tests/jet/JetFileTest.h"

#include "platform/jet/JetDatabase.h"
#include "platform/jet/Rc4.h"
#include "platform/jet/Verifier.h"
#include "tests/fakes/FaultyFiles.h"

using namespace Qt::StringLiterals;
using storage::Type;

namespace {

/// Encrypts all pages, as other programs do.
QByteArray encrypted(QByteArray content, const FileKind &kind)
{
    // The key's bytes in the header are combined with a key stream, so combining them with the key stores it.
    for (int i = 0; i < 4; ++i)
        content[0x3E + i] = static_cast<char>(content[0x3E + i] ^ static_cast<char>(kind.pageKey >> (8 * i)));
    for (qsizetype page = 1; page * kind.pageSize() < content.size(); ++page) {
        std::array<std::byte, 4> pageKey{};
        storage::writeLE(storage::MutableBytes(pageKey), 0, kind.pageKey ^ static_cast<std::uint32_t>(page));
        const std::span bytes(content.data() + page * kind.pageSize(), static_cast<std::size_t>(kind.pageSize()));
        jet::rc4(pageKey, std::as_writable_bytes(bytes));
    }
    return content;
}

} // namespace

QString faultsOf(const QString &path, const QString &password)
{
    jet::PageFile file(storage::systemFiles(), {path, password, true});
    const jet::VerifyReport report = jet::verify(file);
    QStringList all(report.faults.begin(), report.faults.end());
    all += QStringList(report.notes.begin(), report.notes.end());
    if (report.entries != report.equalEntries)
        all += u"keys differ"_s;
    return all.join(u'\n');
}

std::optional<storage::StorageError::Kind> kindOf(const std::function<void()> &work, QString *item)
{
    try {
        work();
        return std::nullopt;
    } catch (const storage::StorageError &error) {
        EXPECT_FALSE(error.text().isEmpty());
        if (item)
            *item = error.item();
        return error.kind();
    }
}

std::size_t count(storage::Cursor &cursor)
{
    std::size_t rows = 0;
    while (cursor.next())
        ++rows;
    return rows;
}

QByteArray hex(storage::Bytes bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())).toHex(' ');
}

TestFile::TestFile(const FileKind &kind)
    : m_password(kind.password)
{
    jet::JetDriver().create({path(), m_password}, kind.version);
    if (kind.pageKey != 0)
        setContent(encrypted(content(), kind));
}

std::unique_ptr<storage::Database> TestFile::open(bool readOnly) const
{
    return jet::JetDriver().open({path(), m_password, readOnly});
}

QByteArray TestFile::content() const
{
    return readFolder(m_folder.path()).at(m_name);
}

void TestFile::setContent(const QByteArray &content) const
{
    writeFolder(m_folder.path(), {{m_name, content}});
}

void fill(storage::Database &database)
{
    const auto scope = database.beginWrite();
    database.createTable({.name = u"Parent"_s,
                          .columns = {{.name = u"Id"_s, .type = Type::Long, .autonumber = true},
                                      {.name = u"Notes"_s, .type = Type::Memo},
                                      {.name = u"Name"_s, .type = Type::Text, .size = 200},
                                      {.name = u"Amount"_s, .type = Type::Currency}},
                          .indexes = {{.name = u"iId"_s, .columns = {{0}}, .unique = true, .primary = true},
                                      {.name = u"iName"_s, .columns = {{2, true}}}}});
    database.createTable({.name = u"Child"_s, .columns = {{.name = u"Ref"_s, .type = Type::Long}}});
    database.createRelationship({.name = u"r"_s,
                                 .table = u"Parent"_s,
                                 .columns = {u"Id"_s},
                                 .foreignTable = u"Child"_s,
                                 .foreignColumns = {u"Ref"_s}});
    for (int i = 0; i < 40; ++i) {
        const QString notes(i % 7 == 0 ? 6000 : 100 + i, u'n');
        database.table(u"Parent"_s)->insert({{{1, notes}, {2, QString(5 * i, u'ä')}, {3, std::int64_t{i}}}});
    }
    scope->commit();
}
