#pragma once

#include <exception>

#include <QByteArray>
#include <QString>

/// A failure with the number and the German text by which the program's users know it.
///
/// The numbers are those of the Visual Basic run time (6 overflow, 9 subscript, 13 type mismatch, 91 object not set,
/// 429 cannot create, 438 unknown member ...); AutomationError and dao::DaoError add their own ranges.
class RunTimeError : public std::exception
{
public:
    /// A run-time error with the standard text of its number.
    explicit RunTimeError(int number);
    RunTimeError(int number, const QString &description);

    int Number() const { return m_number; }
    const QString &Description() const { return m_description; }
    const char *what() const noexcept override { return m_what.constData(); }

    /// The standard German text of a run-time error number; a general text for a number that has none.
    static QString standardText(int number);

    static constexpr int Overflow = 6;
    static constexpr int SubscriptOutOfRange = 9;
    static constexpr int TypeMismatch = 13;
    static constexpr int DeviceFailed = 57;
    static constexpr int PathAccess = 75;
    static constexpr int PathNotFound = 76;
    static constexpr int ObjectNotSet = 91;
    static constexpr int InvalidFileFormat = 321;
    static constexpr int InvalidPropertyValue = 380;
    static constexpr int CannotCreateObject = 429;
    static constexpr int UnknownMember = 438;
    static constexpr int AutomationFailure = 440;
    static constexpr int WrongArgumentCount = 450;
    static constexpr int ServerGone = 462;

private:
    int m_number;
    QString m_description;
    QByteArray m_what;
};
