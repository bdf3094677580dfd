// The two factories of IFileInfo: pick the reader for the format, build its
// catalogue, then attach the source. A drawing document is first probed as a
// zip container; when it is none, the RIFF reader takes it.
#include "fileinfo/IFileInfo.h"
#include "fileinfo/KvdContainerInfo.h"
#include "fileinfo/WFillFile.h"
#include "fileinfo/WJmvFile.h"
#include "fileinfo/WKvdFile.h"
#include "fileinfo/WQpxFile.h"

namespace {

// The reader for a zip container on the source, or null when the source is
// no container of this system (the object made for the probe is released
// here).
template <typename Source>
IFileInfo* ProbeContainer(Source source) {
    KvdContainerInfo* reader = new KvdContainerInfo(source);
    if (!reader->HasContainer()) {
        reader->Release();
        return nullptr;
    }
    return reader;
}

// A new, unopened reader for the format; null for an unknown format. Each
// format gets one line here, "case FileFormatPaint: return new WQpxFile;";
// a format whose reader is not part of the library yet answers null.
IFileInfo* NewReader(EFileFormat format) {
    switch (format) {
        case FileFormatDrawing: return new WKvdFile;  // the RIFF document, when the probe found no container
        case FileFormatMetafile: return new WJmvFile;
        case FileFormatPaint: return new WQpxFile;
        case FileFormatFill: return new WFillFile;
        default:
            return nullptr;
    }
}

bool IsKnownFormat(EFileFormat format) { return format >= FileFormatDrawing && format <= FileFormatFill; }

// Builds the catalogue before anything is read, so no entry can depend on
// the file; a failed attach releases the object.
template <typename Source>
IFileInfo* Attach(IFileInfo* reader, Source source, bool (IFileInfo::*open)(Source)) {
    if (!reader) {
        return nullptr;
    }
    reader->BuildCatalogue();
    if (!(reader->*open)(source)) {
        reader->Release();
        return nullptr;
    }
    return reader;
}

}  // namespace

IFileInfo* IFileInfo::GetInst(IStream* stream, EFileFormat format) {
    if (!IsKnownFormat(format)) {
        return nullptr;  // the stream is not touched
    }
    IFileInfo* reader = nullptr;
    if (format == FileFormatDrawing) {
        // The probe reads from where the stream stands; a failed probe puts it back there.
        ULARGE_INTEGER position;
        position.QuadPart = 0;
        if (stream) {
            stream->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &position);
        }
        reader = ProbeContainer(stream);
        if (!reader) {
            if (stream) {
                stream->Seek(MakeLargeInteger(int64_t(position.QuadPart)), STREAM_SEEK_SET, nullptr);
            }
            reader = NewReader(FileFormatDrawing);
        }
    } else {
        reader = NewReader(format);
    }
    return Attach<IStream*>(reader, stream, &IFileInfo::OpenStream);
}

IFileInfo* IFileInfo::GetInst(const wchar_t* path, EFileFormat format) {
    if (!IsKnownFormat(format)) {
        return nullptr;
    }
    IFileInfo* reader = nullptr;
    if (format == FileFormatDrawing) {
        // Every attempt opens the file for itself: there is no position to keep.
        reader = ProbeContainer(path);
        if (!reader) {
            reader = NewReader(FileFormatDrawing);
        }
    } else {
        reader = NewReader(format);
    }
    return Attach<const wchar_t*>(reader, path, &IFileInfo::OpenFile);
}
