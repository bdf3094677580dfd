// A file that shrinks under an open reader (another program rewrites it in
// place, a download restarts): the reader answers errors or what it had
// already read, never a crash or a read past the end of what it holds.
#include <gtest/gtest.h>

#include <filesystem>

#include "Documents.h"
#include "platform/Files.h"
#include "tests/support/zip/ZipTestArchive.h"

namespace reliability {
namespace {

TEST(Shrink, ReadersSurviveTheirFileShrinking) {
    ziptest::TempDir dir;
    for (const Document& doc : AllDocuments()) {
        const std::string path = dir / doc.name;
        // To nothing, to a few bytes, to half; before any read and after the
        // properties were read (the thumbnail and text come later).
        for (const size_t size : {size_t(0), size_t(12), doc.bytes.size() / 2}) {
            for (const bool readFirst : {false, true}) {
                SCOPED_TRACE(doc.name + " to " + std::to_string(size) + (readFirst ? " after reading" : ""));
                ziptest::WriteFile(path, doc.bytes);
                IFileInfo* info = IFileInfo::GetInst(PathFromNative(path.c_str()).c_str(), doc.format);
                ASSERT_NE(info, nullptr);
                if (readFirst) {
                    PROPVARIANT value;
                    value.vt = VT_EMPTY;
                    PROPERTYKEY key{};
                    if (SUCCEEDED(info->GetAt(0, &key))) info->GetValue(&key, &value);
                    PropVariantClear(&value);
                }
                std::filesystem::resize_file(path, size);
                ReadEverything(info, doc.format);
                info->Release();
            }
        }
    }
}

}  // namespace
}  // namespace reliability
