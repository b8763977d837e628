// A journal beside a good Jet file. A whole one of an interrupted change takes the change back; whatever else lies
// there leaves every byte that is not its own as it is.
#include "fuzz/JetBase.h"
#include "fuzz/Patches.h"
#include "platform/storage/JournalRecord.h"

using namespace Qt::StringLiterals;
using storage::FileChanges;
using storage::Stretch;

namespace {

constexpr qsizetype sector = storage::sectorSize;

/// A change of some pages, and of the file's length, as a statement makes it.
struct Drawn {
    FileChanges changes{};
    std::vector<QByteArray> contents{};
};

Drawn drawChanges(fuzz::Input &input, const fuzz::JetBase &base)
{
    Drawn drawn;
    drawn.changes.oldSize = base.content.size();
    drawn.changes.newSize = base.content.size() + base.pageSize * (input.byte() % 3);
    const std::uint32_t pages = static_cast<std::uint32_t>(drawn.changes.newSize / base.pageSize);
    std::uint32_t page = 0;
    for (int left = input.byte() % 4; left >= 0; --left) {
        page += 1 + input.below(pages / 4); // not page 0: without its head the file would not be looked at
        if (page >= pages)
            break;
        drawn.changes.stretches.push_back({page * base.pageSize, base.pageSize});
        QByteArray after = base.content.mid(page * base.pageSize, base.pageSize).leftJustified(base.pageSize, '\0');
        for (int patches = input.byte() % 3; patches >= 0; --patches) {
            after.replace(input.below(static_cast<std::size_t>(base.pageSize - 8)), 8, input.bytes(8).leftJustified(8));
        }
        drawn.contents.push_back(after);
    }
    drawn.changes.content = [contents = drawn.contents](std::size_t i) { return contents[i]; };
    return drawn;
}

/// The file when somebody has pulled the plug: some sectors are written, others not.
QByteArray interrupted(QByteArray content, const Drawn &drawn, fuzz::Input &input)
{
    if (input.byte() % 2 == 1)
        content.resize(drawn.changes.newSize, '\0');
    for (std::size_t i = 0; i < drawn.contents.size(); ++i) {
        const Stretch &stretch = drawn.changes.stretches[i];
        if (stretch.position + stretch.size > content.size())
            continue;
        const std::uint8_t written = input.byte();
        for (qsizetype at = 0; at < stretch.size; at += sector) {
            if ((written >> (at / sector)) % 2 == 1)
                content.replace(stretch.position + at, sector, drawn.contents[i].sliced(at, sector));
        }
    }
    return content;
}

/// A file with this content, while journals are made and read.
class OnDisk
{
public:
    explicit OnDisk(const QByteArray &content)
    {
        m_folder.put(u"datei"_s, content);
        m_file = storage::systemFiles().open(m_folder.path(u"datei"_s), storage::Access::ReadWrite);
    }
    storage::File &file() { return *m_file; }

private:
    fuzz::Folder m_folder{};
    std::unique_ptr<storage::File> m_file{};
};

QByteArray journalOf(const QByteArray &content, const FileChanges &changes)
{
    OnDisk database(content);
    OnDisk journal({});
    const storage::Journal::Part part{database.file(), changes};
    const qint64 end = storage::writeRecord(journal.file(), storage::firstRecord, {&part, 1});
    return journal.file().read(0, end);
}

/// So that what follows is looked at: the length and the checksum are right.
void seal(QByteArray &journal)
{
    if (journal.size() < storage::firstRecord)
        return;
    const auto head = std::as_writable_bytes(std::span(journal.data(), std::size_t(storage::firstRecord)));
    const auto record = QByteArrayView(journal).sliced(storage::firstRecord);
    storage::writeLE(head, 16, static_cast<std::uint64_t>(storage::firstRecord));
    storage::writeLE(head, 24, static_cast<std::uint64_t>(record.size()));
    storage::writeLE(head, 32, storage::checksum(record));
}

/// Every byte that differs must be one that the journal's change had written.
void checkOwn(const QByteArray &before, const QByteArray &after, const QByteArray &journal)
{
    OnDisk disk(journal);
    const auto record = storage::RecordReader::open(disk.file());
    fuzz::require(record.has_value(), u"something that is no journal has changed the file"_s);
    QByteArray taken = before; // with all that may have been taken back
    for (const FileChanges &file : record->files()) {
        fuzz::require(after.size() == before.size() || after.size() == file.oldSize, u"another length"_s);
        for (const Stretch &stretch : file.stretches)
            taken.replace(stretch.position, stretch.size, after.mid(stretch.position, stretch.size));
    }
    fuzz::require(taken.startsWith(after), u"bytes were changed that the journal does not name"_s);
}

} // namespace

void fuzz::run(storage::Bytes bytes)
{
    Input input(bytes);
    const std::uint8_t kind = input.byte();
    const JetBase &base = drawBase(input);
    const Drawn drawn = drawChanges(input, base);
    const QByteArray content = interrupted(base.content, drawn, input);
    QByteArray journal = journalOf(base.content, drawn.changes);
    const bool whole = kind % 3 == 0;
    if (!whole) {
        journal = kind % 16 == 1 ? input.rest() : patched(journal, input, 64);
        if (kind % 3 == 1)
            seal(journal);
    }

    const JetFile file(base, content, journal);
    const bool opened = succeeds([&] { file.open(kind / 3 % 2 == 1); });
    const QByteArray after = file.content();
    bool allWritten = content.size() == drawn.changes.newSize;
    for (std::size_t i = 0; i < drawn.contents.size(); ++i)
        allWritten &= content.mid(drawn.changes.stretches[i].position, drawn.contents[i].size()) == drawn.contents[i];
    if (whole && opened)
        require(after == (allWritten ? content : base.content), u"an interrupted change was not taken back"_s);
    if (after != content)
        checkOwn(content, after, journal);
}
