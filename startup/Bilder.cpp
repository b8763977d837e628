// Where the program's pictures are.
#include "startup/Bilder.h"

#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::StringLiterals;

QString bilddatei(const QString &programmordner, const QString &name)
{
    for (const QString &ordner : {programmordner, QCoreApplication::applicationDirPath() + u"/../share/veldrak"_s}) {
        const QString datei = ordner + u'/' + name;
        if (QFileInfo(datei).isFile())
            return datei;
    }
    return {};
}
