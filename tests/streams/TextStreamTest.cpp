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

// Each read whole and a byte at a time.
TEST(TextStreamReader, LineEndsAndEncodings) {
    constexpr TextEncoding kUtf8 = TextEncoding::Utf8;
    struct Case {
        std::vector<uint8_t> bytes;
        TextEncoding encoding;
        Lines lines;
        bool good;
    } cases[] = {
        {Bytes(""), kUtf8, {}, true}, {Bytes("one"), kUtf8, {L"one"}, true}, {Bytes("one\n"), kUtf8, {L"one"}, true},
        {Bytes("one\ntwo"), kUtf8, {L"one", L"two"}, true}, {Bytes("one\r\ntwo\r\n"), kUtf8, {L"one", L"two"}, true},
        {Bytes("one\rtwo\r"), kUtf8, {L"one", L"two"}, true},
        {Bytes("one\n\ntwo"), kUtf8, {L"one", L"", L"two"}, true}, {Bytes("\n"), kUtf8, {L""}, true},
        {Bytes("\r\n\r\n"), kUtf8, {L"", L""}, true}, {Bytes("\n\r"), kUtf8, {L"", L""}, true},
        {Bytes("a\r\rb"), kUtf8, {L"a", L"", L"b"}, true},
        {Bytes("Gr\xC3\xBC\xC3\x9F" "e\r\n\xE2\x82\xAC"), TextEncoding::Utf8, {L"Gr\u00FC\u00DFe", L"\u20AC"}, true},
        {Bytes("Gr\xFC\xDF" "e\n\x80"), TextEncoding::CodePage, {L"Gr\u00FC\u00DFe", L"\u20AC"}, true},
        {Bytes("a+AOQ-b\nc"), TextEncoding::Utf7, {L"a\u00E4b", L"c"}, true},
        {Utf16("ab\r\ncd\ref", false), TextEncoding::Utf16LE, {L"ab", L"cd", L"ef"}, true},
        {Utf16("ab\r\ncd\ref", true), TextEncoding::Utf16BE, {L"ab", L"cd", L"ef"}, true},
        // A byte 0x0A inside a 16-bit unit is no line end.
        {{0x0A, 0x01, 0x41, 0x00}, TextEncoding::Utf16LE, {L"\u010AA"}, true},
        {{0x01, 0x0A, 0x00, 0x41}, TextEncoding::Utf16BE, {L"\u010AA"}, true},
        // Surrogate pairs become one character.
        {{0x3D, 0xD8, 0x00, 0xDE, 0x0A, 0x00}, TextEncoding::Utf16LE, {L"\U0001F600"}, true},
        // An odd last byte is dropped and the reader is no longer good.
        {{0x41, 0x00, 0x42}, TextEncoding::Utf16LE, {L"A"}, false},
        {{0x00, 0x41, 0x00, 0x0A, 0x42}, TextEncoding::Utf16BE, {L"A"}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.bytes.begin(), c.bytes.end()));
        for (size_t chunk : {SIZE_MAX, size_t(1)}) {
            bool good = !c.good;
            EXPECT_EQ(ReadLines(c.bytes, c.encoding, &good, chunk), c.lines);
            EXPECT_EQ(good, c.good);
        }
    }
}

TEST(TextStreamReader, LineEndsAcrossRefillBoundaries) {
    // Lines laid so that a CR LF pair, a UTF-8 sequence and long lines fall
    // on the edges of the 4096-byte refills.
    for (size_t pad : {4094u, 4095u, 4096u, 4097u, 8191u}) {
        SCOPED_TRACE(pad);
        const std::string first(pad, 'x');
        const std::string text = first + "\r\n\xC3\xBC" "second\r\n" + std::string(10000, 'y');
        EXPECT_EQ(ReadLines(Bytes(text), TextEncoding::Utf8),
                  (Lines{std::wstring(pad, L'x'), L"\u00FCsecond", std::wstring(10000, L'y')}));
        const std::string text16 = first + "\r\nz";
        EXPECT_EQ(ReadLines(Utf16(text16, true), TextEncoding::Utf16BE), (Lines{std::wstring(pad, L'x'), L"z"}));
    }
}

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

TEST(TextStreamWriter, EncodesEachEncoding) {
    struct Case {
        TextEncoding encoding;
        std::wstring text;
        std::vector<uint8_t> bytes;
    } cases[] = {
        {TextEncoding::Utf8, L"\u00FC\u20AC", Bytes("\xC3\xBC\xE2\x82\xAC\r\n")},
        {TextEncoding::CodePage, L"\u00FC\u20AC", Bytes("\xFC\x80\r\n")},
        {TextEncoding::Utf16LE, L"A\U0001F600", {0x41, 0, 0x3D, 0xD8, 0x00, 0xDE, 0x0D, 0, 0x0A, 0}},
        {TextEncoding::Utf16BE, L"A\U0001F600", {0, 0x41, 0xD8, 0x3D, 0xDE, 0x00, 0, 0x0D, 0, 0x0A}},
        {TextEncoding::Utf7, L"a\u00E4", Bytes("a+AOQ-\r\n")}, {TextEncoding::Utf8, L"", Bytes("\r\n")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(int(c.encoding));
        std::vector<uint8_t> bytes;
        Ref<MemStream> stream(CreateMemStream(bytes));
        TextStreamWriter writer(stream.get(), c.encoding, CP_WINDOWS_1252);
        EXPECT_TRUE(writer.WriteLine(BrmPlatform::BrmStringW(c.text.c_str())));
        EXPECT_EQ(bytes, c.bytes);
    }
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
