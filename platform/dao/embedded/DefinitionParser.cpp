// Reads data definition statements: a recursive descent over the tokens.
#include <algorithm>

#include "platform/dao/embedded/Definition.h"
#include "platform/dao/embedded/Errors.h"

using namespace Qt::StringLiterals;
using storage::Column;
using storage::Index;
using storage::Relationship;
using storage::Type;

namespace dao {

namespace {

struct TypeName {
    const char16_t *name;
    Type type;
    int size = 0; // when none is given
};

constexpr TypeName typeNames[] = {
    {u"TEXT", Type::Text, 255},
    {u"VARCHAR", Type::Text, 255},
    {u"CHAR", Type::Text, 255},
    {u"MEMO", Type::Memo},
    {u"LONGTEXT", Type::Memo},
    {u"BYTE", Type::Byte},
    {u"SHORT", Type::Integer},
    {u"SMALLINT", Type::Integer},
    {u"INTEGER", Type::Long},
    {u"LONG", Type::Long},
    {u"INT", Type::Long},
    {u"COUNTER", Type::Long},
    {u"AUTOINCREMENT", Type::Long},
    {u"SINGLE", Type::Single},
    {u"REAL", Type::Single},
    {u"DOUBLE", Type::Double},
    {u"FLOAT", Type::Double},
    {u"CURRENCY", Type::Currency},
    {u"MONEY", Type::Currency},
    {u"DATETIME", Type::DateTime},
    {u"DATE", Type::DateTime},
    {u"YESNO", Type::Boolean},
    {u"BIT", Type::Boolean},
    {u"LOGICAL", Type::Boolean},
    {u"BINARY", Type::Binary, 255},
    {u"VARBINARY", Type::Binary, 255},
    {u"LONGBINARY", Type::LongBinary},
    {u"OLEOBJECT", Type::LongBinary},
    {u"GUID", Type::Guid},
    {u"NUMERIC", Type::Numeric, 18},
    {u"DECIMAL", Type::Numeric, 18},
};

class Parser
{
public:
    explicit Parser(const std::vector<Token> &tokens)
        : m_tokens(tokens)
    { }

    Definition parse()
    {
        if (take(u"DROP"))
            return dropTable();
        require(u"CREATE");
        if (take(u"TABLE"))
            return createTable();
        m_errorNumber = number::SyntaxInCreateIndex;
        const bool unique = take(u"UNIQUE");
        require(u"INDEX");
        return createIndex(unique);
    }

private:
    const Token &token() const { return m_tokens[m_at]; }

    [[noreturn]] void fail() const { throw daoError(m_errorNumber, token().text); }

    bool take(QStringView wordOrSymbol)
    {
        if (!token().isWord(wordOrSymbol) && !token().isSymbol(wordOrSymbol))
            return false;
        ++m_at;
        return true;
    }

    void require(QStringView wordOrSymbol)
    {
        if (!take(wordOrSymbol))
            fail();
    }

    QString name()
    {
        if (!token().isName())
            fail();
        return m_tokens[m_at++].text;
    }

    int wholeNumber()
    {
        bool isWhole = false;
        const int value = token().kind == Token::Number ? token().text.toInt(&isWhole) : 0;
        if (!isWhole)
            fail();
        ++m_at;
        return value;
    }

    void requireEnd() const
    {
        if (token().kind != Token::End)
            fail();
    }

    QStringList names()
    {
        require(u"(");
        QStringList result{name()};
        while (take(u","))
            result.append(name());
        require(u")");
        return result;
    }

    Definition dropTable()
    {
        m_errorNumber = number::SyntaxInDrop;
        require(u"TABLE");
        DropTable definition{name()};
        requireEnd();
        return definition;
    }

    Definition createTable()
    {
        m_table.schema.name = name();
        require(u"(");
        do {
            element();
        } while (take(u","));
        require(u")");
        requireEnd();
        return m_table;
    }

    void element()
    {
        const bool isTableConstraint = token().kind == Token::Word
            && (token().isWord(u"CONSTRAINT") || token().isWord(u"FOREIGN")
                || ((token().isWord(u"PRIMARY") && m_tokens[m_at + 1].isWord(u"KEY"))));
        if (!isTableConstraint)
            return column();
        const QString constraint = constraintName();
        m_errorNumber = number::SyntaxInConstraint;
        if (take(u"FOREIGN")) {
            require(u"KEY");
            references(constraint, names());
        } else {
            const bool primary = take(u"PRIMARY");
            require(primary ? u"KEY" : u"UNIQUE");
            key(constraint, primary, names());
        }
        m_errorNumber = number::SyntaxInCreateTable;
    }

    QString constraintName() { return take(u"CONSTRAINT") ? name() : QString(); }

    void key(const QString &constraint, bool primary, const QStringList &columns)
    {
        Index index;
        index.name = !constraint.isEmpty() ? constraint : primary ? u"PrimaryKey"_s : columns.join(u'_');
        for (const QString &column : columns) {
            const auto position = m_table.schema.find(column);
            if (!position)
                throw daoError(number::IndexColumnUnknown, column);
            index.columns.push_back({*position});
        }
        index.unique = true;
        index.primary = primary;
        index.required = primary;
        m_table.schema.indexes.push_back(index);
    }

    /// REFERENCES table [(columns)] [ON UPDATE CASCADE] [ON DELETE CASCADE]
    void references(const QString &constraint, const QStringList &columns)
    {
        require(u"REFERENCES");
        Relationship relationship;
        relationship.table = name();
        relationship.name = constraint.isEmpty() ? relationship.table + m_table.schema.name : constraint;
        if (token().isSymbol(u"("))
            relationship.columns = names();
        relationship.foreignTable = m_table.schema.name;
        relationship.foreignColumns = columns;
        while (take(u"ON")) {
            const bool isUpdate = take(u"UPDATE");
            if (!isUpdate)
                require(u"DELETE");
            require(u"CASCADE");
            (isUpdate ? relationship.cascadeUpdates : relationship.cascadeDeletes) = true;
        }
        m_table.relationships.push_back(relationship);
    }

    void column()
    {
        m_errorNumber = number::SyntaxInColumn;
        Column column;
        column.name = name();
        type(column);
        m_table.schema.columns.push_back(column);
        while (property(m_table.schema.columns.back())) { }
        m_errorNumber = number::SyntaxInCreateTable;
    }

    void type(Column &column)
    {
        const auto *known
            = std::ranges::find_if(typeNames, [this](const TypeName &t) { return token().isWord(t.name); });
        if (known == std::end(typeNames))
            fail();
        column.autonumber = token().isWord(u"COUNTER") || token().isWord(u"AUTOINCREMENT");
        ++m_at;
        column.type = known->type;
        column.size = known->size;
        if (known->size == 0 || !take(u"("))
            return;
        column.size = wholeNumber();
        if (column.type == Type::Numeric && take(u","))
            column.scale = wholeNumber();
        require(u")");
    }

    bool property(Column &column)
    {
        if (take(u"NOT")) {
            require(u"NULL");
            column.required = true;
            return true;
        }
        if (take(u"NULL"))
            return true;
        if (take(u"DEFAULT")) {
            column.defaultValue = expression();
            return true;
        }
        const bool isNamed = token().isWord(u"CONSTRAINT");
        const QString constraint = constraintName();
        const bool primary = take(u"PRIMARY");
        if (primary)
            require(u"KEY");
        if (primary || take(u"UNIQUE"))
            key(constraint, primary, {column.name});
        else if (token().isWord(u"REFERENCES"))
            references(constraint, {column.name});
        else if (isNamed)
            fail();
        else
            return false;
        return true;
    }

    /// A default value as the expression that Jet stores: a literal, with a sign perhaps, or a call without arguments.
    QString expression()
    {
        QString result = take(u"-") ? u"-"_s : QString();
        const Token value = token();
        if (value.kind == Token::End || value.kind == Token::Symbol)
            fail();
        ++m_at;
        if (value.kind == Token::Text) {
            QString content = value.text;
            return u'"' + content.replace(u"\""_s, u"\"\""_s) + u'"';
        }
        result += value.kind == Token::Date ? u'#' + value.text + u'#' : value.text;
        if (take(u"(")) {
            require(u")");
            result += u"()"_s;
        }
        return result;
    }

    Definition createIndex(bool unique)
    {
        CreateIndex definition;
        definition.index.name = name();
        definition.index.unique = unique;
        require(u"ON");
        definition.table = name();
        require(u"(");
        do {
            definition.columns.append(name());
            const bool descending = take(u"DESC");
            if (!descending)
                take(u"ASC");
            definition.index.columns.push_back({0, descending});
        } while (take(u","));
        require(u")");
        if (take(u"WITH"))
            indexOption(definition.index);
        requireEnd();
        return definition;
    }

    void indexOption(Index &index)
    {
        if (take(u"PRIMARY")) {
            index.primary = true;
            index.unique = true;
            index.required = true;
            return;
        }
        index.required = take(u"DISALLOW");
        index.ignoreNulls = !index.required && take(u"IGNORE");
        if (!index.required && !index.ignoreNulls)
            fail();
        require(u"NULL");
    }

    const std::vector<Token> &m_tokens;
    std::size_t m_at = 0;
    int m_errorNumber = number::SyntaxInCreateTable;
    CreateTable m_table;
};

} // namespace

Definition definitionOf(const std::vector<Token> &tokens)
{
    return Parser(tokens).parse();
}

} // namespace dao
