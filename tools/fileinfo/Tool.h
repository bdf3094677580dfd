// Shared pieces of the fileinfo tool: the exit codes, the one-line error
// report, text conversion, type detection and opening a document.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "fileinfo/IFileInfo.h"

namespace fitool {

constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;  // unreadable, unsupported, or nothing to give
constexpr int kExitUsage = 2;

// Writes "fileinfo: FILE: reason" (or "fileinfo: reason" for an empty file
// name) as one line on standard error and answers kExitFailed.
int Fail(const std::string& file, const std::string& reason);

std::wstring Widen(const std::string& utf8);
std::string Narrow(const wchar_t* text, size_t length);
std::string Narrow(const std::wstring& text);

// "drawing", "paint", "metafile", "fill" and back.
const char* FormatName(EFileFormat format);
std::optional<EFileFormat> ParseFormatName(const std::string& name);

// The format told by the file's first bytes (RIFF form, zip "mimetype",
// magics), else by its extension; nullopt when neither says. `readable`
// becomes false when the file cannot be read at all.
std::optional<EFileFormat> DetectFormat(const std::string& path, bool* readable, std::string* why);

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

// Opens the document at `path` with the format given (or detected); on
// failure reports the error line and answers an empty Document.
Document OpenDocument(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format,
                      bool quiet = false, std::string* why = nullptr);

std::string HexHresult(HRESULT hr);

}  // namespace fitool
