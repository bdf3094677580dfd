// TextStreamWriter: converts each text with the encoding's code page and
// writes all of it.
#include "utils/streams/TextStreamWriter.h"

#include <algorithm>
#include <new>

#include "utils/streams/StreamHelpers.h"
#include "utils/streams/TextConversion.h"

namespace BrmUtils {

TextStreamWriter::TextStreamWriter(IStream* stream, TextEncoding encoding, UINT codePage)
    : stream(stream), good(stream != nullptr), encoding(encoding), codePage(codePage), lineEnd(L"\r\n") {
    if (stream)
        stream->AddRef();
}

TextStreamWriter::~TextStreamWriter() {
    if (stream)
        stream->Release();
}

bool TextStreamWriter::Write(const wchar_t* text, size_t length) {
    if (!text || length == 0)
        return true;
    if (!good)
        return false;
    const UINT target = CodePageOf(encoding, codePage);
    if (target == 0xFFFFFFFFu)
        return false;

    const BrmPlatform::BrmStringA bytes = ConvertFromWide(text, length, target);
    const uint8_t* data = reinterpret_cast<const uint8_t*>(bytes.GetString());
    const size_t size = size_t(bytes.GetLength());
    if (size == 0) {
        // The code page could not take the text.
        good = false;
        return false;
    }
    if (encoding == TextEncoding::Utf16BE) {
        try {
            scratch.assign(data, data + size);
        } catch (const std::bad_alloc&) {
            good = false;
            return false;
        }
        for (size_t i = 0; i + 1 < scratch.size(); i += 2)
            std::swap(scratch[i], scratch[i + 1]);
        data = scratch.data();
    }
    uint64_t written = 0;
    good = WriteFully(stream, data, size, written) && written == size;
    return good;
}

bool TextStreamWriter::Write(const BrmPlatform::BrmStringW& text) {
    return Write(text.GetString(), size_t(text.GetLength()));
}

bool TextStreamWriter::WriteLine(const BrmPlatform::BrmStringW& text) {
    return Write(text) && Write(lineEnd);
}

}  // namespace BrmUtils
