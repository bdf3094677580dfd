// The format of a file from its first bytes or its extension, and the names
// of the formats ("drawing", "paint", "metafile", "fill"). A file is opened
// once: detection reads the stream that the reader is then given.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "fileinfo/IFileInfo.h"

namespace fi {

const char* FormatName(EFileFormat format);
std::optional<EFileFormat> ParseFormatName(const std::string& name);

// The format told by the file's first bytes (RIFF form, zip "mimetype",
// magics), else by its extension; nullopt when neither says. `readable`
// becomes false when the file cannot be read at all or is not a regular
// file (a FIFO, a device, a folder), with the reason in `why`.
std::optional<EFileFormat> DetectFormat(const std::string& path, bool* readable, std::string* why);

// Opens a regular file for reading, never blocking on a FIFO or a device;
// null with the reason in `why` when it is no regular file or cannot be
// opened. The caller owns the one reference.
IStream* OpenForReading(const std::string& path, std::string* why);

// The format told by the stream's first bytes, else by the extension of
// `path`; the stream is put back at its start.
std::optional<EFileFormat> DetectFormat(IStream* stream, const std::string& path);

// The reader of the document at `path`, the file opened once: the format
// given, else the one detected, goes to `format`. Null when the file cannot
// be read (`readable` false), is of no supported type (`why` empty) or is
// refused by the reader; `why` tells the reason.
IFileInfo* OpenDocumentFile(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format,
                            bool* readable, std::string* why);

// OpenDocumentFile for a document whose changes are to be written back: the
// format is told on a stream of its own, and the reader is given the path,
// since a commit replaces the file. Same answers as OpenDocumentFile.
IFileInfo* OpenDocumentPath(const std::string& path, std::optional<EFileFormat> forced, EFileFormat* format,
                            bool* readable, std::string* why);

// What a scan makes of a file OpenDocumentFile gave no reader for: it is
// skipped when it cannot be read and no type was asked for, or is of no
// supported type; it failed when it is of the type asked for, or of a known
// type, and cannot be read as one (`why` then says so).
enum class OpenFailure { kUnreadable, kUnsupported, kFailed };
OpenFailure ClassifyOpenFailure(bool forced, bool readable, const std::string& why);

// The format told by the first bytes of a file alone (the first 512 are read).
std::optional<EFileFormat> DetectFormatOfBytes(const uint8_t* data, size_t size);

}  // namespace fi
