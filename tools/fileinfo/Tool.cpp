// Error reporting, text conversion, format detection and document opening.
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

std::wstring Widen(const std::string& s) {
    std::wstring out;
    out.reserve(s.size());
    for (size_t i = 0; i < s.size();) {
        auto c = static_cast<unsigned char>(s[i]);
        uint32_t cp = 0xFFFD;
        size_t n = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 0;
        if (n == 0 || i + n > s.size()) {
            ++i;
        } else {
            cp = n == 1 ? c : c & (0x7F >> n);
            bool ok = true;
            for (size_t k = 1; k < n; ++k) {
                auto d = static_cast<unsigned char>(s[i + k]);
                if ((d & 0xC0) != 0x80) ok = false;
                cp = (cp << 6) | (d & 0x3F);
            }
            if (!ok || cp > 0x10FFFF || (cp >= 0xD800 && cp < 0xE000)) cp = 0xFFFD;
            i += ok ? n : 1;
        }
        out.push_back(static_cast<wchar_t>(cp));
    }
    return out;
}

std::string Narrow(const wchar_t* text, size_t length) {
    std::string out;
    out.reserve(length);
    for (size_t i = 0; i < length; ++i) {
        auto cp = static_cast<uint32_t>(text[i]);
        if (cp > 0x10FFFF || (cp >= 0xD800 && cp < 0xE000)) cp = 0xFFFD;
        if (cp < 0x80) {
            out.push_back(char(cp));
        } else if (cp < 0x800) {
            out.push_back(char(0xC0 | (cp >> 6)));
            out.push_back(char(0x80 | (cp & 0x3F)));
        } else if (cp < 0x10000) {
            out.push_back(char(0xE0 | (cp >> 12)));
            out.push_back(char(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(char(0x80 | (cp & 0x3F)));
        } else {
            out.push_back(char(0xF0 | (cp >> 18)));
            out.push_back(char(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(char(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(char(0x80 | (cp & 0x3F)));
        }
    }
    return out;
}

std::string Narrow(const std::wstring& text) { return Narrow(text.data(), text.size()); }

const char* FormatName(EFileFormat format) {
    switch (format) {
        case FileFormatDrawing: return "drawing";
        case FileFormatPaint: return "paint";
        case FileFormatMetafile: return "metafile";
        case FileFormatFill: return "fill";
    }
    return "unknown";
}

std::optional<EFileFormat> ParseFormatName(const std::string& name) {
    for (EFileFormat f : {FileFormatDrawing, FileFormatPaint, FileFormatMetafile, FileFormatFill}) {
        if (name == FormatName(f)) return f;
    }
    return std::nullopt;
}

namespace {

uint32_t U32(const uint8_t* p) { return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24; }
uint16_t U16(const uint8_t* p) { return uint16_t(p[0] | p[1] << 8); }

bool StartsWith(const std::vector<uint8_t>& head, const char* magic) {
    size_t n = std::strlen(magic);
    return head.size() >= n && std::memcmp(head.data(), magic, n) == 0;
}

// A zip container writes its "mimetype" member first and stored, so the
// media type stands in the first local header.
std::optional<EFileFormat> FromZipHead(const std::vector<uint8_t>& head) {
    if (head.size() < 30) return std::nullopt;
    uint16_t method = U16(&head[8]);
    uint32_t size = U32(&head[18]);
    uint16_t nameLength = U16(&head[26]);
    uint16_t extraLength = U16(&head[28]);
    size_t data = 30 + size_t(nameLength) + extraLength;
    if (method != 0 || std::string(head.begin() + 30, head.begin() + 30 + std::min<size_t>(nameLength, head.size() - 30)) !=
                           "mimetype") {
        return std::nullopt;
    }
    if (data + size > head.size()) return std::nullopt;
    std::string mime(head.begin() + long(data), head.begin() + long(data + size));
    if (mime.find("fill") != std::string::npos) return FileFormatFill;
    if (mime.rfind("application/x-vnd.brimo.", 0) == 0) return FileFormatDrawing;
    return std::nullopt;
}

std::optional<EFileFormat> FromExtension(const std::string& path) {
    auto dot = path.find_last_of('.');
    auto slash = path.find_last_of('/');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return std::nullopt;
    std::string ext = path.substr(dot + 1);
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    static const std::pair<const char*, EFileFormat> table[] = {
        {"kvd", FileFormatDrawing}, {"kvt", FileFormatDrawing}, {"pat", FileFormatDrawing},
        {"qpx", FileFormatPaint},   {"jmv", FileFormatMetafile}, {"fill", FileFormatFill},
    };
    for (const auto& [e, f] : table) {
        if (ext == e) return f;
    }
    return std::nullopt;
}

}  // namespace

std::optional<EFileFormat> DetectFormat(const std::string& path, bool* readable, std::string* why) {
    *readable = false;
    errno = 0;
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        if (why) *why = errno ? std::strerror(errno) : "cannot open";
        return std::nullopt;
    }
    std::vector<uint8_t> head(512);
    in.read(reinterpret_cast<char*>(head.data()), std::streamsize(head.size()));
    if (in.bad()) {
        if (why) *why = "cannot read";
        return std::nullopt;
    }
    head.resize(size_t(in.gcount()));
    *readable = true;
    if (StartsWith(head, "RIFF") && head.size() >= 12) {
        return std::memcmp(&head[8], "JMV1", 4) == 0 ? FileFormatMetafile : FileFormatDrawing;
    }
    if (StartsWith(head, "JMV3")) return FileFormatMetafile;
    for (const char* magic : {"QPX7FILE", "QPX8FILE", "QPX9FILE", "PP11QPX9FILE"}) {
        if (StartsWith(head, magic)) return FileFormatPaint;
    }
    if (StartsWith(head, "PK\x03\x04")) {
        if (auto f = FromZipHead(head)) return f;
    }
    return FromExtension(path);
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
    std::optional<EFileFormat> detected = DetectFormat(path, &readable, &reason);
    if (!readable) {
        if (why) *why = reason;
        if (!quiet) Fail(path, reason);
        return {};
    }
    std::optional<EFileFormat> chosen = forced ? forced : detected;
    if (!chosen) {
        reason = "not a document of a supported type";
        if (why) *why = reason;
        if (!quiet) Fail(path, reason);
        return {};
    }
    *format = *chosen;
    Document doc(IFileInfo::GetInst(Widen(path).c_str(), *chosen));
    if (!doc) {
        reason = std::string("cannot be read as a ") + FormatName(*chosen) + " document";
        if (why) *why = reason;
        if (!quiet) Fail(path, reason);
    }
    return doc;
}

std::string HexHresult(HRESULT hr) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "0x%08X", static_cast<uint32_t>(hr));
    return buf;
}

}  // namespace fitool
