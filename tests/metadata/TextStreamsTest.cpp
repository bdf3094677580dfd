// Reading the text flows of a text summary document.
#include <gtest/gtest.h>

#include "MetadataDocuments.h"
#include "metadata/TextStreams.h"

namespace {

using Metadata::TextRunBreak;

struct TextRun { std::wstring text; int language; TextRunBreak kind; };

std::vector<TextRun> Read(const std::string& content) {
    std::vector<TextRun> out;
    for (const auto& e : Metadata::ReadTextStreams(MetadataTest::Load(content))) {
        out.push_back({e.text.StdString(), e.language, e.breakKind});
    }
    return out;
}

bool operator==(const TextRun& a, const TextRun& b) { return a.text == b.text && a.language == b.language && a.kind == b.kind; }

TEST(TextStreams, RunsBreaksAndLanguages) {
    struct Case { const char* what; std::string content; std::vector<TextRun> runs; };
    const Case cases[] = {
        {"second run with language and break",
         "<legacykvd:TextStream><legacykvd:TextRun>A</legacykvd:TextRun>"
         "<legacykvd:TextRun legacykvd:lang='1033' legacykvd:break='PARA'>B</legacykvd:TextRun></legacykvd:TextStream>",
         {{L"A", 0, Metadata::BreakStream}, {L"B", 1033, Metadata::BreakParagraph}}},
        {"every break word",
         "<legacykvd:TextStream><legacykvd:TextRun>0</legacykvd:TextRun>"
         "<legacykvd:TextRun legacykvd:break='line'>1</legacykvd:TextRun>"
         "<legacykvd:TextRun legacykvd:break='Column'>2</legacykvd:TextRun>"
         "<legacykvd:TextRun legacykvd:break='frame'>3</legacykvd:TextRun>"
         "<legacykvd:TextRun legacykvd:break='page'>4</legacykvd:TextRun>"
         "<legacykvd:TextRun legacykvd:break='para '>5</legacykvd:TextRun></legacykvd:TextStream>",
         {{L"0", 0, Metadata::BreakStream},
          {L"1", 0, Metadata::BreakLine},
          {L"2", 0, Metadata::BreakColumn},
          {L"3", 0, Metadata::BreakFrame},
          {L"4", 0, Metadata::BreakNone},
          {L"5", 0, Metadata::BreakNone}}},
        {"the stream break belongs to the first element, even an empty run",
         "<legacykvd:TextStream><legacykvd:TextRun/><legacykvd:TextRun legacykvd:break='line'>A</legacykvd:TextRun>"
         "</legacykvd:TextStream>",
         {{L"A", 0, Metadata::BreakLine}}},
        {"or another element",
         "<legacykvd:TextStream><legacykvd:Other/><legacykvd:TextRun>A</legacykvd:TextRun></legacykvd:TextStream>",
         {{L"A", 0, Metadata::BreakNone}}},
        {"the first run ignores its break attribute",
         "<legacykvd:TextStream><legacykvd:TextRun legacykvd:break='line'>A</legacykvd:TextRun></legacykvd:TextStream>"
         "<legacykvd:Other/><legacykvd:TextStream><legacykvd:TextRun legacykvd:lang='x7'>\xC3\xA9</legacykvd:TextRun>"
         "</legacykvd:TextStream>",
         {{L"A", 0, Metadata::BreakStream}, {L"\u00e9", 0, Metadata::BreakStream}}},
        {"language read as a decimal prefix",
         "<legacykvd:TextStream><legacykvd:TextRun legacykvd:lang='1031de'>A</legacykvd:TextRun></legacykvd:TextStream>",
         {{L"A", 1031, Metadata::BreakStream}}},
        {"no streams", "<dc:format>x</dc:format>", {}},
        {"empty description", "", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(Read(c.content), c.runs) << c.what;
    Metadata::Container none;
    EXPECT_TRUE(Metadata::ReadTextStreams(none).empty());
}

}  // namespace
