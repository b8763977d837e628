// A journal beside a good Jet file. A whole one of an interrupted change takes the change back; whatever else lies
// there leaves every byte that is not its own as it is.
#include <QCryptographicHash>

#include "fuzz/JetBase.h"
#include "fuzz/Patches.h"
#include "platform/storage/Journal.h"

using namespace Qt::StringLiterals;
using storage::Change;
using storage::FileChanges;
using storage::Journal;

namespace {

constexpr qsizetype headSize = 56; // of a journal: name, length, hash
constexpr qsizetype sector = 512;

/// A change of some pages, and of the file's length, as a statement makes it.
FileChanges drawChanges(fuzz::Input &input, const fuzz::JetBase &base)
{
    FileChanges changes{.oldSize = base.content.size(), .newSize = base.content.size()};
    changes.newSize += base.pageSize * (input.byte() % 3);
    const std::uint32_t pages = static_cast<std::uint32_t>(changes.newSize / base.pageSize);
    std::uint32_t page = 0;
    for (int left = input.byte() % 4; left >= 0; --left) {
        page += 1 + input.below(pages / 4); // not page 0: without its head the file would not be looked at
        if (page >= pages)
            break;
        Change change{page * base.pageSize, base.content.mid(page * base.pageSize, base.pageSize)};
        change.after = change.before.leftJustified(base.pageSize, '\0');
        for (int patches = input.byte() % 3; patches >= 0; --patches)
            change.after.replace(input.below(static_cast<std::size_t>(base.pageSize - 8)), 8,
                                 input.bytes(8).leftJustified(8));
        changes.changes.push_back(change);
    }
    return changes;
}

/// The file when somebody has pulled the plug: some sectors are written, others not.
QByteArray interrupted(QByteArray content, const FileChanges &changes, fuzz::Input &input)
{
    if (input.byte() % 2 == 1)
        content.resize(changes.newSize, '\0');
    for (const Change &change : changes.changes) {
        if (change.position + change.after.size() > content.size())
            continue;
        const std::uint8_t written = input.byte();
        for (qsizetype at = 0; at < change.after.size(); at += sector) {
            if ((written >> (at / sector)) % 2 == 1)
                content.replace(change.position + at, sector, change.after.sliced(at, sector));
        }
    }
    return content;
}

/// So that what follows is looked at: the length and the hash are right.
void seal(QByteArray &journal)
{
    if (journal.size() < headSize)
        return;
    storage::writeLE(std::as_writable_bytes(std::span(journal.data(), headSize)), 16,
                     static_cast<std::uint64_t>(journal.size()));
    journal.replace(24, 32,
                    QCryptographicHash::hash(QByteArrayView(journal).sliced(headSize), QCryptographicHash::Sha256));
}

/// Every byte that differs must be one that the journal's change had written.
void checkOwn(const QByteArray &before, const QByteArray &after, const QByteArray &journal)
{
    const auto recorded = Journal::decode(journal);
    fuzz::require(recorded.has_value(), u"something that is no journal has changed the file"_s);
    QByteArray taken = before; // with all that may have been taken back
    for (const FileChanges &file : *recorded) {
        fuzz::require(after.size() == before.size() || after.size() == file.oldSize, u"another length"_s);
        for (const Change &change : file.changes) {
            const QByteArray back = change.before;
            taken.replace(change.position, back.size(), back);
        }
    }
    fuzz::require(taken.startsWith(after), u"bytes were changed that the journal does not name"_s);
}

} // namespace

void fuzz::run(storage::Bytes bytes)
{
    Input input(bytes);
    const std::uint8_t kind = input.byte();
    const JetBase &base = drawBase(input);
    const FileChanges changes = drawChanges(input, base);
    const QByteArray content = interrupted(base.content, changes, input);
    QByteArray journal = Journal::encode({&changes, 1});
    const bool whole = kind % 3 == 0;
    if (!whole) {
        journal = kind % 16 == 1 ? input.rest() : patched(journal, input, 64);
        if (kind % 3 == 1)
            seal(journal);
    }

    const JetFile file(base, content, journal);
    const bool opened = succeeds([&] { file.open(kind / 3 % 2 == 1); });
    const QByteArray after = file.content();
    const bool allWritten
        = content.size() == changes.newSize && std::ranges::all_of(changes.changes, [&](const Change &change) {
              return content.mid(change.position, change.after.size()) == change.after;
          });
    if (whole && opened)
        require(after == (allWritten ? content : base.content), u"an interrupted change was not taken back"_s);
    if (after != content)
        checkOwn(content, after, journal);
}
