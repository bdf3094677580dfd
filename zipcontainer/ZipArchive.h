// One physical zip stream and its table of members: read from an existing
// archive, or written as a new target of a ZipFileSet.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/ObjIdl.h"
#include "utils/strings/BrmString.h"
#include "zipcontainer/ZipMember.h"

class ZipArchive {
public:
    // Takes a reference to `stream`. `path` is the file behind the stream,
    // empty when it has none; targets are made beside it and it is replaced
    // by rename when the set is committed.
    ZipArchive(IStream* stream, const BrmPlatform::BrmStringW& path, bool readOnly);
    ~ZipArchive();
    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;

    // Finds the end record, reads the directory and fills the table. On
    // false the table is empty.
    bool ReadCentralDirectory();
    // Writes the table's live members as the central directory at `end`,
    // then the end records, and cuts the stream there.
    bool WriteCentralDirectory();

    // Index of the first live member called `name` (case ignored), or -1.
    int FindMember(const BrmPlatform::BrmStringW& name) const;
    // Whether any member isn't closed yet.
    bool HasOpenMember() const;

    IStream* Stream() const { return stream_; }
    const BrmPlatform::BrmStringW& Path() const { return path_; }
    // Lets go of the stream (before the file is renamed or deleted).
    void ReleaseStream();

    std::vector<ZipMember> members;
    // Where the central directory starts; while writing, the end of the
    // member data, where the next member goes.
    uint64_t end = 0;
    bool readOnly = false;
    bool modified = false;
    // A target file the set made for itself; removed with the set unless it
    // became the result.
    bool temporary = false;
    BrmPlatform::BrmStringW comment;

private:
    IStream* stream_ = nullptr;
    BrmPlatform::BrmStringW path_;
};
