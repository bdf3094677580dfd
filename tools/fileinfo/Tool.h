// Shared pieces of the fileinfo tool: the exit codes, the one-line error
// report, and opening a document.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "fileinfo/FormatDetection.h"
#include "fileinfo/IFileInfo.h"
#include "fileinfo/PropertyNames.h"
#include "fileinfo/PropsJson.h"
#include "fileinfo/Utf8Text.h"
#include "fileinfo/Variants.h"

namespace fitool {

// Names, detection, variant forms and the JSON form come from the library.
using namespace fi;

constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;  // unreadable, unsupported, or nothing to give
constexpr int kExitUsage = 2;

// Writes "fileinfo: FILE: reason" (or "fileinfo: reason" for an empty file
// name) as one line on standard error and answers kExitFailed.
int Fail(const std::string& file, const std::string& reason);

// Owns one reference of a reader.
class Document {
public:
    Document() = default;
    explicit Document(IFileInfo* info) : info_(info) {}
    ~Document() { Reset(); }
    Document(Document&& other) noexcept : info_(other.info_) { other.info_ = nullptr; }
    Document& operator=(Document&& other) noexcept;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    IFileInfo* operator->() const { return info_; }
    IFileInfo* get() const { return info_; }
    explicit operator bool() const { return info_ != nullptr; }
    void Reset();

private:
    IFileInfo* info_ = nullptr;
};

// Opens the document at `path` for reading with the format given (or
// detected), the file opened once; on failure reports the error line and
// answers an empty Document.
Document OpenDocument(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format,
                      bool quiet = false, std::string* why = nullptr);

// The same for a document whose changes are to be written back: the reader
// is given the path, since a commit replaces the file.
Document OpenDocumentForWriting(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format);


}  // namespace fitool
