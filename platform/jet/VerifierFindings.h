#pragma once

#include <QString>

#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/jet/Verifier.h"
#include "platform/storage/StorageError.h"

namespace jet {

/// Equal oddities of one place: how many, and where the first one is.
struct Oddities {
    void add(RowPointer row)
    {
        if (count++ == 0)
            first = row;
    }

    std::uint64_t count = 0;
    RowPointer first{};
};

/// Collects what a check finds.
class Findings
{
public:
    explicit Findings(VerifyReport &report)
        : m_report(report)
    { }

    VerifyReport &report() { return m_report; }
    void fault(const QString &text);
    void fault(PageNo page, const QString &text);
    void note(const QString &text);
    /// One note for all of them; none if there are none.
    void note(const Oddities &oddities, const QString &place, const QString &what);
    bool full() const { return m_report.faults.size() >= VerifyReport::faultLimit; }

    /// Runs a part of the check; an error that ends it is a finding, unless the file cannot be read at all. Returns
    /// whether the part came to its end.
    template <typename Work> bool attempt(const QString &place, const Work &work)
    {
        try {
            work();
            return true;
        } catch (const storage::StorageError &error) {
            if (error.kind() == storage::StorageError::InputOutput)
                throw;
            fault(QStringLiteral("%1: %2").arg(place, error.text()));
            return false;
        }
    }

private:
    VerifyReport &m_report;
};

} // namespace jet
