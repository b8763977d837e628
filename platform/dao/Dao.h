#pragma once

#include <memory>

#include <QMetaType>
#include <QString>
#include <QVariant>

#include "platform/dao/DaoError.h"
#include "platform/storage/Value.h"

Q_DECLARE_METATYPE(storage::Currency)
Q_DECLARE_METATYPE(storage::Decimal)

/// The DAO object model, as far as the program uses it. Behind it an engine of our own, or the installed one.
///
/// Names are DAO's own. Every member may throw DaoError with Jet's number. All objects belong to the thread that made
/// the engine. Objects are shared; closing one ends what was opened through it.
namespace dao {

/// The data types of fields, DAO's numbers.
enum DataType : int {
    dbBoolean = 1,
    dbByte = 2,
    dbInteger = 3,
    dbLong = 4,
    dbCurrency = 5,
    dbSingle = 6,
    dbDouble = 7,
    dbDate = 8,
    dbBinary = 9,
    dbText = 10,
    dbLongBinary = 11,
    dbMemo = 12,
    dbGUID = 15,
    dbNumeric = 19
};

/// What Field::Attributes may hold, DAO's numbers.
enum FieldAttribute : int { dbAutoIncrField = 16 };

/// One column of a recordset at its current record. Belongs to the recordset, which must outlive it.
class Field
{
public:
    virtual ~Field() = default;

    virtual QString Name() const = 0;
    virtual int Type() const = 0; ///< a DataType
    virtual int Attributes() const = 0; ///< a sum of FieldAttributes: dbAutoIncrField of a counter, else 0
    /// The current record's value. Null is an invalid QVariant; otherwise by type: bool, uchar, short, int,
    /// storage::Currency, float, double, QDateTime (local, no zone), QByteArray, QString (text, memo and GUID),
    /// storage::Decimal. 3021 without a current record.
    virtual QVariant Value() const = 0;
    /// Only between Edit and Update (3020 otherwise). 3421 if the value cannot become the field's type.
    virtual void setValue(const QVariant &value) = 0;
};

/// A query's rows. A table opened by name or a plain SELECT over one table can be edited.
class Recordset
{
public:
    virtual ~Recordset() = default;

    /// Zero only when there are no records; the full count once MoveLast was called, at least 1 before.
    virtual int RecordCount() const = 0;
    virtual bool Eof() const = 0; ///< DAO's EOF, which is a macro here
    virtual void MoveFirst() = 0; ///< 3021 when empty
    virtual void MoveLast() = 0; ///< 3021 when empty
    virtual void MoveNext() = 0; ///< 3021 at EOF

    virtual int FieldCount() const = 0;
    virtual Field &Fields(int index) = 0; ///< from 0; 3265 outside
    virtual Field &Fields(const QString &name) = 0; ///< case-insensitive; 3265 if there is none

    virtual void Edit() = 0; ///< 3021 without a current record, 3027 if it cannot be edited
    virtual void Update() = 0; ///< writes what was set since Edit; 3020 without Edit
    virtual void Close() = 0;
};

/// An open database.
class Database
{
public:
    virtual ~Database() = default;

    virtual QString Name() const = 0; ///< the path it was opened with
    /// `source` is a table's name or an SQL SELECT.
    virtual std::shared_ptr<Recordset> OpenRecordset(const QString &source) = 0;
    /// Runs an action query or data definition statement; returns the number of rows affected.
    virtual int Execute(const QString &sql) = 0;
    virtual void Close() = 0;
};

/// A session with the engine under one user account.
class Workspace
{
public:
    virtual ~Workspace() = default;

    virtual QString Name() const = 0;
    virtual QString UserName() const = 0; ///< whose account it is
    /// Opens a database. `connect` is "" or ";DATABASE=path;PWD=password" for a Jet file and "FoxPro 2.6;" for a
    /// folder of dBASE tables. 3024 no such file, 3031 wrong password, 3343 not a database.
    virtual std::shared_ptr<Database> OpenDatabase(const QString &name, int options, bool readOnly,
                                                   const QString &connect)
        = 0;
    virtual void Close() = 0;
};

/// The engine: one per process, made where the program is put together.
class DBEngine
{
public:
    virtual ~DBEngine() = default;

    QString SystemDB; ///< path of the workgroup information file, for engines that have accounts
    QString DefaultUser; ///< account of the default session, and of one that is made without a name
    QString DefaultPassword; ///< that account's password

    /// A new session; it counts once it was appended to Workspaces. Without a user it is the default account's.
    virtual std::shared_ptr<Workspace> CreateWorkspace(const QString &name, const QString &user,
                                                       const QString &password)
        = 0;
    virtual void AppendWorkspace(std::shared_ptr<Workspace> workspace) = 0; ///< DAO's Workspaces.Append
    /// Opens through the default session.
    virtual std::shared_ptr<Database> OpenDatabase(const QString &name, int options, bool readOnly,
                                                   const QString &connect)
        = 0;

    enum Version { dbVersion30 = 32, dbVersion40 = 64 };
    /// Makes a new Jet database and opens it; `connect` may carry ";PWD=...". 3204 if the file exists.
    virtual std::shared_ptr<Database> CreateDatabase(const QString &name, const QString &connect, Version version) = 0;
};

/// The text form of a value, as it is when an office program turns a Variant into a string (numbers and dates by the
/// user's locale, yes/no as "Wahr"/"Falsch"); Null and Empty give "". Throws RunTimeError 13 for what is no value: an
/// object.
QString textOf(const QVariant &value);

} // namespace dao
