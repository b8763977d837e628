// Takes a connect string apart.
#include "platform/dao/embedded/ConnectString.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace dao {

ConnectString connectStringOf(const QString &text)
{
    ConnectString result;
    const QStringList parts = text.split(u';');
    result.kind = parts.first().trimmed();
    for (const QString &part : parts.sliced(1)) {
        const QString key = part.section(u'=', 0, 0).trimmed();
        if (key.compare(u"DATABASE", Qt::CaseInsensitive) == 0)
            result.database = part.section(u'=', 1);
        if (key.compare(u"PWD", Qt::CaseInsensitive) == 0)
            result.password = part.section(u'=', 1);
    }
    result.isJet = result.kind.isEmpty();
    result.isDBase = result.kind.startsWith(u"FoxPro"_s, Qt::CaseInsensitive)
        || result.kind.startsWith(u"dBASE"_s, Qt::CaseInsensitive);
    return result;
}

} // namespace dao
