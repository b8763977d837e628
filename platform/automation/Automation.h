#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <QMetaType>
#include <QString>
#include <QVariant>

#include "platform/errors/RunTimeError.h"

/// A failed call of another program's object: 438 unknown member, 450 wrong arguments, 13 a value of a type that does
/// not fit, 6 a number out of range, 462 program gone, 440 no answer in time, busy for too long, or a failure without a
/// number; otherwise the number that the other program gave (91 while it shows a notice window). The description is
/// German and names the member.
class AutomationError : public RunTimeError
{
public:
    using RunTimeError::RunTimeError;
};

/// One argument of a call. By value it is just handed over; by reference its new value comes back after the call.
class Argument
{
public:
    template <typename T>
    requires(!std::same_as<T, Argument>)
        Argument(const T &value) // NOLINT(google-explicit-constructor): arguments are written in braces
        : m_value(QVariant::fromValue(value))
    { }

    /// The referenced variable must live until the call returns.
    template <typename T> static Argument byReference(T &variable)
    {
        Argument argument(QVariant::fromValue(variable));
        argument.m_store = [&variable](const QVariant &value) { variable = value.value<T>(); };
        return argument;
    }

    const QVariant &value() const { return m_value; }
    bool isByReference() const { return static_cast<bool>(m_store); }
    /// Hands back the new value of a by-reference argument.
    void store(const QVariant &value) const { m_store(value); }

private:
    QVariant m_value;
    std::function<void(const QVariant &)> m_store;
};

using Arguments = std::vector<Argument>;

/// An object of another program, late bound: members are known by name only.
///
/// Results are simple values, Empty (QVariant::fromValue(nullptr): what a member without a result gives), Null (an
/// invalid QVariant), or another object as std::shared_ptr<AutomationObject> (see objectOf). Whole numbers keep their
/// width: short is 16 bit, int is 32 bit. Threads: the one that created it. Every member may throw AutomationError.
///
/// What an implementation owes its callers, whatever the other program does:
/// - A call ends after a fixed time at the latest, and handles no user event meanwhile. (COM itself waits for ever and
///   dispatches messages: its message filter has to answer MessagePending with "wait, do not process", and cancel.)
/// - A program that is gone is 462, whether it went before the call or during it (COM: RPC_S_SERVER_UNAVAILABLE,
///   RPC_E_DISCONNECTED, RPC_E_SERVER_DIED).
/// - A program that says it is busy (COM: RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER, for which a message filter
///   is asked) has done nothing: it is asked again after a short pause, until the time is up. Nobody is told before.
/// - A call without an answer in time may have been carried out: it fails and is never repeated.
/// - A program that did not answer in time, or was busy for good, gets only a fraction of the time for its next calls,
///   until it answers again: whoever tidies up after a failure must not wait for it twice.
/// - A result that is no simple value or object (arrays, structures, dates, handles, errors as values) is failure 13, a
///   number that is none (NaN, infinite) is 6, a by-reference value that comes back with another type is 13, too few of
///   them is 440. Then no variable is changed.
class AutomationObject
{
public:
    virtual ~AutomationObject() = default;

    virtual QVariant get(const QString &property) = 0;
    virtual QVariant call(const QString &method, const Arguments &arguments = {}) = 0;
};

using AutomationObjectPtr = std::shared_ptr<AutomationObject>;
Q_DECLARE_METATYPE(AutomationObjectPtr)

/// The object in a result; nullptr if the result is no object.
AutomationObjectPtr objectOf(const QVariant &result);

/// The whole number in a member's result. Throws AutomationError: 13 if it is no number, 6 beyond 32 bit.
qint32 wholeNumberOf(const QString &member, const QVariant &result);

/// Where objects of other programs come from.
class Automation
{
public:
    virtual ~Automation() = default;

    /// The object behind a ProgID, or nullptr when no running program offers it. Never starts a program.
    virtual AutomationObjectPtr CreateObject(const QString &progId) = 0;
};
