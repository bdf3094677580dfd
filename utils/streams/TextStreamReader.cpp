// TextStreamReader: a buffer refilled from the stream, scanned for line ends
// in units of the encoding, and converted line by line.
#include "utils/streams/TextStreamReader.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "utils/streams/StreamHelpers.h"
#include "utils/streams/TextConversion.h"

namespace BrmUtils {

namespace {

constexpr size_t kLineRefill = 4096;
constexpr size_t kReadRound = 65536;
constexpr uint32_t kLineFeed = 0x0A;
constexpr uint32_t kCarriageReturn = 0x0D;

// Converts collected bytes; UTF-16 bytes are little-endian by now.
BrmPlatform::BrmStringW Decode(const std::vector<uint8_t>& bytes, size_t from, TextEncoding encoding, UINT codePage) {
    if (from >= bytes.size())
        return BrmPlatform::BrmStringW();
    return ConvertToWide(reinterpret_cast<const char*>(bytes.data() + from), bytes.size() - from,
                         CodePageOf(encoding, codePage));
}

}  // namespace

TextStreamReader::TextStreamReader(IStream* stream, TextEncoding encoding, UINT codePage)
    : stream(stream), encoding(encoding), codePage(codePage) {
    if (stream)
        stream->AddRef();
    else
        good = false, atEnd = true;
}

TextStreamReader::~TextStreamReader() {
    if (stream)
        stream->Release();
}

void TextStreamReader::Refill(size_t count) {
    buffer.erase(buffer.begin(), buffer.begin() + std::ptrdiff_t(bufferPosition));
    bufferPosition = 0;
    if (atEnd || !good)
        return;
    const size_t oldSize = buffer.size();
    // Round by round, so that memory grows with what the stream delivers
    // rather than with what was asked for.
    size_t remaining = count;
    try {
        while (remaining > 0) {
            const size_t want = std::min(remaining, kReadRound);
            const size_t start = buffer.size();
            buffer.resize(start + want);
            uint64_t got = 0;
            const bool ok = ReadFully(stream, buffer.data() + start, want, got);
            buffer.resize(start + size_t(got));
            if (!ok) {
                buffer.resize(oldSize);
                good = false;
                return;
            }
            if (got < want) {
                atEnd = true;
                return;
            }
            remaining -= want;
        }
    } catch (const std::bad_alloc&) {
        buffer.resize(std::min(buffer.size(), oldSize));
        good = false;
    }
}

bool TextStreamReader::Available(size_t width) {
    while (buffer.size() - bufferPosition < width && !atEnd && good)
        Refill(kLineRefill);
    if (buffer.size() - bufferPosition >= width)
        return true;
    if (buffer.size() > bufferPosition) {
        // Half a UTF-16 unit at the end: dropped, and the text was not whole.
        good = false;
        bufferPosition = buffer.size();
    }
    return false;
}

uint32_t TextStreamReader::PeekUnit() const {
    const uint8_t* p = buffer.data() + bufferPosition;
    switch (encoding) {
    case TextEncoding::Utf16LE: return uint32_t(p[0]) | uint32_t(p[1]) << 8;
    case TextEncoding::Utf16BE: return uint32_t(p[1]) | uint32_t(p[0]) << 8;
    default: return p[0];
    }
}

bool TextStreamReader::FetchLine() {
    line.Empty();
    linePosition = 0;
    lineBytes.clear();
    const size_t width = IsUtf16(encoding) ? 2 : 1;
    bool any = false;
    while (Available(width)) {
        any = true;
        const uint32_t unit = PeekUnit();
        bufferPosition += width;
        if (unit == kLineFeed)
            break;
        if (unit == kCarriageReturn) {
            if (Available(width) && PeekUnit() == kLineFeed)
                bufferPosition += width;
            break;
        }
        if (width == 1) {
            lineBytes.push_back(uint8_t(unit));
        } else {
            lineBytes.push_back(uint8_t(unit & 0xFF));
            lineBytes.push_back(uint8_t(unit >> 8));
        }
    }
    line = Decode(lineBytes, 0, encoding, codePage);
    return any;
}

bool TextStreamReader::ReadLine(BrmPlatform::BrmStringW& text) {
    if (linePosition >= line.GetLength() && !FetchLine()) {
        text.Empty();
        return false;
    }
    text = line.Mid(linePosition);
    line.Empty();
    linePosition = 0;
    return true;
}

bool TextStreamReader::ReadAll(BrmPlatform::BrmStringW& text) {
    text = line.Mid(linePosition);
    line.Empty();
    linePosition = 0;
    Refill(SIZE_MAX);
    if (IsUtf16(encoding)) {
        if ((buffer.size() - bufferPosition) % 2 != 0) {
            good = false;
            buffer.pop_back();
        }
        if (encoding == TextEncoding::Utf16BE) {
            for (size_t i = bufferPosition; i + 1 < buffer.size(); i += 2)
                std::swap(buffer[i], buffer[i + 1]);
        }
    }
    text += Decode(buffer, bufferPosition, encoding, codePage);
    buffer.clear();
    bufferPosition = 0;
    return good;
}

}  // namespace BrmUtils
