#pragma once

#include <vector>

#include <QString>

namespace dao {

struct Token {
    enum Kind {
        Word, ///< a bare word: keyword or name
        Name, ///< in brackets: always a name
        Text, ///< a text literal in single or double quotes
        Number,
        Date, ///< between number signs
        Symbol,
        End
    };

    Kind kind = End;
    QString text{}; ///< without brackets, quotes and signs, doubled quotes made single
    qsizetype position = 0; ///< in the statement

    bool isWord(QStringView word) const { return kind == Word && text.compare(word, Qt::CaseInsensitive) == 0; }
    bool isSymbol(QStringView symbol) const { return kind == Symbol && text == symbol; }
    bool isName() const { return kind == Word || kind == Name; }
};

/// The tokens of one statement; the last is End. A semicolon at its end is dropped. Throws DaoError: 3075 for a text
/// or date without its end and for stray characters, 3126 for bad brackets, 3142 for anything behind a semicolon.
std::vector<Token> tokensOf(const QString &sql);

} // namespace dao
