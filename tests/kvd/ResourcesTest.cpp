// The display texts: the message catalogue reader over damaged .mo bytes,
// and a reader without a catalogue.
#include <gtest/gtest.h>

#include <string>

#include "fileinfo/ResourceManager.h"
#include "platform/Files.h"
#include "tests/support/riff/RiffWriter.h"

using TestDocs::ByteWriter;
using TestDocs::Bytes;

namespace {

// A catalogue of (id, text) pairs in the layout msgfmt writes, little-endian.
Bytes Catalogue(const std::vector<std::pair<std::string, std::string>>& entries) {
    const uint32_t n = uint32_t(entries.size());
    const uint32_t ids = 28, texts = ids + 8 * n;
    uint32_t offset = texts + 8 * n;
    ByteWriter w;
    w.U32(0x950412DE);
    w.U32(0);
    w.U32(n);
    w.U32(ids);
    w.U32(texts);
    w.U32(0);
    w.U32(0);
    Bytes strings;
    std::vector<uint32_t> idOffsets, textOffsets;
    for (const auto& [id, text] : entries) {
        idOffsets.push_back(offset + uint32_t(strings.size()));
        strings.insert(strings.end(), id.begin(), id.end());
        strings.push_back(0);
    }
    for (const auto& [id, text] : entries) {
        textOffsets.push_back(offset + uint32_t(strings.size()));
        strings.insert(strings.end(), text.begin(), text.end());
        strings.push_back(0);
    }
    for (uint32_t i = 0; i < n; ++i) w.U32(uint32_t(entries[i].first.size())), w.U32(idOffsets[i]);
    for (uint32_t i = 0; i < n; ++i) w.U32(uint32_t(entries[i].second.size())), w.U32(textOffsets[i]);
    w.Append(strings);
    return w.Take();
}

}  // namespace

TEST(MessageCatalogue, DamagedBytesGiveAnEmptyCatalogue) {
    const Bytes sound = Catalogue({{"1000", "text"}, {"1001", "more"}});
    auto patched = [&](size_t offset, uint32_t value) {
        Bytes b = sound;
        for (int i = 0; i < 4; ++i) b[offset + size_t(i)] = uint8_t(value >> (8 * i));
        return b;
    };
    struct Case {
        const char* name;
        Bytes bytes;
    };
    const Case cases[] = {
        {"empty", {}},
        {"short header", Bytes(sound.begin(), sound.begin() + 20)},
        {"bad magic", patched(0, 0x12345678)},
        {"major revision 1", patched(4, 0x10000)},
        {"huge count", patched(8, 0xFFFFFFFF)},
        {"id table past the end", patched(12, uint32_t(sound.size()) - 4)},
        {"text table past the end", patched(16, 0xFFFFFFF0)},
        {"string past the end", patched(28 + 4, uint32_t(sound.size()) - 2)},
        {"string length past the end", patched(28 + 16, 0xFFFFFFFF)},
        {"truncated strings", Bytes(sound.begin(), sound.end() - 3)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ShellExt::MessageCatalogue catalogue;
        EXPECT_FALSE(catalogue.Parse(c.bytes.data(), c.bytes.size()));
        EXPECT_EQ(catalogue.Size(), 0u);
    }
}

TEST(ResourceManager, NoCatalogueGivesEmptyTexts) {
    for (const std::wstring& folder : {std::wstring(), std::wstring(L"/nonexistent/folder/")}) {
        ShellExt::ResourceManager manager(folder);
        EXPECT_EQ(manager.GetResourceHandle(), nullptr);
        EXPECT_EQ(manager.LoadStringW(1000).GetLength(), 0);
    }
}
