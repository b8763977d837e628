// Index keys of programs that sort "ß" and "æ" as two letters, but count them as one.
#include "tests/jet/OthersKeys.h"

#include <algorithm>

#include "platform/jet/Catalog.h"
#include "platform/jet/FieldReader.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/PageFile.h"
#include "platform/jet/RowScan.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/TextKey.h"
#include "platform/storage/FileSystem.h"

using namespace Qt::StringLiterals;
using jet::KeyBytes;

namespace {

/// The letters of the text, and what follows those if it has but one letter where it has one that sorts as two.
KeyBytes textKey(QString text, bool jet4)
{
    const auto keyOf = [jet4](const QString &of) {
        KeyBytes key;
        jet::appendTextKey(of, jet4, true, key);
        return key;
    };
    const auto lettersEnd = [jet4](KeyBytes &key) {
        const auto isEnd = [jet4](std::byte byte) { return jet4 ? byte == std::byte{1} : byte < std::byte{0x10}; };
        return std::ranges::find_if(key, isEnd);
    };
    KeyBytes key = keyOf(text);
    KeyBytes counted = keyOf(text.replace(u"ß"_s, u"s"_s).replace(u"æ"_s, u"a"_s));
    key.erase(lettersEnd(key), key.end());
    key.insert(key.end(), lettersEnd(counted), counted.end());
    return key;
}

KeyBytes keyOf(const jet::TableDef &def, const jet::IndexDef &index, std::span<const storage::Value> values, bool jet4)
{
    KeyBytes key;
    for (std::size_t i = 0; i < values.size(); ++i) {
        jet::IndexDef part;
        part.columns = {index.columns[i]};
        KeyBytes own = jet::IndexKeyMaker(def, part, jet4).make(values.subspan(i, 1));
        if (const auto *text = std::get_if<QString>(&values[i])) {
            own = textKey(*text, jet4);
            own.insert(own.begin(), std::byte{0x7F});
            if (!part.columns.front().ascending) {
                std::ranges::transform(own, own.begin(), [](std::byte byte) { return ~byte; });
                own.resize(own.size() + (jet4 ? 1 : 0));
            }
        }
        key.insert(key.end(), own.begin(), own.end());
    }
    return key;
}

} // namespace

std::size_t writeOthersKeys(const QString &path)
{
    jet::PageFile file(storage::systemFiles(), {path});
    const jet::TextCodec codec = file.isJet4() ? jet::TextCodec::jet4() : jet::TextCodec::jet3(1252);
    jet::PageScope scope(file);
    std::size_t others = 0;
    for (const jet::CatalogEntry &entry : jet::Catalog(file, codec).entries()) {
        if (entry.type != jet::TableObject || !entry.isUserTable())
            continue;
        const jet::TableDef def = jet::readTableDef(file, codec, entry.id);
        for (const jet::IndexDef &index : def.indexes) {
            jet::IndexTree tree(file, index, def.page);
            jet::RowScan scan(file, def);
            while (const auto row = scan.next()) {
                std::vector<storage::Value> values;
                for (const jet::IndexColumnDef &part : index.columns)
                    values.push_back(readField(file, codec, row->view, *def.column(part.column)));
                const KeyBytes own = jet::IndexKeyMaker(def, index, file.isJet4()).make(values);
                const KeyBytes other = keyOf(def, index, values, file.isJet4());
                tree.remove(own, row->home);
                tree.insert(other, row->home, jet::IndexTree::Duplicates::Allowed);
                others += own == other ? 0 : 1;
            }
        }
    }
    scope.commit();
    return others;
}
