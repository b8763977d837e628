// Changing files as a whole: the order of writing and flushing, and the way back.
#include "platform/storage/Journal.h"

#include <algorithm>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;

namespace storage {

namespace {

/// What a disk writes as a whole, at the least.
constexpr qint64 sector = 512;

bool isAppended(const FileChanges &file, const Change &change)
{
    return change.position + change.after.size() > file.oldSize;
}

/// Whether the length is none of the change's business.
bool leavesLength(const FileChanges &file)
{
    return file.shared && file.newSize == file.oldSize;
}

/// The stretch as it stands in the file now, as far as it lies before the old end.
QByteArray standing(const File &file, const Change &change)
{
    return file.read(change.position, change.before.size());
}

/// The same with what stands behind the old end.
QByteArray standingWhole(const File &file, const Change &change)
{
    const qint64 there = file.size() - change.position;
    return file.read(change.position, std::clamp<qint64>(there, change.before.size(), change.after.size()));
}

QByteArray marked(const FileChanges &file, const QByteArray &before, const Change &change)
{
    QByteArray bytes = before;
    if (!file.mark)
        return bytes;
    const qint64 at = file.mark->position - change.position;
    if (at >= 0 && at + file.mark->after.size() <= bytes.size())
        bytes.replace(at, file.mark->after.size(), file.mark->after);
    return bytes;
}

/// Whether each sector of the stretch is as before (zeros behind the old end), as after, or marked.
bool isOldOrNew(const QByteArray &now, const FileChanges &file, const Change &change)
{
    const QByteArray before = change.before.leftJustified(now.size(), '\0');
    const QByteArray withMark = marked(file, before, change);
    for (qint64 at = 0; at < now.size();) {
        const qint64 size = std::min(sector - (change.position + at) % sector, now.size() - at);
        const auto is = [&](const QByteArray &other) {
            return QByteArrayView(now).sliced(at, size) == QByteArrayView(other).sliced(at, size);
        };
        if (!is(before) && !is(change.after) && !is(withMark))
            return false;
        at += size;
    }
    return true;
}

bool belongs(const File &file, const FileChanges &changes)
{
    const qint64 size = file.size();
    return size >= changes.oldSize && (size <= changes.newSize || leavesLength(changes))
        && std::ranges::all_of(changes.changes, [&](const Change &change) {
               return isOldOrNew(standingWhole(file, change), changes, change);
           });
}

bool isComplete(const File &file, const FileChanges &changes)
{
    const bool longEnough = leavesLength(changes) || file.size() == changes.newSize;
    return longEnough && std::ranges::all_of(changes.changes, [&](const Change &change) {
               return file.read(change.position, change.after.size()) == change.after;
           });
}

/// New stretches first: if the disk is full, the old content is still whole.
void apply(File &file, const FileChanges &changes)
{
    for (const Change &change : changes.changes) {
        if (isAppended(changes, change))
            file.write(change.position, bytesOf(change.after));
    }
    if (changes.mark)
        file.write(changes.mark->position, bytesOf(changes.mark->after));
    for (const Change &change : changes.changes) {
        if (!isAppended(changes, change))
            file.write(change.position, bytesOf(change.after));
    }
    file.sync();
}

/// The length first: if this is interrupted, too, no sector may be half old, half new.
void takeBack(File &file, const FileChanges &changes)
{
    if (!leavesLength(changes) && file.size() != changes.oldSize)
        file.resize(changes.oldSize);
    for (const Change &change : changes.changes) {
        if (standing(file, change) != change.before)
            file.write(change.position, bytesOf(change.before));
    }
    file.sync();
}

} // namespace

Journal::Journal(FileSystem &files, const QString &path)
    : m_files(files)
    , m_path(path)
{ }

/// Another program that shares the journal may have removed it since. One that is found may be from a program that died
/// before its name was on the disk.
File &Journal::file()
{
    if (m_file && !m_file->isStillThere())
        m_file.reset();
    if (!m_file) {
        auto opened = m_files.exists(m_path) ? m_files.open(m_path, Access::ReadWrite) : m_files.create(m_path);
        m_files.syncFolderOf(m_path);
        m_file = std::move(opened);
    }
    return *m_file;
}

/// Without a flush: a finished change whose journal is still there is found to be complete.
void Journal::forget()
{
    m_file->resize(0);
}

void Journal::commit(std::span<const Part> parts)
{
    std::vector<FileChanges> changes;
    for (const Part &part : parts)
        changes.push_back(part.changes);
    File &journal = file();
    try {
        journal.resize(0);
        journal.write(0, bytesOf(encode(changes)));
        journal.sync();
    } catch (const StorageError &) {
        // Whatever it holds, the files are as before: at the worst a change that never began is taken back.
        try {
            forget();
        } catch (const StorageError &) {
            m_interrupted = true;
        }
        throw;
    }
    try {
        for (const Part &part : parts)
            apply(part.file, part.changes);
    } catch (const StorageError &) {
        m_interrupted = true;
        try {
            for (const Part &part : parts)
                takeBack(part.file, part.changes);
            forget();
            m_interrupted = false;
        } catch (const StorageError &) {
            // The first failure is the one to tell; the next recover() goes on from here.
        }
        throw;
    }
    try {
        forget();
    } catch (const StorageError &) {
        m_file.reset(); // the change is on the disk; its journal will be found to be complete
    }
}

bool Journal::isHot() const
{
    if (!m_files.exists(m_path))
        return false;
    try {
        return m_files.open(m_path, Access::Read)->size() > 0;
    } catch (const StorageError &error) {
        // Another program has removed it just now, which nobody does to one with content.
        if (error.kind() != StorageError::Missing)
            throw;
        return false;
    }
}

Journal::Found Journal::recover(const std::function<File *(const FileChanges &changes)> &fileOf)
{
    if (!isHot()) {
        m_interrupted = false;
        return Found::Nothing;
    }
    File &journal = file();
    const auto recorded = decode(journal.read(0, journal.size()));
    Found found = Found::Nothing;
    if (recorded) {
        std::vector<File *> opened;
        bool ours = true;
        bool complete = !m_interrupted; // a failure that was told stays one
        for (const FileChanges &changes : *recorded) {
            opened.push_back(fileOf(changes));
            ours = ours && opened.back() && belongs(*opened.back(), changes);
            complete = complete && ours && isComplete(*opened.back(), changes);
        }
        if (!ours) {
            m_file.reset();
            QString other = m_path + u".fremd"_s;
            for (int number = 2; m_files.exists(other); ++number)
                other = m_path + u".fremd%1"_s.arg(number);
            m_files.rename(m_path, other);
            m_interrupted = false;
            return Found::Foreign;
        }
        for (std::size_t i = 0; i < opened.size(); ++i) {
            if (complete)
                opened[i]->sync(); // the program may have died before it did
            else
                takeBack(*opened[i], (*recorded)[i]);
        }
        found = complete ? Found::Complete : Found::TakenBack;
    }
    forget();
    m_interrupted = false;
    return found;
}

void Journal::remove()
{
    m_file.reset();
    try {
        if (m_files.exists(m_path) && !isHot())
            m_files.remove(m_path);
    } catch (const StorageError &error) {
        if (error.kind() != StorageError::FolderReadOnly && error.kind() != StorageError::NoPermission)
            throw;
    }
}

} // namespace storage
