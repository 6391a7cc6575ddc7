// libFuzzer target for the XML reader: walks every item of
// the input, and runs the single replacement on text taken from the input.

#include "core/DbItem.h"
#include "core/lwToolBox.h"
#include "core/Parser.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Raw data, not a copy: the buffer ends exactly where the input ends, so
    // ASan sees any read past it (a QByteArray copy would end in a hidden NUL).
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    Parser parser;
    parser.initWithData(bytes);
    if (parser.length() != size)
        std::abort();

    qsizetype total = 0;
    while (std::unique_ptr<DbItem> item = parser.getItem()) {
        // Every item comes from bytes of the input, so there cannot be more
        // items than bytes; the limits hold for what is handed out.
        if (++total > static_cast<qsizetype>(size))
            std::abort();
        if (item->getName().size() > Parser::kMaxTagBytes || item->getData().size() > Parser::kMaxValueBytes ||
            item->getData().isNull() || item->getName().isNull())
            std::abort();
    }
    // Once none has been answered after a stop, it stays none.
    if (parser.stopped() && parser.getItem())
        std::abort();

    // The first byte is the target's length; the target, then the text, follow.
    if (size > 1) {
        const qsizetype targetSize = std::min<qsizetype>(data[0] % 8, bytes.size() - 1);
        const QString target = QString::fromLatin1(bytes.sliced(1, targetSize));
        const QString text = QString::fromLatin1(bytes.sliced(1 + targetSize));
        const QString result = lwToolBox::replaceSubstring(target, QStringLiteral("&"), text);
        if (result.isNull())
            std::abort();
        if (!target.isEmpty() && text.contains(target) && result.size() != text.size() - target.size() + 1)
            std::abort();
    }
    return 0;
}
