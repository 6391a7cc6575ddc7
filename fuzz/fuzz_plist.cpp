// Feeds arbitrary bytes to the property-list reader, both as a record file
// and as the lock dictionary.
#include "core/PropertyListReader.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    size_t fields = 0;
    PropertyListReader::readCollection(bytes, "contacts", [&](const PropertyListReader::Dict &dict) {
        for (const auto &field : dict.fields())
            fields += size_t(field.value.size()) + field.key.size();
    });
    std::vector<std::pair<QString, QString>> entries;
    PropertyListReader::readDictionary(bytes, entries);
    return fields == size_t(-1) ? 1 : 0;
}
