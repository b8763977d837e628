#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QString>

/// Takes away all rights to a folder for as long as it lives, even if the test runs as the superuser.
class NoRights
{
public:
    explicit NoRights(const QString &folder)
        : m_folder(QFile::encodeName(folder))
    {
        chmod(m_folder.constData(), 0);
        if (m_super) // the real user as well: some questions are answered for that one
            m_dropped = setresuid(nobody, nobody, 0) == 0;
    }
    ~NoRights()
    {
        if (m_dropped)
            m_dropped = setresuid(0, 0, 0) != 0;
        chmod(m_folder.constData(), 0700);
    }
    NoRights(const NoRights &) = delete;
    NoRights &operator=(const NoRights &) = delete;

private:
    static constexpr uid_t nobody = 65534;

    QByteArray m_folder;
    bool m_super = geteuid() == 0;
    bool m_dropped = false;
};
