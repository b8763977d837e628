#pragma once

#include <exception>

#include <QByteArray>
#include <QString>

namespace storage {

/// What a file format reports when the world failed it. The DAO layer turns it into Jet's numbers.
class StorageError : public std::exception
{
public:
    enum Kind {
        Missing, ///< no such file or folder
        NotThisFormat, ///< some other kind of file
        WrongPassword,
        Damaged, ///< contradicts itself, is cut off, or cannot be decoded; the text names file and place
        ReadOnly, ///< opened for reading, or the file or its disk cannot be written
        FolderReadOnly, ///< no file may be made beside it, so nobody could write safely
        NoPermission, ///< the user may not open, make or remove it
        Locked, ///< another program holds what is needed
        DiskFull,
        FileFull, ///< the format's greatest length is reached
        ConnectionLost, ///< the share or device with the file is gone
        InputOutput, ///< any other failure of the operating system
        NoSuchTable,
        NoSuchColumn,
        NoSuchIndex,
        AlreadyExists, ///< table, column, index or file of that name
        Duplicate, ///< a unique index refuses the row
        Required, ///< Null in a required column
        ZeroLength, ///< empty text where none is allowed
        TooLong, ///< does not fit the column
        RowTooLong, ///< each value fits its column, all together fit no page
        OutOfRange, ///< a number that the column cannot hold
        NotEncodable, ///< characters outside the file's code page
        WrongType, ///< the value cannot become the column's type
        RuleViolated, ///< a validation rule refuses the value; the text names the rule
        ParentMissing, ///< an enforced relationship: no row in the referenced table
        ChildrenExist, ///< an enforced relationship: rows still refer to this one
        RowGone, ///< the row was deleted meanwhile
        Unsupported ///< valid, but beyond what this driver keeps; nothing was changed
    };

    /// `text` names file, place and cause, in German; `item` is the table, column or index concerned, if any.
    StorageError(Kind kind, const QString &text, const QString &item = {});

    Kind kind() const { return m_kind; }
    const QString &text() const { return m_text; }
    const QString &item() const { return m_item; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    Kind m_kind;
    QString m_text;
    QString m_item;
    QByteArray m_what;
};

} // namespace storage
