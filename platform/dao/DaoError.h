#pragma once

#include "platform/errors/RunTimeError.h"

namespace dao {

/// An error of the database engine, with the Jet engine's number and a German description.
class DaoError : public RunTimeError
{
public:
    using RunTimeError::RunTimeError;

    static constexpr int ItemNotFound = 3265;
    static constexpr int NoCurrentRecord = 3021;
    static constexpr int DuplicateKey = 3022;
    static constexpr int FileNotFound = 3024;
    static constexpr int DiskFull = 3026;
    static constexpr int ReadOnly = 3027;
    static constexpr int NotAValidPassword = 3031;
    static constexpr int FileFull = 3036;
    static constexpr int DiskFailed = 3040;
    static constexpr int ConnectionLost = 3043;
    static constexpr int FileInUse = 3045;
    static constexpr int RowTooLong = 3047;
    static constexpr int CannotLock = 3050; // nothing can be made beside the file
    static constexpr int CannotOpen = 3051;
    static constexpr int TooFewParameters = 3061; // a name that no table has
    static constexpr int SyntaxInExpression = 3075;
    static constexpr int UnknownTable = 3078;
    static constexpr int SyntaxInInsert = 3134;
    static constexpr int SyntaxInUpdate = 3144;
    static constexpr int TooLong = 3163;
    static constexpr int RelatedRowsExist = 3200;
    static constexpr int RelatedRowMissing = 3201;
    static constexpr int RecordLocked = 3260;
    static constexpr int Required = 3314;
    static constexpr int ZeroLength = 3315;
    static constexpr int RuleViolated = 3317;
    static constexpr int UnrecognisedFormat = 3343;
    static constexpr int ObjectClosed = 3420;
    static constexpr int TypeConversion = 3421;
};

} // namespace dao
