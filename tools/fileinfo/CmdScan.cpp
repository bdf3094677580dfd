// `fileinfo scan`: properties of every document below the given paths, on
// several threads. Each thread opens its own readers (a reader is used by
// one thread at a time); lines are written whole, in the order they finish.
// The folders are walked as the threads ask for files, so that memory stays
// flat however many files there are.
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
    std::atomic<size_t> done{0}, documents{0}, failed{0}, skipped{0};
};

// The regular files of the given files and folders, one at a time to
// whichever thread asks, in the order of the walk.
class FileFeed {
public:
    explicit FileFeed(std::vector<std::string> roots) : roots_(std::move(roots)) {}

    bool Next(std::string& file) {
        std::lock_guard<std::mutex> lock(mutex_);
        for (;;) {
            std::error_code ec;
            for (; walking_ && walk_ != fs::recursive_directory_iterator(); walk_.increment(ec)) {
                if (ec) break;
                std::error_code fec;
                if (walk_->is_regular_file(fec)) {
                    file = walk_->path().string();
                    walk_.increment(ec);
                    walking_ = !ec;
                    ++count_;
                    return true;
                }
            }
            walking_ = false;
            if (next_ >= roots_.size()) return false;
            const std::string& root = roots_[next_++];
            if (!fs::is_directory(root, ec)) {
                file = root;
                ++count_;
                return true;
            }
            walk_ = fs::recursive_directory_iterator(root, fs::directory_options::skip_permission_denied, ec);
            walking_ = !ec;
        }
    }
    size_t Count() const { return count_; }

private:
    std::mutex mutex_;
    std::vector<std::string> roots_;
    size_t next_ = 0;
    fs::recursive_directory_iterator walk_;
    bool walking_ = false;
    size_t count_ = 0;
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
        std::vector<std::string> roots;
        for (const auto& p : o->paths) {
            std::error_code ec;
            if (!fs::exists(fs::status(p, ec)) || ec) {
                *exitCode = Fail(p, "no such file or folder");
                continue;
            }
            roots.push_back(p);
        }
        const unsigned jobs = o->jobs ? o->jobs : std::max(1u, std::thread::hardware_concurrency());
        bool tty = ::isatty(STDERR_FILENO) != 0;
        // The progress bar needs the total: only then are the folders walked twice.
        size_t total = 0;
        if (tty) {
            FileFeed counting(roots);
            for (std::string file; counting.Next(file);) ++total;
        }
        FileFeed feed(std::move(roots));
        Counters counters;
        std::mutex outLock;
        auto start = std::chrono::steady_clock::now();

        const std::optional<EFileFormat> forced = o->type.Get();
        auto worker = [&] {
            std::string buffer;
            for (std::string file; feed.Next(file);) {
                // One open per file: the reader reads the stream that detection read.
                EFileFormat f = forced ? *forced : EFileFormat{};
                bool readable = false;
                std::string why;
                Document doc(OpenDocumentFile(file, forced, &f, &readable, &why));
                if (!doc && ClassifyOpenFailure(forced.has_value(), readable, why) != OpenFailure::kFailed) {
                    ++counters.skipped;
                } else if (!doc) {
                    ++counters.failed;
                    if (o->jsonl) {
                        AppendScanErrorJson(buffer, file, f, why);
                        buffer += '\n';
                    } else {
                        buffer += std::string(FormatName(f)) + "\terror\t" + file + "\n";
                    }
                } else {
                    ++counters.documents;
                    if (o->jsonl) {
                        AppendPropsJson(buffer, doc.get(), file, f);
                        buffer += '\n';
                    } else {
                        buffer += std::string(FormatName(f)) + "\t" + std::to_string(doc->GetCount()) + "\t" + file + "\n";
                    }
                }
                ++counters.done;
                if (buffer.size() > 16384) {
                    std::lock_guard<std::mutex> lock(outLock);
                    std::fwrite(buffer.data(), 1, buffer.size(), stdout);
                    buffer.clear();
                    if (tty) Progress(counters, total);
                }
            }
            std::lock_guard<std::mutex> lock(outLock);
            std::fwrite(buffer.data(), 1, buffer.size(), stdout);
        };
        std::vector<std::thread> threads;
        for (unsigned j = 0; j < jobs; ++j) threads.emplace_back(worker);
        for (auto& t : threads) t.join();
        std::fflush(stdout);
        if (tty) Progress(counters, total);
        const size_t files = feed.Count();
        // As many jobs as there were files to share, at most.
        const unsigned used = unsigned(std::min<size_t>(jobs, std::max<size_t>(files, 1)));

        double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (tty) std::fputs("\n", stderr);
        std::fprintf(stderr, "fileinfo: scanned %zu files: %zu documents, %zu failed, %zu skipped in %.2f s (%.0f files/s, %u jobs)\n",
                     files, counters.documents.load(), counters.failed.load(), counters.skipped.load(), seconds,
                     seconds > 0 ? double(files) / seconds : 0.0, used);
    });
}

}  // namespace fitool
