// The display texts: the message catalogue reader over sound and damaged
// .mo bytes, and the choice of language with its fall-back to English.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "fileinfo/ResourceManager.h"
#include "platform/Files.h"
#include "tests/support/riff/RiffWriter.h"

using TestDocs::ByteWriter;
using TestDocs::Bytes;

namespace {

// A catalogue of (id, text) pairs in the layout msgfmt writes, little-endian
// unless swapped.
Bytes Catalogue(const std::vector<std::pair<std::string, std::string>>& entries, bool swapped = false) {
    auto u32 = [swapped](ByteWriter& w, uint32_t v) {
        if (swapped) v = __builtin_bswap32(v);
        w.U32(v);
    };
    const uint32_t n = uint32_t(entries.size());
    const uint32_t ids = 28, texts = ids + 8 * n;
    uint32_t offset = texts + 8 * n;
    ByteWriter w;
    u32(w, 0x950412DE);
    u32(w, 0);
    u32(w, n);
    u32(w, ids);
    u32(w, texts);
    u32(w, 0);
    u32(w, 0);
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
    for (uint32_t i = 0; i < n; ++i) u32(w, uint32_t(entries[i].first.size())), u32(w, idOffsets[i]);
    for (uint32_t i = 0; i < n; ++i) u32(w, uint32_t(entries[i].second.size())), u32(w, textOffsets[i]);
    w.Append(strings);
    return w.Take();
}

std::wstring Text(const ShellExt::MessageCatalogue& catalogue, uint32_t id) {
    const std::wstring* text = catalogue.Find(id);
    return text ? *text : L"(none)";
}

// The folder of the library, where the build puts the catalogues.
std::wstring LibraryFolder() {
    std::wstring path = ShellExt::ResourceManager::Instance().ModulePath();
    return path.substr(0, path.find_last_of(L'/') + 1);
}

// Sets LANG (and clears what would override it) for one scope.
class Language {
public:
    explicit Language(const char* lang) {
        unsetenv("LC_ALL");
        unsetenv("LC_MESSAGES");
        setenv("LANG", lang, 1);
    }
    ~Language() { setenv("LANG", "C.UTF-8", 1); }
};

}  // namespace

TEST(MessageCatalogue, ReadsNumberedTextsInBothByteOrders) {
    const std::vector<std::pair<std::string, std::string>> entries = {
        {"", "Content-Type: text/plain; charset=UTF-8\n"}, {"1000", "Zeichnung \xC3\xA4"},
        {"1001", "one\0two"}, {"abc", "not a number"}, {"1076", ""}};
    for (bool swapped : {false, true}) {
        ShellExt::MessageCatalogue catalogue;
        Bytes bytes = Catalogue(entries, swapped);
        ASSERT_TRUE(catalogue.Parse(bytes.data(), bytes.size()));
        EXPECT_EQ(Text(catalogue, 1000), L"Zeichnung \u00e4");
        EXPECT_EQ(Text(catalogue, 1001), L"one");
        EXPECT_EQ(Text(catalogue, 1076), L"");
        EXPECT_EQ(Text(catalogue, 1002), L"(none)");
        EXPECT_EQ(catalogue.Size(), 3u);
    }
}

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

TEST(ResourceManager, TheUsersLanguageThenEnglish) {
    const std::wstring folder = LibraryFolder();
    ASSERT_FALSE(folder.empty()) << "the build puts en.mo beside the library";
    struct Case {
        const char* lang;
        uint32_t id;
        const wchar_t* expected;
    };
    const Case cases[] = {
        {"en_US.UTF-8", 1055, L"Portrait"},
        {"de_DE.UTF-8", 1055, L"Hochformat"},
        {"de_AT.UTF-8", 1063, L"Schwarzwei\u00df (1 Bit)"},
        {"fr_CA.UTF-8", 1055, L"Portrait"},  // no French catalogue: English
        {"C", 1000, L"Drawing program"},
        {"de_DE.UTF-8", 999, L""},            // no such number
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.lang);
        Language language(c.lang);
        ShellExt::ResourceManager manager(folder);
        ASSERT_NE(manager.GetResourceHandle(), nullptr);
        EXPECT_EQ(manager.LoadStringW(c.id).StdString(), c.expected);
    }
}

TEST(ResourceManager, EveryNumberHasATextInEveryLanguage) {
    for (const char* lang : {"en_GB.UTF-8", "de_CH.UTF-8"}) {
        Language language(lang);
        ShellExt::ResourceManager manager(LibraryFolder());
        for (uint32_t id = 1000; id <= 1076; ++id) {
            EXPECT_GT(manager.LoadStringW(id).GetLength(), 0) << lang << " " << id;
        }
    }
}

TEST(ResourceManager, NoCatalogueGivesEmptyTexts) {
    for (const std::wstring& folder : {std::wstring(), std::wstring(L"/nonexistent/folder/")}) {
        ShellExt::ResourceManager manager(folder);
        EXPECT_EQ(manager.GetResourceHandle(), nullptr);
        EXPECT_EQ(manager.LoadStringW(1000).GetLength(), 0);
    }
}
