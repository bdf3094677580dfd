// Readers on many threads at once: 16 threads each open every document (16
// of each format) and read everything a host asks for. What each thread
// reads must equal what one thread alone reads; under ThreadSanitizer
// (make tsan) the run must also be free of data races in what the readers
// share (singletons, resources, the schema, the codecs).
#include <gtest/gtest.h>

#include <latch>
#include <map>
#include <thread>

#include "Documents.h"
#include "platform/Files.h"
#include "tests/support/zip/ZipTestArchive.h"

namespace reliability {
namespace {

constexpr int kThreads = 16;
constexpr int kPerFormat = 16;

std::string ReadAll(const std::string& path, EFileFormat format) {
    IFileInfo* info = IFileInfo::GetInst(PathFromNative(path.c_str()).c_str(), format);
    if (!info) return "unopened";
    std::string out = ReadEverything(info, format);
    info->Release();
    return out;
}

TEST(Threads, SixteenThreadsReadEveryFormatAsOneThreadDoes) {
    ziptest::TempDir dir;
    // 16 files of each format, the documents of that format in turn.
    std::map<EFileFormat, std::vector<Document>> byFormat;
    for (auto& doc : AllDocuments()) byFormat[doc.format].push_back(std::move(doc));
    ASSERT_EQ(byFormat.size(), 4u) << "a format has no document";
    std::vector<std::pair<std::string, EFileFormat>> files;
    for (const auto& [format, docs] : byFormat) {
        for (int i = 0; i < kPerFormat; ++i) {
            const Document& doc = docs[size_t(i) % docs.size()];
            const std::string path = dir / (std::to_string(i) + "-" + doc.name);
            ziptest::WriteFile(path, doc.bytes);
            files.emplace_back(path, format);
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
}

}  // namespace
}  // namespace reliability
