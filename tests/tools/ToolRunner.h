// Runs the built fileinfo program and captures what it answers, and writes
// documents into a scratch folder that is removed at the end.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/riff/RiffWriter.h"

namespace tooltest {

struct Result {
    int exitCode = -1;  // 128 + signal when the program died
    std::string out;
    std::string err;
    std::vector<std::string> ErrLines() const;
};

Result RunTool(const std::vector<std::string>& args);
Result RunProgram(const std::string& program, const std::vector<std::string>& args);

class Scratch {
public:
    Scratch();
    ~Scratch();
    std::string Write(const std::string& name, const std::vector<uint8_t>& bytes) const;
    std::string Path(const std::string& name) const { return (dir_ / name).string(); }

private:
    std::filesystem::path dir_;
};

std::vector<uint8_t> ReadFile(const std::string& path);

// Documents of the project's writers.
std::vector<uint8_t> DrawingDocument(const std::wstring& comment = L"a comment", bool withThumbnail = true);
std::vector<uint8_t> Metafile();

}  // namespace tooltest
