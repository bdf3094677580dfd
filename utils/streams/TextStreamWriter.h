// Writes text to a stream in one of the encodings of TextEncoding, without a
// byte-order mark.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/ObjIdl.h"
#include "utils/streams/TextEncoding.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils {

class TextStreamWriter {
public:
    // Writes at the stream's present position; adds a reference to the
    // stream. A null stream gives a writer that is not good.
    explicit TextStreamWriter(IStream* stream, TextEncoding encoding = TextEncoding::Utf8, UINT codePage = CP_ACP);
    TextStreamWriter(const TextStreamWriter&) = delete;
    TextStreamWriter& operator=(const TextStreamWriter&) = delete;
    virtual ~TextStreamWriter();

    // Encodes and writes the whole text. An empty text writes nothing and
    // succeeds. False once any write failed or was short: the writer then
    // stays failed.
    bool Write(const wchar_t* text, size_t length);
    bool Write(const BrmPlatform::BrmStringW& text);
    // The text, then a carriage return and a line feed.
    bool WriteLine(const BrmPlatform::BrmStringW& text);

    bool IsGood() const { return good; }

private:
    IStream* stream;
    bool good = true;
    TextEncoding encoding;
    UINT codePage;
    std::vector<uint8_t> scratch;
    BrmPlatform::BrmStringW lineEnd;
};

}  // namespace BrmUtils
