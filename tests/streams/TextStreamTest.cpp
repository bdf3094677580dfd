// Text reader and writer: line ends, encodings, refills at buffer edges,
// and failures of the stream underneath.
#include <gtest/gtest.h>

#include "tests/streams/TestStreams.h"
#include "utils/streams/MemStream.h"
#include "utils/streams/TextStreamReader.h"
#include "utils/streams/TextStreamWriter.h"

using namespace BrmUtils;
using namespace streamtest;

namespace {

std::vector<std::wstring> ReadLines(const std::vector<uint8_t>& bytes, TextEncoding encoding, bool* good = nullptr,
                                    size_t chunk = SIZE_MAX) {
    Ref<ScriptedStream> source(new ScriptedStream(bytes));
    source->maxChunk = chunk;
    TextStreamReader reader(source.get(), encoding, CP_WINDOWS_1252);
    std::vector<std::wstring> lines;
    BrmPlatform::BrmStringW line;
    while (reader.ReadLine(line)) lines.push_back(Str(line));
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_FALSE(reader.ReadLine(line));
    if (good) *good = reader.IsGood();
    return lines;
}

using Lines = std::vector<std::wstring>;

}  // namespace

TEST(TextStreamReader, AFailingStreamEndsTheText) {
    Ref<ScriptedStream> source(new ScriptedStream(Bytes(std::string(5000, 'a') + "\nb")));
    source->maxChunk = 4096;
    source->failReadsAfter = 1;
    TextStreamReader reader(source.get());
    BrmPlatform::BrmStringW line;
    EXPECT_TRUE(reader.ReadLine(line));
    EXPECT_EQ(line.GetLength(), 4096);
    EXPECT_FALSE(reader.IsGood());
    EXPECT_FALSE(reader.ReadLine(line));

    TextStreamReader none(nullptr);
    EXPECT_FALSE(none.ReadLine(line));
    EXPECT_FALSE(none.ReadAll(line));
    EXPECT_FALSE(none.IsGood());
}

TEST(TextStreamWriter, WhatIsWrittenReadsBack) {
    const Lines lines = {L"first", L"", L"\u65E5\u672C\u8A9E", L"\U0001F600 last"};
    for (TextEncoding encoding :
         {TextEncoding::Utf8, TextEncoding::Utf16LE, TextEncoding::Utf16BE, TextEncoding::Utf7}) {
        SCOPED_TRACE(int(encoding));
        std::vector<uint8_t> bytes;
        {
            Ref<MemStream> stream(CreateMemStream(bytes));
            TextStreamWriter writer(stream.get(), encoding);
            for (const std::wstring& line : lines)
                EXPECT_TRUE(writer.WriteLine(BrmPlatform::BrmStringW(line.c_str())));
        }
        EXPECT_EQ(ReadLines(bytes, encoding), lines);
    }
}

TEST(TextStreamWriter, FailuresStick) {
    Ref<ScriptedStream> target(new ScriptedStream({}));
    target->writeLimit = 4;
    TextStreamWriter writer(target.get());
    EXPECT_TRUE(writer.Write(BrmPlatform::BrmStringW(L"abc")));
    EXPECT_FALSE(writer.Write(BrmPlatform::BrmStringW(L"def")));
    EXPECT_FALSE(writer.IsGood());
    target->writeLimit = SIZE_MAX;
    EXPECT_FALSE(writer.Write(BrmPlatform::BrmStringW(L"ghi")));
    EXPECT_TRUE(writer.Write(BrmPlatform::BrmStringW()));  // nothing to do is no failure
    EXPECT_EQ(target->written, Bytes("abcd"));

    TextStreamWriter unknown(target.get(), TextEncoding(9));
    EXPECT_FALSE(unknown.Write(BrmPlatform::BrmStringW(L"x")));
    TextStreamWriter none(nullptr);
    EXPECT_FALSE(none.Write(BrmPlatform::BrmStringW(L"x")));
}
