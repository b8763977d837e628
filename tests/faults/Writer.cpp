// Inserts accounts until it is ended, and says each number once its statement has returned.
#include <cstdio>

#include <QCoreApplication>

#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const auto engine = Course::engineOver(storage::systemFiles());
    const auto database = engine->OpenDatabase(arguments.at(1), 0, false, {});
    for (int number = arguments.at(2).toInt();; ++number) {
        database->Execute(
            u"INSERT INTO sPersKto (PersKtoNummer, PersKtoArt, PersKtoName) VALUES ('K%1', 75, 'Getötet')"_s.arg(
                number));
        std::printf("%d\n", number);
        std::fflush(stdout);
    }
}
