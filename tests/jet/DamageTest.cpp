// Damaged files: every outcome is an error or all rows, never a crash, an endless loop or fewer rows without a word.
#include <map>
#include <random>

#include "tests/jet/JetFileTest.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::StorageError;
using storage::Type;

namespace {

class DamageTest : public JetFileTest
{
protected:
    using Counts = std::map<QString, std::size_t>;

    void SetUp() override
    {
        storage::TableSchema schema{u"T"_s, {}};
        schema.columns.resize(4);
        const Type types[] = {Type::Long, Type::Text, Type::Memo, Type::Numeric};
        for (std::size_t i = 0; i < schema.columns.size(); ++i) {
            schema.columns[i].name = u"C%1"_s.arg(i);
            schema.columns[i].type = i == 3 && !GetParam().jet4() ? Type::Currency : types[i];
            schema.columns[i].size = i == 1 ? 200 : i == 3 ? 18 : 0;
        }
        schema.indexes = {primaryKey(0), index(u"iText"_s, {{1, true}})};
        database().createTable(schema);
        const auto scope = database().beginWrite();
        for (std::int64_t i = 0; i < 60; ++i) {
            const int length = static_cast<int>(i);
            table(u"T"_s).insert(std::vector<Assignment>{
                {0, i}, {1, QString(3 * length, u'ä')}, {2, QString(i % 7 == 0 ? 6000 : 3 * length, u'm')}, {3, i}});
        }
        scope->commit();
        m_counts = read();
        m_content = content();
        close();
    }
    void TearDown() override { file().setContent(m_content); }

    Counts read() const
    {
        const auto opened = file().open(true);
        Counts counts;
        for (const QString &name : opened->tableNames()) {
            storage::Table &read = *opened->table(name);
            const auto cursor = read.scan();
            while (cursor->next()) {
                ++counts[name];
                for (int i = 0; i < std::ssize(read.schema().columns); ++i)
                    cursor->value(i);
            }
            for (int i = 0; i < std::ssize(read.schema().indexes); ++i)
                counts[name + u'#' + read.schema().indexes[static_cast<std::size_t>(i)].name] = count(*read.range({i}));
        }
        opened->relationships();
        return counts;
    }

    /// False when the file told of its damage.
    bool readsWhole(const QByteArray &damaged)
    {
        file().setContent(damaged);
        try {
            const Counts counts = read();
            for (const auto &[name, rows] : m_counts) {
                // A table that lost its name is missing, and who asks for it learns so.
                if (counts.contains(name)) {
                    EXPECT_GE(counts.at(name), rows) << qPrintable(name);
                }
            }
            return true;
        } catch (const StorageError &error) {
            EXPECT_FALSE(error.text().isEmpty());
            return false;
        }
    }

    QByteArray m_content;
    Counts m_counts;
};

} // namespace

TEST_P(DamageTest, FilesCutOffTellSo)
{
    const qsizetype page = GetParam().pageSize();
    int whole = 0;
    for (qsizetype size = 0; size < m_content.size(); size += page) {
        whole += readsWhole(m_content.first(size)) ? 1 : 0;
        EXPECT_FALSE(readsWhole(m_content.first(size + page / 3)));
    }
    EXPECT_LE(whole, 1); // without the last page only if that is free
}

TEST_P(DamageTest, ChangedBytesAreNoticedOrHarmless)
{
    std::mt19937 random(GetParam().jet4() ? 4 : 3);
    int noticed = 0;
    for (int round = 0; round < 250; ++round) {
        SCOPED_TRACE(round);
        QByteArray damaged = m_content;
        const auto pageSize = static_cast<unsigned>(GetParam().pageSize());
        const auto page = random() % (static_cast<unsigned>(damaged.size()) / pageSize) * pageSize;
        const unsigned reach = round % 3 == 0 ? 64 : pageSize; // the heads of pages are the more interesting part
        for (unsigned left = 1 + random() % 4; left > 0; --left)
            damaged[page + random() % reach] = static_cast<char>(random());
        noticed += readsWhole(damaged) ? 0 : 1;
    }
    EXPECT_GT(noticed, 60);
}

INSTANTIATE_TEST_SUITE_P(Files, DamageTest, testing::ValuesIn(fileKinds()), kindName);
