#pragma once

#include <QString>

namespace desktop {

/// While the application object is made: where there is no display, the toolkit would abort with English words. The
/// program ends with a German sentence on standard error and exit code 1 instead.
class DisplayGuard
{
public:
    /// `program` begins the sentence.
    explicit DisplayGuard(const QString &program);
    ~DisplayGuard();
    DisplayGuard(const DisplayGuard &) = delete;
    DisplayGuard &operator=(const DisplayGuard &) = delete;
};

} // namespace desktop
