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

Document OpenDocument(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format, bool quiet,
                      std::string* why) {
    std::string reason;
    bool readable = false;
    Document doc(OpenDocumentFile(path, forced, format, &readable, &reason));
    if (!doc) {
        // Unreadable or refused: the reason is given; of no supported type: none is.
        if (reason.empty()) reason = "not a document of a supported type";
        if (why) *why = reason;
        if (!quiet) Fail(path, reason);
    }
    return doc;
}

Document OpenDocumentForWriting(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format) {
    std::string reason;
    bool readable = false;
    std::optional<EFileFormat> detected = DetectFormat(path, &readable, &reason);
    if (!readable) {
        Fail(path, reason);
        return {};
    }
    std::optional<EFileFormat> chosen = forced ? forced : detected;
    if (!chosen) {
        Fail(path, "not a document of a supported type");
        return {};
    }
    *format = *chosen;
    Document doc(IFileInfo::GetInst(Widen(path).c_str(), *chosen));
    if (!doc) Fail(path, std::string("cannot be read as a ") + FormatName(*chosen) + " document");
    return doc;
}

}  // namespace fitool
