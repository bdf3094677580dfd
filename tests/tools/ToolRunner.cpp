// The process runner and document helpers of the tool tests.
#include "ToolRunner.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/support/riff/DrawingChunks.h"

namespace tooltest {

std::vector<std::string> Result::ErrLines() const {
    std::vector<std::string> lines;
    std::istringstream in(err);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

namespace {
std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}
}  // namespace

Result RunTool(const std::vector<std::string>& args) { return RunProgram(FILEINFO_TOOL, args); }

Result RunProgram(const std::string& program, const std::vector<std::string>& args) {
    char outName[] = "/tmp/fitool-outXXXXXX";
    char errName[] = "/tmp/fitool-errXXXXXX";
    int outFd = mkstemp(outName);
    int errFd = mkstemp(errName);
    Result result;
    pid_t pid = fork();
    if (pid == 0) {
        dup2(outFd, 1);
        dup2(errFd, 2);
        int devnull = open("/dev/null", O_RDONLY);
        dup2(devnull, 0);
        std::vector<char*> argv;
        std::string tool = program;
        argv.push_back(tool.data());
        std::vector<std::string> copy = args;
        for (auto& a : copy) argv.push_back(a.data());
        argv.push_back(nullptr);
        execv(tool.c_str(), argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    close(outFd);
    close(errFd);
    result.out = Slurp(outName);
    result.err = Slurp(errName);
    unlink(outName);
    unlink(errName);
    return result;
}

std::string Scratch::Write(const std::string& name, const std::vector<uint8_t>& bytes) const {
    std::filesystem::path p(Path(name));
    std::filesystem::create_directories(p.parent_path());
    ziptest::WriteFile(p.string(), bytes);
    return p.string();
}

std::vector<uint8_t> DrawingDocument(const std::wstring& comment, bool withThumbnail) {
    using namespace TestDocs;
    Summary sum;
    sum.appVersion = 1200;
    sum.productId = 1;
    sum.buildNumber = 77;
    std::vector<Chunk> chunks = {
        SumiChunk(sum),
        VrsnChunk(1200),
        InfoList({{Tag("ICMT"), comment}, {Tag("IKEY"), L"alpha;beta"}}, true),
        DocList({FontTable(1200, {L"Serif", L"Sans"}), PageConfigChunk(1200, PageConfig{})}),
        PageList(),
    };
    if (withThumbnail) {
        DibParams dib;
        dib.width = 40;
        dib.height = 30;
        chunks.push_back(DispChunk(dib));
    }
    return Riff(Tag("TCNB"), chunks);
}

std::vector<uint8_t> Metafile() {
    TestDocs::DibParams dib;
    dib.width = 16;
    dib.height = 8;
    dib.bitCount = 8;
    return TestDocs::ExchangeMetafile(dib);
}

}  // namespace tooltest
