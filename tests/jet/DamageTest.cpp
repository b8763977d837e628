// Damaged files: every outcome is an error or all rows, never a crash, an endless loop or fewer rows without a word.
#include <map>
#include <random>

#include "tests/jet/JetFileTest.h"

using namespace Qt::StringLiterals;

namespace {

class DamageTest : public JetFileTest
{
protected:
    using Counts = std::map<QString, std::size_t>; // rows of each table and index

    void SetUp() override
    {
        fill(*database);
        database.reset();
        m_counts = read();
        m_content = file.content();
    }
    void TearDown() override { }

    Counts read() const
    {
        const auto opened = file.open(true);
        Counts counts;
        for (const QString &name : opened->tableNames()) {
            storage::Table &table = *opened->table(name);
            for (const auto cursor = table.scan(); cursor->next(); ++counts[name]) {
                for (int i = 0; i < std::ssize(table.schema().columns); ++i)
                    cursor->value(i);
            }
            for (int i = 0; i < std::ssize(table.schema().indexes); ++i)
                counts[name + QString::number(i)] = count(*table.range({i}));
        }
        opened->relationships();
        return counts;
    }

    /// False when the file told of its damage.
    bool readsWhole(const QByteArray &damaged)
    {
        file.setContent(damaged);
        return !kindOf([&] {
            const Counts counts = read();
            for (const auto &[name, rows] : m_counts) {
                // A table that lost its name is missing, and who asks for it learns so.
                EXPECT_TRUE(!counts.contains(name) || counts.at(name) >= rows) << qPrintable(name);
            }
        });
    }

    QByteArray m_content;
    Counts m_counts;
};

INSTANTIATE_TEST_SUITE_P(Files, DamageTest, testing::ValuesIn(fileKinds), testing::PrintToStringParamName());

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
    for (int round = 0; round < 600; ++round) {
        SCOPED_TRACE(round);
        QByteArray damaged = m_content;
        const auto pageSize = static_cast<unsigned>(GetParam().pageSize());
        const auto page = random() % (static_cast<unsigned>(damaged.size()) / pageSize) * pageSize;
        const unsigned reach = round % 3 == 0 ? 64 : pageSize; // the heads of pages are the more interesting part
        for (unsigned left = 1 + random() % 4; left > 0; --left)
            damaged[page + random() % reach] = static_cast<char>(random());
        noticed += readsWhole(damaged) ? 0 : 1;
    }
    EXPECT_GT(noticed, 140);
}
