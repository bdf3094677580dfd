// Which of the four formats a file holds, told by its first bytes (RIFF
// form, zip "mimetype" member, magics), else by its extension. Only regular
// files are read, opened without blocking, so that a FIFO or a device named
// by a stranger never stalls a scan.
#include "fileinfo/FormatDetection.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <span>

#include "fileinfo/Utf8Text.h"
#include "platform/Files.h"
#include "platform/Time.h"
#include "utils/streams/FileStream.h"

namespace fi {

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

bool StartsWith(std::span<const uint8_t> head, const char* magic) {
    size_t n = std::strlen(magic);
    return head.size() >= n && std::memcmp(head.data(), magic, n) == 0;
}

// A zip container writes its "mimetype" member first and stored, so the
// media type stands in the first local header.
std::optional<EFileFormat> FromZipHead(std::span<const uint8_t> head) {
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

std::optional<EFileFormat> DetectFormatOfBytes(const uint8_t* data, size_t size) {
    const std::span<const uint8_t> head(data, std::min<size_t>(size, 512));
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
    return std::nullopt;
}

IStream* OpenForReading(const std::string& path, std::string* why) {
    int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        if (why) *why = std::strerror(errno);
        return nullptr;
    }
    // Non-blocking stays set: it changes nothing for a regular file.
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        if (why) *why = S_ISDIR(st.st_mode) ? "is a folder" : "not a regular file";
        ::close(fd);
        return nullptr;
    }
    // The stream answers size and time from this fstat: a reader asks for
    // them several times, and each would be a system call.
    BrmUtils::FileStream::Snapshot snapshot;
    snapshot.size = uint64_t(st.st_size);
    snapshot.modified = UnixTimeToFileTime(int64_t(st.st_mtim.tv_sec), uint32_t(st.st_mtim.tv_nsec));
    auto* stream = new (std::nothrow) BrmUtils::FileStream(fd, PathFromNative(path.c_str()).c_str(), snapshot);
    if (!stream) {
        if (why) *why = std::strerror(ENOMEM);
        ::close(fd);
    }
    return stream;
}

std::optional<EFileFormat> DetectFormat(IStream* stream, const std::string& path) {
    uint8_t head[512];
    ULONG got = 0;
    HRESULT hr = stream->Read(head, sizeof head, &got);
    stream->Seek(MakeLargeInteger(0), STREAM_SEEK_SET, nullptr);
    if (FAILED(hr)) return std::nullopt;
    if (auto f = DetectFormatOfBytes(head, got)) return f;
    return FromExtension(path);
}

std::optional<EFileFormat> DetectFormat(const std::string& path, bool* readable, std::string* why) {
    IStream* stream = OpenForReading(path, why);
    *readable = stream != nullptr;
    if (!stream) return std::nullopt;
    std::optional<EFileFormat> format = DetectFormat(stream, path);
    stream->Release();
    return format;
}

namespace {

// The reader the factory gave for the chosen format, with the reason when it
// gave none.
IFileInfo* ReaderOf(IFileInfo* info, EFileFormat chosen, EFileFormat* format, std::string* why) {
    *format = chosen;
    if (!info && why) *why = std::string("cannot be read as a ") + FormatName(chosen) + " document";
    return info;
}

}  // namespace

IFileInfo* OpenDocumentFile(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format,
                            bool* readable, std::string* why) {
    if (why) why->clear();
    IStream* stream = OpenForReading(path, why);
    *readable = stream != nullptr;
    if (!stream) return nullptr;
    std::optional<EFileFormat> chosen = forced ? forced : DetectFormat(stream, path);
    IFileInfo* info = chosen ? ReaderOf(IFileInfo::GetInst(stream, *chosen), *chosen, format, why) : nullptr;
    stream->Release();
    return info;
}

IFileInfo* OpenDocumentPath(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format,
                            bool* readable, std::string* why) {
    if (why) why->clear();
    std::optional<EFileFormat> detected = DetectFormat(path, readable, why);
    if (!*readable) return nullptr;
    std::optional<EFileFormat> chosen = forced ? forced : detected;
    return chosen ? ReaderOf(IFileInfo::GetInst(Widen(path).c_str(), *chosen), *chosen, format, why) : nullptr;
}

OpenFailure ClassifyOpenFailure(bool forced, bool readable, const std::string& why) {
    if (!readable) return forced ? OpenFailure::kFailed : OpenFailure::kUnreadable;
    return why.empty() ? OpenFailure::kUnsupported : OpenFailure::kFailed;
}

}  // namespace fi
