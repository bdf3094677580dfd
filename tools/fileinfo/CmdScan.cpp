// `fileinfo scan`: properties of every document below the given paths, on
// several threads. Each thread opens its own readers (a reader is used by
// one thread at a time); lines are written whole, in the order they finish.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>
#include <thread>
#include <unistd.h>

#include "Commands.h"

namespace fitool {
namespace {

namespace fs = std::filesystem;

struct Counters {
    std::atomic<size_t> next{0}, done{0}, documents{0}, failed{0}, skipped{0};
};

void Progress(const Counters& c, size_t total) {
    size_t done = c.done.load();
    int width = 30;
    int filled = total ? int(double(done) / double(total) * width) : width;
    std::string bar(size_t(filled), '#');
    bar.resize(size_t(width), '.');
    std::fprintf(stderr, "\r[%s] %zu/%zu", bar.c_str(), done, total);
}

}  // namespace

void AddScan(CLI::App& app, int* exitCode) {
    struct Options {
        std::vector<std::string> paths;
        unsigned jobs = 0;
        bool jsonl = false;
        TypeOption type;
    };
    auto o = std::make_shared<Options>();
    CLI::App* sub = app.add_subcommand("scan", "Read the properties of every document in files and folders");
    sub->footer("Without --jsonl one line per document: type, number of properties, file.\n"
                "Files of no supported type are skipped.\n\n"
                "Example:\n  fileinfo scan ~/Documents --jobs 2 --jsonl > index.jsonl");
    sub->add_option("PATH", o->paths, "Files and folders")->required();
    sub->add_option("--jobs", o->jobs, "Threads (default: the number of cores)")->check(CLI::Range(1, 256));
    sub->add_flag("--jsonl", o->jsonl, "One JSON object of props per document and line");
    AddTypeOption(sub, o->type);
    sub->callback([o, exitCode] {
        *exitCode = kExitOk;
        std::vector<std::string> files;
        for (const auto& p : o->paths) {
            std::error_code ec;
            auto status = fs::status(p, ec);
            if (ec || !fs::exists(status)) {
                *exitCode = Fail(p, "no such file or folder");
                continue;
            }
            if (!fs::is_directory(status)) {
                files.push_back(p);
                continue;
            }
            fs::recursive_directory_iterator it(p, fs::directory_options::skip_permission_denied, ec), end;
            for (; !ec && it != end; it.increment(ec)) {
                std::error_code fec;
                if (it->is_regular_file(fec)) files.push_back(it->path().string());
            }
        }
        unsigned jobs = o->jobs ? o->jobs : std::max(1u, std::thread::hardware_concurrency());
        jobs = unsigned(std::min<size_t>(jobs, std::max<size_t>(files.size(), 1)));
        bool tty = ::isatty(STDERR_FILENO) != 0;
        Counters counters;
        std::mutex outLock;
        auto start = std::chrono::steady_clock::now();

        auto worker = [&] {
            std::string buffer;
            for (size_t i; (i = counters.next++) < files.size();) {
                const std::string& file = files[i];
                bool readable = false;
                std::optional<EFileFormat> format = o->type.Get();
                if (!format) format = DetectFormat(file, &readable, nullptr);
                if (!format) {
                    ++counters.skipped;
                } else {
                    EFileFormat f{};
                    std::string why;
                    Document doc = OpenDocument(file, format, &f, true, &why);
                    if (!doc) {
                        ++counters.failed;
                        buffer += o->jsonl ? DumpJson({{"file", file}, {"type", FormatName(*format)}, {"error", why}}) + "\n"
                                           : std::string(FormatName(*format)) + "\terror\t" + file + "\n";
                    } else {
                        ++counters.documents;
                        if (o->jsonl) {
                            buffer += DumpJson(PropsJson(doc.get(), file, f)) + "\n";
                        } else {
                            buffer += std::string(FormatName(f)) + "\t" + std::to_string(doc->GetCount()) + "\t" + file + "\n";
                        }
                    }
                }
                ++counters.done;
                if (buffer.size() > 16384 || counters.next >= files.size()) {
                    std::lock_guard<std::mutex> lock(outLock);
                    std::fwrite(buffer.data(), 1, buffer.size(), stdout);
                    buffer.clear();
                    if (tty) Progress(counters, files.size());
                }
            }
            std::lock_guard<std::mutex> lock(outLock);
            std::fwrite(buffer.data(), 1, buffer.size(), stdout);
        };
        std::vector<std::thread> threads;
        for (unsigned j = 0; j < jobs; ++j) threads.emplace_back(worker);
        for (auto& t : threads) t.join();
        std::fflush(stdout);

        double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (tty) std::fputs("\n", stderr);
        std::fprintf(stderr, "fileinfo: scanned %zu files: %zu documents, %zu failed, %zu skipped in %.2f s (%.0f files/s, %u jobs)\n",
                     files.size(), counters.documents.load(), counters.failed.load(), counters.skipped.load(), seconds,
                     seconds > 0 ? double(files.size()) / seconds : 0.0, jobs);
    });
}

}  // namespace fitool
