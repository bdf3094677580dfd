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

