#pragma once

#include <memory>

#include <QString>
#include <QTemporaryDir>

#include "platform/jet/JetDatabase.h"
#include "platform/storage/Storage.h"

/// A Jet file of a test's own; gone with the object.
class TestFile
{
public:
    TestFile(storage::FileVersion version, const QString &password = {});

    QString path() const;
    std::unique_ptr<storage::Database> open(bool readOnly = false) const;

    /// Encrypts all pages, as other programs do; the file must be closed.
    void encrypt(std::uint32_t key) const;
    QByteArray content() const;
    void setContent(const QByteArray &content) const;

    /// What a check of the whole file finds, as one text: empty if nothing.
    QString faults() const;

private:
    QTemporaryDir m_folder{};
    QString m_password;
};
