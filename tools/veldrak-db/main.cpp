// veldrak-db: looks into database files, for support and tests.
#include <QCoreApplication>

#include "tools/veldrak-db/Program.h"

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return runProgram(QCoreApplication::arguments().sliced(1));
}
