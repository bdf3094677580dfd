// udi::InputArchive: reads through the hand-back buffer and the byte source.
#include "riff/archive/InputArchive.h"

#include <algorithm>
#include <cstring>

namespace udi {

namespace {
// Growth step when the size of what is read comes from the file.
constexpr uint64_t kReadStep = 64 * 1024;
}  // namespace

bool InputArchive::Read(void* buffer, uint64_t count) {
    if (!good) return false;
    auto* out = static_cast<uint8_t*>(buffer);
    size_t fromUnread = size_t(std::min<uint64_t>(count, unread.size()));
    if (fromUnread) {
        std::memcpy(out, unread.data(), fromUnread);
        unread.erase(unread.begin(), unread.begin() + std::ptrdiff_t(fromUnread));
    }
    if (count > fromUnread) good = io->ReadExact(out + fromUnread, count - fromUnread);
    return good;
}

bool InputArchive::ReadU32(uint32_t& value) {
    uint8_t b[4];
    if (!Read(b, 4)) return false;
    value = uint32_t(b[0]) | uint32_t(b[1]) << 8 | uint32_t(b[2]) << 16 | uint32_t(b[3]) << 24;
    return true;
}

bool InputArchive::ReadI32(int32_t& value) {
    uint32_t v = 0;
    if (!ReadU32(v)) return false;
    value = int32_t(v);
    return true;
}

bool InputArchive::ReadU64(uint64_t& value) {
    uint32_t low = 0, high = 0;
    if (!ReadU32(low) || !ReadU32(high)) return false;
    value = uint64_t(high) << 32 | low;
    return true;
}

bool InputArchive::ReadBytes(std::vector<uint8_t>& bytes, uint64_t count) {
    bytes.clear();
    while (good && bytes.size() < count) {
        size_t step = size_t(std::min<uint64_t>(count - bytes.size(), kReadStep));
        size_t at = bytes.size();
        bytes.resize(at + step);
        Read(bytes.data() + at, step);
    }
    return good;
}

bool InputArchive::ReadString(BrmPlatform::BrmStringA& output) {
    uint32_t length = 0;
    if (!ReadU32(length)) return false;
    if (length & 0x80000000u) {
        // A negative length brings no bytes; the search for the terminating
        // zero in the (empty) allocation stops at once.
        output = BrmPlatform::BrmStringA();
        return good;
    }
    std::vector<uint8_t> bytes;
    if (!ReadBytes(bytes, length)) return false;
    // The string ends at its first zero byte, as a terminated one would.
    auto end = std::find(bytes.begin(), bytes.end(), uint8_t(0));
    output = BrmPlatform::BrmStringA(reinterpret_cast<const char*>(bytes.data()), int(end - bytes.begin()));
    return good;
}

bool InputArchive::SkipBytes(uint64_t count) {
    if (!good) return false;
    size_t fromUnread = size_t(std::min<uint64_t>(count, unread.size()));
    unread.erase(unread.begin(), unread.begin() + std::ptrdiff_t(fromUnread));
    if (count > fromUnread) good = io->Skip(count - fromUnread);
    return good;
}

void InputArchive::HandBack(const void* data, size_t count) {
    const auto* bytes = static_cast<const uint8_t*>(data);
    unread.insert(unread.begin(), bytes, bytes + count);
}

}  // namespace udi
