// Reading compiled gettext catalogues: magic, revision, count, then two
// tables of (length, offset) pairs for the ids and the texts. Both byte
// orders occur, told apart by the magic.
#include "fileinfo/MessageCatalogue.h"

#include <fstream>
#include <vector>

#include "platform/Files.h"
#include "platform/Unicode.h"

namespace ShellExt {
namespace {

constexpr uint32_t kMagic = 0x950412DEu;
constexpr uint32_t kMagicSwapped = 0xDE120495u;
// More than any catalogue of this library will hold; it bounds the work a
// hostile count can ask for.
constexpr uint32_t kMaxEntries = 1u << 20;

class Bytes {
public:
    Bytes(const uint8_t* data, size_t size, bool swapped) : data(data), size(size), swapped(swapped) {}
    bool U32(uint64_t offset, uint32_t& value) const {
        if (offset > size || size - offset < 4) return false;
        const uint8_t* p = data + offset;
        value = swapped ? (uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3])
                        : (uint32_t(p[3]) << 24 | uint32_t(p[2]) << 16 | uint32_t(p[1]) << 8 | p[0]);
        return true;
    }
    // The string of a table entry; false if it lies outside the bytes.
    bool Text(uint64_t tableOffset, uint32_t index, std::string& text) const {
        uint32_t length = 0, offset = 0;
        uint64_t entry = tableOffset + uint64_t(index) * 8;
        if (!U32(entry, length) || !U32(entry + 4, offset)) return false;
        if (offset > size || size - offset < length) return false;
        text.assign(reinterpret_cast<const char*>(data + offset), length);
        return true;
    }

private:
    const uint8_t* data;
    size_t size;
    bool swapped;
};

// "1000" -> 1000; anything but 1 to 9 decimal digits is no string number.
bool ParseNumber(const std::string& text, uint32_t& id) {
    if (text.empty() || text.size() > 9) return false;
    id = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return false;
        id = id * 10 + uint32_t(c - '0');
    }
    return true;
}

std::wstring FromUtf8(const std::string& text) {
    std::wstring wide(Unicode::DecodeUtf8(text.data(), text.size(), nullptr), L'\0');
    Unicode::DecodeUtf8(text.data(), text.size(), wide.data());
    return wide;
}

}  // namespace

bool MessageCatalogue::Parse(const uint8_t* data, size_t size) {
    texts.clear();
    if (!data || size < 28) return false;
    uint32_t magic = uint32_t(data[0]) | uint32_t(data[1]) << 8 | uint32_t(data[2]) << 16 | uint32_t(data[3]) << 24;
    if (magic != kMagic && magic != kMagicSwapped) return false;
    Bytes bytes(data, size, magic == kMagicSwapped);
    uint32_t revision = 0, count = 0, ids = 0, strings = 0;
    bytes.U32(4, revision);
    bytes.U32(8, count);
    bytes.U32(12, ids);
    bytes.U32(16, strings);
    // Only the major revision 0 has this layout.
    if ((revision >> 16) != 0 || count > kMaxEntries) return false;
    // Both tables must lie wholly inside the bytes before any entry is used.
    uint64_t tableBytes = uint64_t(count) * 8;
    if (ids > size || size - ids < tableBytes || strings > size || size - strings < tableBytes) return false;
    std::string id, text;
    for (uint32_t i = 0; i < count; ++i) {
        if (!bytes.Text(ids, i, id) || !bytes.Text(strings, i, text)) {
            texts.clear();
            return false;
        }
        uint32_t number = 0;
        // Plural forms and contexts hold a zero or 0x04 in the id: not ours.
        if (!ParseNumber(id, number)) continue;
        // A text with plural forms: the first is the one we use.
        if (size_t zero = text.find('\0'); zero != std::string::npos) text.resize(zero);
        texts[number] = FromUtf8(text);
    }
    return true;
}

bool MessageCatalogue::Load(const std::wstring& path) {
    texts.clear();
    std::ifstream file(PathToNative(path.c_str()), std::ios::binary);
    if (!file) return false;
    // Catalogues are small; a huge file here is no catalogue of ours.
    constexpr std::streamoff kMaxSize = 16 << 20;
    file.seekg(0, std::ios::end);
    std::streamoff size = file.tellg();
    if (size <= 0 || size > kMaxSize) return false;
    file.seekg(0);
    std::vector<uint8_t> bytes(static_cast<size_t>(size));
    if (!file.read(reinterpret_cast<char*>(bytes.data()), size)) return false;
    return Parse(bytes.data(), bytes.size());
}

const std::wstring* MessageCatalogue::Find(uint32_t id) const {
    auto it = texts.find(id);
    return it == texts.end() ? nullptr : &it->second;
}

}  // namespace ShellExt
