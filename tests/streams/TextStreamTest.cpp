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

// UTF-16 bytes of ASCII text, in either order.
std::vector<uint8_t> Utf16(const std::string& text, bool bigEndian) {
    std::vector<uint8_t> bytes;
    for (char c : text) {
        bytes.push_back(bigEndian ? 0 : uint8_t(c));
        bytes.push_back(bigEndian ? uint8_t(c) : 0);
    }
    return bytes;
}

using Lines = std::vector<std::wstring>;

}  // namespace

TEST(TextStreamReader, ReadAllTakesTheRest) {
    struct Case {
        std::vector<uint8_t> bytes;
        TextEncoding encoding;
        int linesFirst;
        std::wstring rest;
        bool good;
    } cases[] = {
        {Bytes("one\r\ntwo\nthree"), TextEncoding::Utf8, 1, L"two\nthree", true},
        {Bytes("one\r\ntwo\nthree"), TextEncoding::Utf8, 2, L"three", true},
        {Bytes("one\r\ntwo\nthree"), TextEncoding::Utf8, 0, L"one\r\ntwo\nthree", true},
        {Bytes("one\n"), TextEncoding::Utf8, 1, L"", true}, {Bytes(""), TextEncoding::Utf8, 0, L"", true},
        {Utf16("a\nbc", false), TextEncoding::Utf16LE, 1, L"bc", true},
        {Utf16("a\nbc", true), TextEncoding::Utf16BE, 1, L"bc", true},
        {{0x00, 0x41, 0x00, 0x42, 0x00}, TextEncoding::Utf16BE, 0, L"AB", false},
        {Bytes(std::string(200000, 'q')), TextEncoding::Utf8, 0, std::wstring(200000, L'q'), true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.rest.size());
        Ref<MemStream> stream(CreateMemStreamOnBytes(c.bytes.data(), c.bytes.size()));
        TextStreamReader reader(stream.get(), c.encoding);
        BrmPlatform::BrmStringW text;
        for (int i = 0; i < c.linesFirst; ++i)
            reader.ReadLine(text);
        EXPECT_EQ(reader.ReadAll(text), c.good);
        EXPECT_EQ(Str(text), c.rest);
        EXPECT_FALSE(reader.ReadLine(text));
        EXPECT_TRUE(reader.ReadAll(text) || !c.good);
        EXPECT_TRUE(text.IsEmpty());
    }
}

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
