#pragma once

#include <exception>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "platform/storage/Storage.h"

/// The command line is not one that the program knows; the text tells why, in German.
class UsageError : public std::exception
{
public:
    explicit UsageError(const QString &text)
        : m_text(text)
        , m_what(text.toUtf8())
    { }

    const QString &text() const { return m_text; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    QString m_text;
    QByteArray m_what;
};

/// What the user wants.
struct Arguments {
    QString command{}; ///< one that exists; empty for help and version
    QStringList operands{}; ///< as many as the command takes
    bool help = false;
    bool showVersion = false;
    bool passwordFromInput = false;
    bool counts = false;
    storage::FileVersion version = storage::FileVersion::Jet4;

    /// `words` without the program's name. Throws UsageError.
    static Arguments parse(const QStringList &words);
    static QString helpText();
};
