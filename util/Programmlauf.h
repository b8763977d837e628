#pragma once

#include <exception>

#include "platform/desktop/Desktop.h"

/// Unwinds what is still running when the program has ended. Whoever catches it at the event loop shows nothing.
class ProgrammBeendet : public std::exception
{
public:
    const char *what() const noexcept override { return "the program has ended"; }
};

/// What every part may ask of the program's course.
///
/// All members throw ProgrammBeendet once the program has ended, even if that happened while a box was shown or events
/// were handled: whatever was waiting for them must not go on.
class Programmlauf
{
public:
    virtual ~Programmlauf() = default;

    /// The regular end: ACT! gets its window back, databases are closed, a pending error is shown.
    [[noreturn]] void ProgrammEnde()
    {
        regulaeresEnde();
        throw ProgrammBeendet();
    }
    /// The immediate end: nothing is restored.
    [[noreturn]] void SofortEnde()
    {
        sofortigesEnde();
        throw ProgrammBeendet();
    }

    /// Handles the events that have piled up.
    virtual void DoEvents() = 0;
    virtual desktop::Answer MsgBox(const desktop::Box &box) = 0;

protected:
    virtual void regulaeresEnde() = 0;
    virtual void sofortigesEnde() = 0;
};
