// JsonWriter (see JsonWriter.h).
#include "fileinfo/JsonWriter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "fileinfo/Utf8Text.h"

namespace fi {

namespace {

// What each byte needs in a string: 0 nothing, 1 an escape, 2 the UTF-8 check.
constexpr std::array<uint8_t, 256> kByteClass = [] {
    std::array<uint8_t, 256> table{};
    for (int c = 0; c < 0x20; ++c) table[size_t(c)] = 1;
    table['"'] = table['\\'] = 1;
    for (int c = 0x80; c < 0x100; ++c) table[size_t(c)] = 2;
    return table;
}();

// The length of the leading run of bytes that need nothing (class 0), found
// eight at a time: the texts written are mostly keys, names and numbers.
size_t PlainPrefix(std::string_view text) {
    constexpr uint64_t kOnes = 0x0101010101010101u, kHighs = 0x8080808080808080u;
    auto anyZero = [](uint64_t v) { return (v - kOnes) & ~v & kHighs; };
    size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        uint64_t w;
        std::memcpy(&w, text.data() + i, 8);
        // A byte above 127, below 0x20, a quote or a backslash.
        const uint64_t special = (w & kHighs) | ((w - kOnes * 0x20) & ~w & kHighs) | anyZero(w ^ (kOnes * '"')) |
                                 anyZero(w ^ (kOnes * '\\'));
        if (special) break;
    }
    return i;
}

}  // namespace

void JsonWriter::String(std::string_view text) {
    Separate();
    static const char kHex[] = "0123456789abcdef";
    const size_t start = out_.size();
    out_ += '"';
    size_t plain = 0;  // start of the run of bytes copied as they are
    for (size_t i = PlainPrefix(text); i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const uint8_t kind = kByteClass[c];
        if (kind == 0) continue;
        if (kind == 2) {
            // Bytes above 127 go to nlohmann, whose handling of invalid
            // UTF-8 the output must keep to the byte.
            out_.resize(start);
            out_ += nlohmann::ordered_json(text).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
            return;
        }
        out_.append(text.data() + plain, i - plain);
        plain = i + 1;
        switch (c) {
            case '"': out_ += "\\\""; break;
            case '\\': out_ += "\\\\"; break;
            case '\b': out_ += "\\b"; break;
            case '\f': out_ += "\\f"; break;
            case '\n': out_ += "\\n"; break;
            case '\r': out_ += "\\r"; break;
            case '\t': out_ += "\\t"; break;
            default:
                out_ += "\\u00";
                out_ += kHex[c >> 4];
                out_ += kHex[c & 15];
        }
    }
    out_.append(text.data() + plain, text.size() - plain);
    out_ += '"';
}

void JsonWriter::PlainMember(std::string_view key, std::string_view text) {
    Key(key);
    PlainString(text);
}

void JsonWriter::WideString(const wchar_t* text, size_t length) {
    size_t plain = 0;
    while (plain < length && text[plain] >= 0x20 && text[plain] < 0x80 && text[plain] != L'"' && text[plain] != L'\\')
        ++plain;
    if (plain < length) {
        String(Narrow(text, length));
        return;
    }
    Separate();
    out_ += '"';
    const size_t at = out_.size();
    out_.resize(at + length);
    for (size_t i = 0; i < length; ++i) out_[at + i] = char(text[i]);
    out_ += '"';
}

void JsonWriter::PlainString(std::string_view text) {
    Separate();
    out_ += '"';
    out_ += text;
    out_ += '"';
}

void JsonWriter::Raw(std::string_view json) {
    Separate();
    out_ += json;
}

void JsonWriter::Bool(bool value) {
    Separate();
    out_ += value ? "true" : "false";
}

void JsonWriter::Null() {
    Separate();
    out_ += "null";
}

void JsonWriter::Int(int64_t value) {
    Separate();
    char digits[24];
    out_.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void JsonWriter::UInt(uint64_t value) {
    Separate();
    char digits[24];
    out_.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

std::string_view JsonWriter::DoubleChars(double value, char (&buf)[64]) {
    if (!std::isfinite(value)) return {};
    // The routine nlohmann's dump uses, so both forms give the same digits.
    const char* end = nlohmann::detail::to_chars(buf, buf + sizeof buf, value);
    return {buf, size_t(end - buf)};
}

void JsonWriter::Double(double value) {
    Separate();
    char buf[64];
    const std::string_view digits = DoubleChars(value, buf);
    if (digits.empty()) {
        out_ += "null";
    } else {
        out_ += digits;
    }
}

void JsonWriter::Value(const nlohmann::ordered_json& value) {
    Separate();
    out_ += value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace fi
