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
        if (m_super)
            m_dropped = seteuid(nobody) == 0;
    }
    ~NoRights()
    {
        if (m_dropped)
            m_dropped = seteuid(0) != 0;
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
