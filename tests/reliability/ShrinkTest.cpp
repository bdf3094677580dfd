// A file that shrinks under an open reader (another program rewrites it in
// place, a download restarts): the reader answers errors or what it had
// already read, never a crash or a read past the end of what it holds.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Documents.h"
#include "platform/Bitmap.h"
#include "platform/Files.h"

namespace reliability {
namespace {

void ReadEverything(IFileInfo* info) {
    for (uint32_t i = 0; i < info->GetCount(); ++i) {
        PROPERTYKEY key{};
        if (FAILED(info->GetAt(i, &key))) continue;
        PROPVARIANT value;
        value.vt = VT_EMPTY;
        info->GetValue(&key, &value);
        PropVariantClear(&value);
    }
    DeleteObject(info->GetBitmap(SIZE{128, 128}, 0, false, nullptr));
    for (uint32_t page = 1; page <= 2; ++page) DeleteObject(info->GetPageBitmap(page, SIZE{64, 64}, 0, false, nullptr));
    DibBlock dib = info->ReadPreviewDib();
    std::free(dib.data);
    struct : PropertyVisitor {
        void Visit(const void*) override {}
    } ignore;
    info->EnumTextChunks(ignore);
}

TEST(Shrink, ReadersSurviveTheirFileShrinking) {
    const auto dir = std::filesystem::temp_directory_path() / ("fi-shrink-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    for (const Document& doc : AllDocuments()) {
        const auto path = dir / doc.name;
        // To nothing, to a few bytes, to half; before any read and after the
        // properties were read (the thumbnail and text come later).
        for (const size_t size : {size_t(0), size_t(12), doc.bytes.size() / 2}) {
            for (const bool readFirst : {false, true}) {
                SCOPED_TRACE(doc.name + " to " + std::to_string(size) + (readFirst ? " after reading" : ""));
                std::ofstream(path, std::ios::binary | std::ios::trunc)
                    .write(reinterpret_cast<const char*>(doc.bytes.data()), std::streamsize(doc.bytes.size()));
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
                ReadEverything(info);
                info->Release();
            }
        }
    }
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace reliability
