// Fuzz target for the message catalogue reader: arbitrary bytes as a
// compiled catalogue, then a look-up of every display text number.
#include <cstddef>
#include <cstdint>

#include "fileinfo/MessageCatalogue.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ShellExt::MessageCatalogue catalogue;
    catalogue.Parse(data, size);
    size_t total = 0;
    for (uint32_t id = 0; id < 1100; ++id) {
        if (const std::wstring* text = catalogue.Find(id)) total += text->size();
    }
    if (total > size * 4 + 16) __builtin_trap();  // no text is longer than its bytes
    return 0;
}
