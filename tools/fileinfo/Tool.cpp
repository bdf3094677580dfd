// Error reporting and document opening.
#include "Tool.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <vector>

namespace fitool {

int Fail(const std::string& file, const std::string& reason) {
    std::string line = "fileinfo: ";
    if (!file.empty()) line += file + ": ";
    line += reason + "\n";
    std::fputs(line.c_str(), stderr);  // one write, so lines of threads never mix
    return kExitFailed;
}

Document& Document::operator=(Document&& other) noexcept {
    if (this != &other) {
        Reset();
        info_ = other.info_;
        other.info_ = nullptr;
    }
    return *this;
}

void Document::Reset() {
    if (info_) info_->Release();
    info_ = nullptr;
}

namespace {

// The document an opener gave, or the error line with its reason.
Document Reported(IFileInfo* info, const std::string& path, std::string reason, bool quiet, std::string* why) {
    Document doc(info);
    if (!doc) {
        // Unreadable or refused: the reason is given; of no supported type: none is.
        if (reason.empty()) reason = "not a document of a supported type";
        if (why) *why = reason;
        if (!quiet) Fail(path, reason);
    }
    return doc;
}

}  // namespace

Document OpenDocument(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format, bool quiet,
                      std::string* why) {
    std::string reason;
    bool readable = false;
    IFileInfo* info = OpenDocumentFile(path, forced, format, &readable, &reason);
    return Reported(info, path, std::move(reason), quiet, why);
}

Document OpenDocumentForWriting(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format) {
    std::string reason;
    bool readable = false;
    IFileInfo* info = OpenDocumentPath(path, forced, format, &readable, &reason);
    return Reported(info, path, std::move(reason), false, nullptr);
}

}  // namespace fitool
