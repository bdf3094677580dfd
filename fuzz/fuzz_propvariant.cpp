// Reads arbitrary bytes as a serialised variant value, and when they read,
// formats the value as text, writes it again and reads that back: the second
// reading must succeed and give the same bytes.
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "utils/props/PropVariantBytes.h"
#include "utils/props/PropVariantText.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    PROPVARIANT value;
    if (!BrmUtils::DeserializePropVariant(data, size, &value)) {
        return 0;
    }
    BrmPlatform::BrmStringW type, text;
    bool vector = false;
    if (BrmUtils::FormatPropVariant(value, type, vector, text)) {
        PROPVARIANT parsed;
        if (BrmUtils::ParsePropVariant(type, vector, text, &parsed)) {
            PropVariantClear(&parsed);
        }
    }
    std::vector<uint8_t> bytes;
    if (BrmUtils::SerializePropVariant(value, bytes)) {
        PROPVARIANT again;
        if (!BrmUtils::DeserializePropVariant(bytes.data(), bytes.size(), &again)) {
            std::abort();
        }
        std::vector<uint8_t> second;
        if (!BrmUtils::SerializePropVariant(again, second) || second != bytes) {
            std::abort();
        }
        PropVariantClear(&again);
    }
    PropVariantClear(&value);
    return 0;
}
