// The configuration file: any bytes are read, or refused with a number.
#include "fuzz/Target.h"
#include "platform/errors/RunTimeError.h"
#include "util/Zeichenketten.h"
#include "util/iniDatei.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

class OneFile : public desktop::Files
{
public:
    bool exists(const QString &path) const override { return QFile::exists(path); }
    QStringList list(const QString &) const override { return {}; }
    QString shortPath(const QString &path) const override { return path; }
};

} // namespace

void fuzz::run(storage::Bytes bytes)
{
    static const Folder folder;
    const QString name = u"VELDRAK.ini"_s;
    Input input(bytes);
    QString section = input.line();
    QString key = input.line();
    const QByteArray content = input.rest();
    folder.put(name, content);

    const OneFile files;
    iniDatei ini(files);
    bool loaded = false;
    try {
        loaded = ini.IniLaden(folder.path(name));
    } catch (const RunTimeError &error) {
        const bool expected
            = error.Number() == RunTimeError::SubscriptOutOfRange || error.Number() == RunTimeError::InvalidFileFormat;
        require(expected && error.Description().startsWith(folder.path(name)), error.Description());
    }
    const QString value = ini.IniLesen(section, key);
    require(section == Trim(section) && key == Trim(key), u"the names are not trimmed"_s);
    require(value == iniDatei::KommentarEntfernen(value), u"a value with a comment: "_s + value);
    require(value.isEmpty() || loaded || content.contains('='), u"a value from nowhere"_s);
    require(folder.get(name) == content, u"the file was changed"_s);
}
