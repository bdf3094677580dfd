// Readers on many threads at once: 16 threads each open every document (16
// of each format) and read everything a host asks for. What each thread
// reads must equal what one thread alone reads; under ThreadSanitizer
// (make tsan) the run must also be free of data races in what the readers
// share (singletons, resources, the schema, the codecs).
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <latch>
#include <map>
#include <thread>

#include "Documents.h"
#include "fileinfo/PropsJson.h"
#include "platform/Bitmap.h"
#include "platform/Files.h"

namespace reliability {
namespace {

constexpr int kThreads = 16;
constexpr int kPerFormat = 16;

struct TextDigest : PropertyVisitor {
    std::wstring text;
    void Visit(const void* record) override {
        const auto* chunk = static_cast<const TextChunk*>(record);
        text.append(chunk->text, size_t(chunk->length));
        text += L'|';
    }
};

std::string BitmapDigest(HBITMAP bitmap) {
    if (!bitmap) return "none;";
    uint64_t hash = 1469598103934665603u;
    for (size_t i = 0; i < size_t(bitmap->width) * size_t(bitmap->height) * 4; ++i)
        hash = (hash ^ bitmap->bits[i]) * 1099511628211u;
    std::string out = std::to_string(bitmap->width) + "x" + std::to_string(bitmap->height) + ":" + std::to_string(hash) + ";";
    DeleteObject(bitmap);
    return out;
}

// Everything a host reads of one document, as one string.
std::string ReadAll(const std::string& path, EFileFormat format) {
    IFileInfo* info = IFileInfo::GetInst(PathFromNative(path.c_str()).c_str(), format);
    if (!info) return "unopened";
    std::string out = fi::DumpJson(fi::PropsJson(info, "", format));
    uint8_t alpha = 0;
    out += BitmapDigest(info->GetBitmap(SIZE{96, 96}, 0, false, &alpha));
    const uint32_t pages = info->GetPageCount();
    for (uint32_t page = 1; page <= pages && page <= 3; ++page)
        out += BitmapDigest(info->GetPageBitmap(page, SIZE{64, 64}, 0, false, nullptr));
    if (HICON icon = info->GetIcon(nullptr, 32)) {
        out += BitmapDigest(icon->color);
        icon->color = nullptr;
        DestroyIcon(icon);
    }
    DibBlock dib = info->ReadPreviewDib();
    out += "dib" + std::to_string(dib.size) + ";";
    std::free(dib.data);
    TextDigest text;
    info->EnumTextChunks(text);
    out += std::to_string(std::hash<std::wstring>{}(text.text));
    info->Release();
    return out;
}

TEST(Threads, SixteenThreadsReadEveryFormatAsOneThreadDoes) {
    const auto dir = std::filesystem::temp_directory_path() / ("fi-threads-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    // 16 files of each format, the documents of that format in turn.
    std::map<EFileFormat, std::vector<Document>> byFormat;
    for (auto& doc : AllDocuments()) byFormat[doc.format].push_back(std::move(doc));
    ASSERT_EQ(byFormat.size(), 4u) << "a format has no document";
    std::vector<std::pair<std::string, EFileFormat>> files;
    for (const auto& [format, docs] : byFormat) {
        for (int i = 0; i < kPerFormat; ++i) {
            const Document& doc = docs[size_t(i) % docs.size()];
            const auto path = dir / (std::to_string(i) + "-" + doc.name);
            std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(doc.bytes.data()), std::streamsize(doc.bytes.size()));
            files.emplace_back(path.string(), format);
        }
    }
    std::vector<std::string> expected;
    for (const auto& [path, format] : files) {
        expected.push_back(ReadAll(path, format));
        EXPECT_NE(expected.back(), "unopened") << path;
    }

    std::vector<std::vector<std::string>> got(kThreads);
    std::latch start(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            start.arrive_and_wait();
            // Each thread starts at another file, so that every file is
            // read by several threads at the same moment.
            got[size_t(t)].resize(files.size());
            for (size_t k = 0; k < files.size(); ++k) {
                const size_t i = (k + size_t(t) * files.size() / kThreads) % files.size();
                got[size_t(t)][i] = ReadAll(files[i].first, files[i].second);
            }
        });
    }
    for (auto& thread : threads) thread.join();
    for (int t = 0; t < kThreads; ++t)
        for (size_t i = 0; i < files.size(); ++i) EXPECT_EQ(got[size_t(t)][i], expected[i]) << "thread " << t << ", " << files[i].first;
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace reliability
