// What cannot be read is told in German, with its name.
#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include "platform/storage/FileSystem.h"
#include "tests/fakes/NoRights.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

TEST(ReadWholeFile, GivesTheContentOrSaysInGermanWhyNot)
{
    const QTemporaryDir folder;
    const QByteArray content("a\0ß", 4);
    const QString path = folder.filePath(u"Datei.ini"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(content) == content.size() && file.flush());
    const QString circle = folder.filePath(u"Kreis.ini"_s);
    ASSERT_TRUE(QFile::link(u"Kreis.ini"_s, circle));

    const auto fails = [](const QString &of, StorageError::Kind kind, const QString &text) {
        using namespace testing;
        EXPECT_THAT([&of] { storage::readWholeFile(of); },
                    Throws<StorageError>(AllOf(Property(&StorageError::kind, kind),
                                               Property(&StorageError::what, StrEq(text.arg(of).toStdString())))));
    };
    EXPECT_EQ(storage::readWholeFile(path), content);
    fails(folder.filePath(u"fehlt.ini"_s), StorageError::Missing, u"%1 gibt es nicht"_s);
    fails(folder.path(), StorageError::Missing, u"%1 ist keine Datei"_s);
    fails(circle, StorageError::InputOutput, u"%1: Öffnen nicht möglich (Fehler 40 des Betriebssystems)"_s);
    const NoRights none(folder.path());
    fails(path, StorageError::NoPermission, u"%1: Öffnen nicht möglich, die Berechtigung fehlt"_s);
}
