// A JSON writer that appends straight to a string, for output written once
// and never walked: no tree of values, no allocation per value. Its bytes
// are those of the library's nlohmann dump (no indent, UTF-8 kept, invalid
// UTF-8 replaced by U+FFFD), so either form may be used for the same output.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace fi {

class JsonWriter {
public:
    explicit JsonWriter(std::string& out) : out_(out) {}

    void BeginObject() { Open('{'); }
    void EndObject() { Close('}'); }
    void BeginArray() { Open('['); }
    void EndArray() { Close(']'); }
    // The key of the next value in an object: a name of the program's own,
    // written as it is (nothing in it needs an escape).
    void Key(std::string_view key) {
        Separate();
        out_ += '"';
        out_ += key;
        out_ += "\":";
        comma_ = false;
    }

    void String(std::string_view text);
    // Wide text as String writes its UTF-8 form; printable ASCII, what
    // property values mostly are, goes in without a narrowed copy.
    void WideString(const wchar_t* text, size_t length);
    // A string that needs no escape, written as it is.
    void PlainString(std::string_view text);
    // Key and a string value that needs no escape (hexadecimal numbers, type
    // names, property keys).
    void PlainMember(std::string_view key, std::string_view text);
    // JSON written before by another JsonWriter, taken as it is: one value,
    // or in an object `"key":value` members joined by commas.
    void Raw(std::string_view json);
    void Bool(bool value);
    void Null();
    void Int(int64_t value);
    void UInt(uint64_t value);
    // A number as nlohmann writes a double: shortest round-trip digits, and
    // null for NaN and the infinities.
    void Double(double value);
    // The digits Double writes, into `buf`; empty for NaN and the infinities.
    static std::string_view DoubleChars(double value, char (&buf)[64]);
    // Any value, dumped by nlohmann: the rarer forms (vectors, dates, ...).
    void Value(const nlohmann::ordered_json& value);

private:
    // Before every key and every value: the comma that parts it from the one
    // before. Written inline, since it comes with every value of a scan.
    void Separate() {
        if (comma_) out_ += ',';
        comma_ = true;
    }
    void Open(char c) {
        Separate();
        out_ += c;
        comma_ = false;
    }
    void Close(char c) {
        out_ += c;
        comma_ = true;
    }

    std::string& out_;
    // A value was written last in the innermost array or object (not its
    // opening, not a key): the next one needs a comma.
    bool comma_ = false;
};

}  // namespace fi
