// The form table: every form opens and answers its row; the rows the program
// is known by are exact; the rows in between follow the rules of the table.
#include <gtest/gtest.h>

#include <cwchar>
#include <set>
#include <string>

#include "riff/FormTable.h"
#include "riff/RiffReader.h"
#include "tests/support/riff/RiffWriter.h"
#include "tests/support/riff/StreamOnBytes.h"

using namespace TestDocs;
using KvdFileIO::FormDescriptor;
using KvdFileIO::kFormCount;
using KvdFileIO::kFormTable;

namespace {
uint32_t FormOf(const char* text) {
    return uint32_t(uint8_t(text[0])) | uint32_t(uint8_t(text[1])) << 8 | uint32_t(uint8_t(text[2])) << 16 |
           uint32_t(uint8_t(text[3])) << 24;
}
}  // namespace

TEST(FormTable, EveryFormOpensAndAnswersItsRow) {
    const char* order =
        "KVD KVD4KVSTKVD5KVT5kvd6kvt6KVD6KVT6KVD7KVT7KVD8KVT8kvd8kvt8KVD9KVT9KVr9kvt9KVDAKVTAMTVAKVDBKVTBMTVB"
        "TCNASYL1KVDCKVTCMTVCTCNBSYL2KVTDTCNCSYL3KVDDKVTESYL4KVDEKVTFSYL5KVTGTCNESYL6KVDFKVTHSYL7KVTITCNF"
        "PAT KVDGKVTJSYL8KVTKSYL9TCNGKVDHKVTLSYLAKVDIKVTMSYLBTCNHKVDJKVTNSYLCKVDKKVTOSYLDTCNIKVDLKVTPSYLE"
        "TCNJKVDMKVTQSYLFTCNKKVDNKVTRSYLGPATG";
    ASSERT_EQ(std::strlen(order), 4 * kFormCount);
    std::set<uint32_t> seen;
    for (size_t i = 0; i < kFormCount; ++i) {
        const FormDescriptor& row = kFormTable[i];
        SCOPED_TRACE(std::string(order + 4 * i, 4));
        EXPECT_EQ(row.form, FormOf(order + 4 * i));
        EXPECT_TRUE(seen.insert(row.form).second);

        StreamPtr stream = StreamOnBytes(Riff(row.form, {DataChunk(Tag("vrsn"), {0, 0})}));
        KvdFileIO::RiffReader reader(stream.get());
        uint32_t form = 0;
        ASSERT_TRUE(reader.Open(form));
        EXPECT_EQ(form, row.form);
        EXPECT_EQ(reader.GetFormVersion(), row.version);
        EXPECT_EQ(reader.GetDocumentKind(), row.kind);
        EXPECT_EQ(reader.GetFileVersion(), row.fileVersion);
    }
}

TEST(FormTable, TellingRowsAreExact) {
    struct Row {
        const char* form;
        uint16_t version, kind;
        uint32_t fileVersion;
        const wchar_t* mime;
        const wchar_t* label;
    } rows[] = {
        {"KVD ", 300, 1, 0x030000, L"application/x-vnd.brimo.plotra.document", L""},
        {"KVST", 404, 4, 0x040000, L"application/x-vnd.brimo.plotra.template", L""},
        {"kvd8", 801, 1, 0x080001, L"application/x-vnd.brimo.plotra.document", L""},
        {"kvt8", 801, 4, 0x080001, L"application/x-vnd.brimo.plotra.template", L""},
        {"KVr9", 900, 1, 0x090000, L"application/x-vnd.brimo.plotra.document", L""},
        {"kvt9", 900, 1, 0x090001, L"application/x-vnd.brimo.plotra.document", L""},
        {"MTVA", 1000, 3, 0x010000, L"application/x-vnd.brimo.motiv.document", L""},
        {"TCNA", 1150, 2, 0x0A0000, L"application/x-vnd.brimo.tecnia.document", L""},
        {"TCNB", 1200, 2, 0x0A0500, L"application/x-vnd.brimo.tecnia.document", L""},
        {"KVTD", 1250, 4, 0x0C0500, L"application/x-vnd.brimo.plotra.template", L""},
        {"SYL1", 1100, 5, 0x010000, L"application/x-vnd.brimo.symbol.library", L""},
        {"KVDE", 1400, 1, 0x0E0000, L"application/x-vnd.brimo.plotra.document+zip", L""},
        {"KVTF", 1400, 4, 0x0E0000, L"application/x-vnd.brimo.plotra.template+zip", L""},
        {"KVDF", 1500, 1, 0x0F0000, L"application/x-vnd.brimo.plotra.document+zip", L""},
        {"KVTG", 1410, 4, 0x0E0100, L"application/x-vnd.brimo.plotra.template+zip", L""},
        {"PAT ", 1500, 6, 0x0F0000, L"application/x-vnd.brimo.plotra.pattern+zip", L""},
        {"KVTK", 1630, 4, 0x100300, L"application/x-vnd.brimo.plotra.template+zip", L""},
        {"SYL9", 1630, 5, 0x100300, L"application/x-vnd.brimo.symbol.library+zip", L""},
        {"KVDH", 1700, 1, 0x110000, L"application/x-vnd.brimo.zcf.plotra.document+zip", L""},
        {"KVDI", 1740, 1, 0x110400, L"application/x-vnd.brimo.zcf.plotra.document+zip", L""},
        {"TCNH", 1740, 2, 0x110000, L"application/x-vnd.brimo.zcf.tecnia.document+zip", L""},
        {"KVDK", 1900, 1, 0x130000, L"application/x-vnd.brimo.zcf.plotra.document+zip", L"19.0 (2017)"},
        {"KVDL", 2000, 1, 0x140000, L"application/x-vnd.brimo.zcf.plotra.document+zip", L"20.0 (2018)"},
        {"KVDM", 2100, 1, 0x150000, L"application/x-vnd.brimo.zcf.plotra.document+zip", L"21.0 (2019)"},
        {"KVDN", 2200, 1, 0x160000, L"application/x-vnd.brimo.zcf.plotra.document+zip", L"22.0 (2020)"},
        {"PATG", 2200, 6, 0x160000, L"application/x-vnd.brimo.zcf.pattern+zip", L"22.0 (2020)"},
    };
    for (const Row& expected : rows) {
        SCOPED_TRACE(expected.form);
        const FormDescriptor* row = KvdFileIO::FindForm(FormOf(expected.form));
        ASSERT_NE(row, nullptr);
        EXPECT_EQ(row->version, expected.version);
        EXPECT_EQ(row->kind, expected.kind);
        EXPECT_EQ(row->fileVersion, expected.fileVersion);
        EXPECT_STREQ(row->mimeType, expected.mime);
        EXPECT_STREQ(row->versionLabel, expected.label);
    }
}

TEST(FormTable, RowsFollowTheRulesOfTheTable) {
    for (const FormDescriptor& row : kFormTable) {
        SCOPED_TRACE(std::string(reinterpret_cast<const char*>(&row.form), 4));
        std::wstring mime = row.mimeType, label = row.versionLabel;
        EXPECT_EQ(mime.ends_with(L"+zip"), row.version >= 1400);  // the MIME family moves with the version
        EXPECT_EQ(mime.find(L".zcf.") != std::wstring::npos, row.version >= 1700);
        std::wstring year = std::to_wstring(row.version / 100 + 1998);
        EXPECT_EQ(label, row.version < 1900 ? L"" : std::to_wstring(row.version / 100) + L".0 (" + year + L")");
        // Drawing and template file versions spell the program version.
        uint32_t v = row.version;
        if ((row.kind == 1 || row.kind == 4) && row.form != FormOf("kvt9") && v != 404) {
            EXPECT_EQ(row.fileVersion, (v / 100) << 16 | (v % 100 / 10) << 8 | v % 10);
        }
    }
}

TEST(FormTable, UnknownFormsAnswerZero) {
    for (const char* form : {"KVDX", "JMV1", "kvd4", "\0\0\0\0", "RIFF"}) {
        SCOPED_TRACE(form);
        EXPECT_EQ(KvdFileIO::FindForm(FormOf(form)), nullptr);
        StreamPtr stream = StreamOnBytes(Riff(FormOf(form), {}));
        KvdFileIO::RiffReader reader(stream.get());
        uint32_t type = 0;
        ASSERT_TRUE(reader.Open(type));  // an unknown form is the caller's business
        EXPECT_EQ(reader.GetFormType(), FormOf(form));
        EXPECT_EQ(reader.GetFormVersion(), 0);
        EXPECT_EQ(reader.GetDocumentKind(), 0);
        EXPECT_EQ(reader.GetFileVersion(), 0u);
    }
}
