// Helpers of the container reader tests: open written documents through the
// factory, collect text chunks, and describe the bitmaps handed out.
#pragma once

#include <string>
#include <vector>

#include "fileinfo/KvdContainerInfo.h"
#include "tests/kvd/KvdTestSupport.h"
#include "tests/support/kvdzip/KvdZipWriter.h"

namespace kvdziptest {

using KvdTest::InfoPtr;

// The reader the factory makes for format 0 on the bytes.
inline InfoPtr OpenBytes(const std::vector<uint8_t>& bytes) { return KvdTest::Open(bytes); }

inline InfoPtr OpenPath(const std::string& path) {
    const std::wstring wide(path.begin(), path.end());
    return InfoPtr(IFileInfo::GetInst(wide.c_str(), FileFormatDrawing));
}

inline bool IsContainerReader(IFileInfo* info) { return dynamic_cast<KvdContainerInfo*>(info) != nullptr; }

// Text chunks as "break/language/text".
struct Collector : PropertyVisitor {
    std::vector<std::wstring> chunks;
    void Visit(const void* record) override {
        const auto* chunk = static_cast<const TextChunk*>(record);
        chunks.push_back(std::to_wstring(chunk->chunkBreak) + L"/" + std::to_wstring(chunk->language) + L"/" +
                         std::wstring(chunk->text, size_t(chunk->length)));
    }
};

// "WxH" of the bitmap, which is freed; "null" for none.
inline std::string BitmapSize(HBITMAP bitmap) {
    if (!bitmap) return "null";
    std::string size = std::to_string(bitmap->width) + "x" + std::to_string(bitmap->height);
    DeleteObject(bitmap);
    return size;
}

}  // namespace kvdziptest
