// A list of patches: their number, then each with its kind and place.
#include "fuzz/Patches.h"

namespace fuzz {

namespace {

enum Kind { Bytes, Number16, Number32, CopiedPage, ZeroedPage, Length, Content };

qsizetype place(Input &input, const QByteArray &file, qsizetype pageSize)
{
    const std::uint32_t page = input.below(static_cast<std::size_t>((file.size() + pageSize - 1) / pageSize));
    return static_cast<qsizetype>(page) * pageSize + input.below(static_cast<std::size_t>(pageSize));
}

void overwrite(QByteArray &file, qsizetype at, const QByteArray &bytes)
{
    if (at < file.size())
        file.replace(at, bytes.size(), bytes.first(std::min(bytes.size(), file.size() - at)));
}

} // namespace

QByteArray patched(QByteArray file, Input &input, qsizetype pageSize)
{
    for (int left = input.byte(); left > 0 && !input.atEnd(); --left) {
        const std::uint8_t kind = input.byte();
        const qsizetype at = place(input, file, pageSize);
        const qsizetype page = at / pageSize * pageSize;
        switch (kind % 7) {
        case Bytes:
            overwrite(file, at, input.bytes(1 + kind / 7 % 16));
            break;
        case Number16:
            overwrite(file, at, input.bytes(2));
            break;
        case Number32:
            overwrite(file, at, input.bytes(4));
            break;
        case CopiedPage:
            overwrite(file, place(input, file, pageSize) / pageSize * pageSize, file.mid(page, pageSize));
            break;
        case ZeroedPage:
            overwrite(file, page, QByteArray(pageSize, '\0'));
            break;
        case Length:
            file.resize(at, '\0');
            break;
        case Content:
            file = input.rest();
            break;
        }
    }
    return file;
}

} // namespace fuzz
