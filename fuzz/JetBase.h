#pragma once

#include <memory>
#include <vector>

#include <QByteArray>

#include "fuzz/Target.h"
#include "platform/jet/JetDatabase.h"

namespace fuzz {

/// A small sound database with tables, indexes, long values and relationships, for inputs to damage.
struct JetBase {
    QByteArray content;
    QString password;
    qsizetype pageSize;
};

/// Jet 3, Jet 4, and Jet 4 with a password; made once, by our own engine.
const std::vector<JetBase> &jetBases();
const JetBase &drawBase(Input &input);

/// One base as an input damages it, opened; reading it may fail, opening may as well.
class JetFile
{
public:
    /// Takes the base and the patches from the input.
    explicit JetFile(Input &input);
    /// Puts a file there, and a journal beside it unless that is empty.
    JetFile(const JetBase &base, const QByteArray &content, const QByteArray &journal = {});

    std::unique_ptr<jet::JetDatabase> open(bool readOnly) const;
    QByteArray content() const;
    /// What a check of the whole file finds first; empty if nothing.
    QString fault() const;

private:
    JetFile(Input &input, const JetBase &base);

    QString m_password{};
};

} // namespace fuzz
