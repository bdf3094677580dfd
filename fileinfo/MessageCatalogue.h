// MessageCatalogue: the texts of one language, read from a compiled gettext
// catalogue (.mo). The message ids are decimal string numbers ("1000"); the
// texts are UTF-8. Anything that does not fit that shape is left out, and a
// damaged file gives an empty catalogue rather than a crash.
#pragma once
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace ShellExt {

class MessageCatalogue {
public:
    // Replaces the contents by the entries of the .mo bytes. False (and an
    // empty catalogue) when the header is not that of a catalogue or a table
    // points outside the bytes.
    bool Parse(const uint8_t* data, size_t size);
    // Parse on the whole file; false if it cannot be read.
    bool Load(const std::wstring& path);
    // The text of the number, or null.
    const std::wstring* Find(uint32_t id) const;
    size_t Size() const { return texts.size(); }

private:
    std::map<uint32_t, std::wstring> texts;
};

}  // namespace ShellExt
