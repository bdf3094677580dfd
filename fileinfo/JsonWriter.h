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
    void Key(std::string_view key);

    void String(std::string_view text);
    // A string that needs no escape, written as it is.
    void PlainString(std::string_view text);
    // Key and string value at once, for a value that needs no escape
    // (hexadecimal numbers, type names, property keys): one append.
    void PlainMember(std::string_view key, std::string_view text);
    // Members written before by another JsonWriter: `"key":value` pairs
    // joined by commas, taken as they are.
    void Members(std::string_view members);
    void Bool(bool value);
    void Null();
    void Int(int64_t value);
    void UInt(uint64_t value);
    // A number as nlohmann writes a double: shortest round-trip digits, and
    // null for NaN and the infinities.
    void Double(double value);
    // The digits Double writes, into `buf`; empty for NaN and the infinities.
    static std::string_view DoubleChars(double value, char (&buf)[64]);
    // Any value, dumped by nlohmann: floating point numbers and rarer forms.
    void Value(const nlohmann::ordered_json& value);

private:
    void Separate();
    void Open(char c);
    void Close(char c);

    std::string& out_;
    bool first_ = true;    // no value yet in the innermost array or object
    bool afterKey_ = false;
};

}  // namespace fi
