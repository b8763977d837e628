#pragma once

#include <memory>

#include <QString>
#include <QStringList>

#include "platform/storage/FileSystem.h"

namespace storage {

/// A file that is made in steps and gets its name when it is whole and on the disk: whoever looks meanwhile, or after a
/// crash, finds no half file.
///
/// Owns       the file under another name, ".neu", until keep(); what an interrupted one has left is removed first.
/// Errors     StorageError: AlreadyExists if there is a file of that name; the rest as FileSystem has them.
class NewFile
{
public:
    /// `files` must outlive the object. `besides`: the endings of what may lie beside the file while it is being made.
    NewFile(FileSystem &files, const QString &path, const QStringList &besides);
    ~NewFile();
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    /// Where it is made, and through which files: they flush nothing, since none of it counts before finish().
    QString path() const { return m_path; }
    FileSystem &files() { return m_unflushed; }

    /// Flushes it and gives it its name. It must be closed.
    void finish();
    /// From now on it stays.
    void keep() { m_kept = true; }

private:
    /// The same files without the waiting for the disk.
    class Unflushed final : public FileSystem
    {
    public:
        explicit Unflushed(FileSystem &files)
            : m_files(files)
        { }
        std::unique_ptr<File> open(const QString &path, Access access) override;
        std::unique_ptr<File> create(const QString &path) override;
        bool exists(const QString &path) const override { return m_files.exists(path); }
        void remove(const QString &path) override { m_files.remove(path); }
        void rename(const QString &from, const QString &to) override { m_files.rename(from, to); }
        void syncFolderOf(const QString &) override { }

    private:
        FileSystem &m_files;
    };

    void clear();

    FileSystem &m_files;
    Unflushed m_unflushed;
    QString m_finalPath;
    QString m_path;
    QStringList m_besides;
    bool m_kept = false;
};

} // namespace storage
