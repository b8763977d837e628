// Files to test with.
#include "tests/jet/TestFile.h"

#include <stdexcept>

#include <QFile>

#include "platform/jet/Rc4.h"
#include "platform/jet/Verifier.h"

using namespace Qt::StringLiterals;

TestFile::TestFile(storage::FileVersion version, const QString &password)
    : m_password(password)
{
    jet::JetDriver().create({path(), password}, version);
}

QString TestFile::path() const
{
    return m_folder.filePath(u"test.mdb"_s);
}

std::unique_ptr<storage::Database> TestFile::open(bool readOnly) const
{
    return jet::JetDriver().open({path(), m_password, readOnly});
}

void TestFile::encrypt(std::uint32_t key) const
{
    QByteArray content = this->content();
    const bool jet4 = content[0x14] == 1;
    const qsizetype pageSize = jet4 ? 4096 : 2048;
    // The key's bytes in the header are combined with a key stream, so combining them with the key stores it.
    for (int i = 0; i < 4; ++i)
        content[0x3E + i] = static_cast<char>(content[0x3E + i] ^ static_cast<char>(key >> (8 * i)));
    for (qsizetype page = 1; page * pageSize < content.size(); ++page) {
        std::array<std::byte, 4> pageKey{};
        storage::writeLE(storage::MutableBytes(pageKey), 0, key ^ static_cast<std::uint32_t>(page));
        const auto bytes = std::as_writable_bytes(std::span(content.data() + page * pageSize, std::size_t(pageSize)));
        jet::rc4(pageKey, bytes);
    }
    setContent(content);
}

QByteArray TestFile::content() const
{
    QFile file(path());
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no test file");
    return file.readAll();
}

void TestFile::setContent(const QByteArray &content) const
{
    QFile file(path());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("test file not written");
}

QString TestFile::faults() const
{
    jet::PageFile file(storage::systemFiles(), {path(), m_password, true});
    const jet::VerifyReport report = jet::verify(file);
    QStringList all(report.faults.begin(), report.faults.end());
    all += QStringList(report.notes.begin(), report.notes.end());
    if (report.entries != report.equalEntries)
        all += u"keys differ"_s;
    return all.join(u'\n');
}
