// Replays fuzz inputs through a target without libFuzzer, so that the kept
// corpora run in every test build: each argument is a file, or a folder
// whose regular files are all run, in name order. A crash names the input
// that caused it; a folder with no files fails, so a lost corpus is noticed.
//   replay_fuzz_zip fuzz/corpus/fuzz_zip [more files or folders]
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());

namespace {

// The input being run, for the last words of a crash. A fixed buffer: the
// reporters below run in a signal handler or a dying sanitizer.
char g_current[4096];

void ReportCurrent() {
    const char prefix[] = "replay: failed on ";
    [[maybe_unused]] ssize_t ignored = ::write(2, prefix, sizeof prefix - 1);
    ignored = ::write(2, g_current, std::strlen(g_current));
    ignored = ::write(2, "\n", 1);
}

void OnFatalSignal(int signal) {
    ReportCurrent();
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

bool RunFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "replay: cannot read %s\n", path.c_str());
        return false;
    }
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::snprintf(g_current, sizeof g_current, "%s", path.c_str());
    // A copy of exactly the input's size, so that a read past its end is
    // caught by the address checker as it is under libFuzzer.
    std::unique_ptr<uint8_t[]> copy(new uint8_t[bytes.size() + (bytes.empty() ? 1 : 0)]);
    std::copy(bytes.begin(), bytes.end(), copy.get());
    LLVMFuzzerTestOneInput(copy.get(), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FILE_OR_FOLDER...\n", argv[0]);
        return 2;
    }
    if (__sanitizer_set_death_callback) __sanitizer_set_death_callback(ReportCurrent);
    for (int s : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL}) ::signal(s, OnFatalSignal);
    if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);

    size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        std::filesystem::path arg = argv[i];
        std::error_code ec;
        if (!std::filesystem::is_directory(arg, ec)) {
            if (!RunFile(arg)) return 1;
            ++replayed;
            continue;
        }
        std::vector<std::filesystem::path> files;
        for (const auto& entry : std::filesystem::directory_iterator(arg, ec))
            if (entry.is_regular_file()) files.push_back(entry.path());
        if (ec || files.empty()) {
            std::fprintf(stderr, "replay: no inputs in %s\n", arg.c_str());
            return 1;
        }
        std::sort(files.begin(), files.end());
        for (const auto& file : files) {
            if (!RunFile(file)) return 1;
            ++replayed;
        }
    }
    std::printf("replay: %zu inputs run\n", replayed);
    return 0;
}
