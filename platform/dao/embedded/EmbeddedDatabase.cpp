// A database of the object model: queries give recordsets, everything else is executed as one whole.
#include "platform/dao/embedded/EmbeddedDatabase.h"

#include "platform/dao/embedded/Definition.h"
#include "platform/dao/embedded/EmbeddedRecordset.h"
#include "platform/dao/embedded/Errors.h"

namespace dao {

EmbeddedDatabase::EmbeddedDatabase(const QString &name, std::unique_ptr<storage::Database> database,
                                   DefinitionMode definitions)
    : m_name(name)
    , m_definitions(definitions)
    , m_connection(std::make_shared<Connection>(std::move(database)))
{ }

QString EmbeddedDatabase::Name() const
{
    static_cast<void>(m_connection->database());
    return m_name;
}

bool EmbeddedDatabase::isOpen() const
{
    return m_connection->isOpen();
}

std::shared_ptr<Recordset> EmbeddedDatabase::OpenRecordset(const QString &source)
{
    return translated(
        Doing::Work, [&] { return std::make_shared<EmbeddedRecordset>(m_connection, openRows(m_connection, source)); });
}

int EmbeddedDatabase::Execute(const QString &sql)
{
    return translated(Doing::Work, [&] {
        const std::vector<Token> tokens = tokensOf(sql);
        switch (kindOf(tokens)) {
        case StatementKind::Select:
            throw daoError(number::SelectInExecute);
        case StatementKind::Definition:
            runDefinition(tokens);
            return 0;
        default:
            return m_connection->run(m_connection->translate(sql));
        }
    });
}

void EmbeddedDatabase::runDefinition(const std::vector<Token> &tokens)
{
    const Definition definition = definitionOf(tokens);
    const auto run = [&] { define(m_connection->database(), definition); };
    if (m_definitions == DefinitionMode::InScope)
        m_connection->atomically(run);
    else
        m_connection->alone(run);
}

void EmbeddedDatabase::Close()
{
    static_cast<void>(m_connection->database());
    m_connection->close();
}

} // namespace dao
