// Runs the built fileinfo program and captures what it answers, and writes
// documents into a scratch folder that is removed at the end.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/riff/RiffWriter.h"
#include "tests/support/zip/ZipTestArchive.h"

namespace tooltest {

struct Result {
    int exitCode = -1;  // 128 + signal when the program died
    std::string out;
    std::string err;
    std::vector<std::string> ErrLines() const;
};

Result RunTool(const std::vector<std::string>& args);
Result RunProgram(const std::string& program, const std::vector<std::string>& args);

// A scratch folder; Write makes the folders a name needs.
class Scratch : public ziptest::TempDir {
public:
    std::string Write(const std::string& name, const std::vector<uint8_t>& bytes) const;
    std::string Path(const std::string& name) const { return *this / name; }
};
using ziptest::ReadFile;

// Documents of the project's writers.
std::vector<uint8_t> DrawingDocument(const std::wstring& comment = L"a comment", bool withThumbnail = true);
std::vector<uint8_t> Metafile();

}  // namespace tooltest
