// Reads text from a stream line by line or all at once, in one of the
// encodings of TextEncoding. No byte-order mark is looked for.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/ObjIdl.h"
#include "utils/streams/TextEncoding.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils {

class TextStreamReader {
public:
    // Reads from the stream's present position; adds a reference to the
    // stream. A null stream gives a reader that is not good and reads nothing.
    explicit TextStreamReader(IStream* stream, TextEncoding encoding = TextEncoding::Utf8, UINT codePage = CP_ACP);
    TextStreamReader(const TextStreamReader&) = delete;
    TextStreamReader& operator=(const TextStreamReader&) = delete;
    virtual ~TextStreamReader();

    // The next line without its end (line feed, carriage return, or both in
    // that order). False, with an empty line, when no text is left; a text
    // that ends in a line end has no empty line after it.
    bool ReadLine(BrmPlatform::BrmStringW& text);
    // All text not read yet. False if reading failed or UTF-16 text had an
    // odd number of bytes; what could be read is given all the same.
    bool ReadAll(BrmPlatform::BrmStringW& text);

    // False once a read of the stream failed or UTF-16 ended in half a unit.
    bool IsGood() const { return good; }

private:
    // Reads the next line into `line`; false if none is left.
    bool FetchLine();
    // Makes `width` unread bytes available if the stream has them.
    bool Available(size_t width);
    // Keeps unread bytes, then appends up to count bytes from the stream.
    void Refill(size_t count);
    // The unit at the read position (a byte, or a 16-bit value).
    uint32_t PeekUnit() const;

    IStream* stream;
    bool atEnd = false;
    bool good = true;
    TextEncoding encoding;
    UINT codePage;
    std::vector<uint8_t> buffer;
    size_t bufferPosition = 0;
    BrmPlatform::BrmStringW line;
    int linePosition = 0;
    // The bytes of the line being read (UTF-16 as little-endian).
    std::vector<uint8_t> lineBytes;
};

}  // namespace BrmUtils
