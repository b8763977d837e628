// Like against a matcher that is too simple to be wrong: the pattern read anew at every step, with no way back cut off.
#include "fuzz/Target.h"
#include "platform/storage/LikePattern.h"

#include <set>

using namespace Qt::StringLiterals;

namespace {

int order(QStringView left, QStringView right)
{
    return left.compare(right, Qt::CaseInsensitive);
}

/// Says what the documentation says, one pattern place and text place at a time.
class SimpleMatcher
{
public:
    SimpleMatcher(const QString &pattern, const QString &text, bool caseSensitive)
        : m_pattern(pattern)
        , m_text(text)
        , m_caseSensitive(caseSensitive)
    { }

    bool matches(qsizetype p = 0, qsizetype t = 0)
    {
        if (m_failed.contains({p, t}))
            return false;
        const bool matched = matchesHere(p, t);
        if (!matched)
            m_failed.insert({p, t});
        return matched;
    }

private:
    bool matchesHere(qsizetype p, qsizetype t)
    {
        if (p == m_pattern.size())
            return t == m_text.size();
        const QChar c = m_pattern[p];
        if (c == u'*')
            return matches(p + 1, t) || (t < m_text.size() && matches(p, t + 1));
        const qsizetype end = c == u'[' ? m_pattern.indexOf(u']', p) : p;
        if (c == u'[' && end == p + 1) // matches the empty text
            return matches(end + 1, t);
        return t < m_text.size() && fits(m_pattern.sliced(p, end - p + 1), m_text[t]) && matches(end + 1, t + 1);
    }

    bool fits(const QString &item, QChar c) const
    {
        if (item == u"?")
            return true;
        if (item == u"#")
            return c >= u'0' && c <= u'9';
        if (item.size() == 1)
            return same(item[0], c);
        const QString list = item.sliced(1, item.size() - 2);
        const bool negated = list.size() > 1 && list[0] == u'!';
        return listed(negated ? list.sliced(1) : list, c) != negated;
    }

    bool listed(const QString &list, QChar c) const
    {
        for (qsizetype i = 0; i < list.size(); ++i) {
            if (list.sliced(i).size() > 2 && list[i + 1] == u'-') {
                if (order(list.sliced(i, 1), QStringView(&c, 1)) <= 0
                    && order(QStringView(&c, 1), list.sliced(i + 2, 1)) <= 0) {
                    return true;
                }
                i += 2;
            } else if (same(list[i], c)) {
                return true;
            }
        }
        return false;
    }

    bool same(QChar left, QChar right) const
    {
        return m_caseSensitive ? left == right : left.toCaseFolded() == right.toCaseFolded();
    }

    QString m_pattern;
    QString m_text;
    bool m_caseSensitive;
    std::set<std::pair<qsizetype, qsizetype>> m_failed{};
};

} // namespace

void fuzz::run(storage::Bytes bytes)
{
    Input input(bytes.first(std::min<std::size_t>(bytes.size(), 512)));
    const bool caseSensitive = input.byte() % 2 == 1;
    const QString pattern = input.line();
    const auto compiled = storage::LikePattern::compile(pattern, caseSensitive, order);
    if (!compiled)
        return require(pattern.contains(u'['), u"refused for nothing: "_s + pattern);
    for (int i = 0; i < 8 && (i == 0 || !input.atEnd()); ++i) {
        const QString text = input.line();
        require(compiled->matches(text) == SimpleMatcher(pattern, text, caseSensitive).matches(),
                u"\"%1\" Like \"%2\""_s.arg(text, pattern));
    }
}
