// The maker's lines.
#include "startup/Hersteller.h"

using namespace Qt::StringLiterals;

namespace Hersteller {

QString webzeile(const QString &seite)
{
    return u"Internet: "_s + (seite.isEmpty() ? u"die Projektseite, von der Sie das Programm haben"_s : seite);
}

QString internet()
{
    return webzeile(QStringLiteral(VELDRAK_PROJEKTSEITE));
}

QStringList zeilen()
{
    return {
        u"VELDRAK-Projekt"_s,
        u"ein freies Projekt für Büros mit ACT! und PC-Kaufmann"_s,
        u"E-Mail: nur über die Projektseite"_s,
        internet(),
    };
}

} // namespace Hersteller
