// Helpers on any IStream, code-page conversion and error texts.
#include <gtest/gtest.h>

#include "platform/LastError.h"
#include "tests/streams/TestStreams.h"
#include "utils/streams/ErrorText.h"
#include "utils/streams/MemStream.h"
#include "utils/streams/StreamHelpers.h"
#include "utils/streams/TextConversion.h"

using namespace BrmUtils;
using namespace streamtest;

TEST(StreamHelpers, FailuresAndNullStreams) {
    Ref<ScriptedStream> failing(new ScriptedStream(Pattern(10)));
    failing->maxChunk = 4;
    failing->failReadsAfter = 1;
    uint8_t out[10];
    uint64_t count = 0;
    EXPECT_FALSE(ReadFully(failing.get(), out, 10, count));
    EXPECT_EQ(count, 4u);
    EXPECT_FALSE(ReadFully(nullptr, out, 10, count));
    EXPECT_FALSE(WriteFully(nullptr, out, 10, count));
    EXPECT_FALSE(ReadExactly(nullptr, out, 0));
    EXPECT_EQ(GetPosition(nullptr), 0u);
    EXPECT_EQ(SeekTo(nullptr, 3), 0u);
    EXPECT_EQ(GetSize(nullptr), 0u);
    EXPECT_FALSE(CopyStream(nullptr, failing.get(), 1, count));

    Ref<ScriptedStream> full(new ScriptedStream({}));
    full->writeLimit = 5;
    EXPECT_TRUE(WriteFully(full.get(), out, 10, count));
    EXPECT_EQ(count, 5u);
    EXPECT_FALSE(WriteExactly(full.get(), out, 1));
    full->failWrites = true;
    EXPECT_FALSE(WriteFully(full.get(), out, 10, count));

    // A destination that takes less than the source has is a failure.
    Ref<ScriptedStream> source(new ScriptedStream(Pattern(100)));
    full->failWrites = false;
    full->writeLimit = 30;
    full->written.clear();
    EXPECT_FALSE(CopyStream(source.get(), full.get(), 100, count));
    EXPECT_EQ(count, 30u);
}

TEST(TextConversion, RoundTripsThroughCodePages) {
    struct Case {
        std::wstring text;
        UINT codePage;
        std::string bytes;
    } cases[] = {
        {L"", CP_UTF8, ""}, {L"plain", CP_UTF8, "plain"}, {L"Gr\u00FC\u00DFe", CP_UTF8, "Gr\xC3\xBC\xC3\x9F" "e"},
        {L"\u65E5\u672C", CP_UTF8, "\xE6\x97\xA5\xE6\x9C\xAC"}, {L"\U0001F600", CP_UTF8, "\xF0\x9F\x98\x80"},
        {L"Gr\u00FC\u00DFe", CP_WINDOWS_1252, "Gr\xFC\xDF" "e"}, {L"\u20AC", CP_WINDOWS_1252, "\x80"},
        {L"A\U0001F600", CP_UTF16LE, std::string("A\0\x3D\xD8\x00\xDE", 6)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.codePage);
        const BrmPlatform::BrmStringA narrow = ConvertFromWide(c.text.data(), c.text.size(), c.codePage);
        EXPECT_EQ(std::string(narrow.GetString(), size_t(narrow.GetLength())), c.bytes);
        EXPECT_EQ(Str(ConvertToWide(c.bytes.data(), c.bytes.size(), c.codePage)), c.text);
    }
    // Text many times longer as bytes than as characters still converts
    // whole, through the second, measured attempt.
    std::wstring wide(1000, L'\u65E5');
    const BrmPlatform::BrmStringA utf8 = ConvertFromWide(wide.data(), wide.size());
    EXPECT_EQ(utf8.GetLength(), 3000);
    EXPECT_EQ(Str(ConvertToWide(utf8)), wide);
    EXPECT_TRUE(ConvertToWide(nullptr, 5).IsEmpty());
    EXPECT_TRUE(ConvertFromWide(nullptr, 5).IsEmpty());
}
