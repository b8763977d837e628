// Takes SQL scripts apart.
#include "tools/veldrak-db/Script.h"

QStringList statementsOf(const QString &script)
{
    QStringList statements;
    QString statement;
    QChar closing; // of the quote or bracket that is open
    const auto take = [&] {
        if (!statement.trimmed().isEmpty())
            statements += statement.trimmed();
        statement.clear();
    };
    bool lineStarts = true;
    for (qsizetype i = 0; i < script.size(); ++i) {
        const QChar character = script[i];
        if (lineStarts && closing.isNull() && QStringView(script).sliced(i).startsWith(u"--")) {
            const qsizetype end = script.indexOf(u'\n', i);
            i = end < 0 ? script.size() : end;
            continue;
        }
        lineStarts = character == u'\n';
        if (!closing.isNull()) {
            if (character == closing)
                closing = QChar();
        } else if (character == u'\'' || character == u'"') {
            closing = character;
        } else if (character == u'[') {
            closing = u']';
        } else if (character == u';') {
            take();
            continue;
        }
        statement += character;
    }
    take();
    return statements;
}
