// One physical zip stream and its table of members: read from an existing
// archive, or written as a new target of a ZipFileSet.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
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
    // Indices of all members called `name` (case ignored, deleted ones too),
    // in table order; null if there is none.
    const std::vector<size_t>* Lookup(const BrmPlatform::BrmStringW& name) const;
    // Appends a member (the only way the table grows) and answers its index.
    size_t AddMember(ZipMember member);
    // Replaces the values of a member; its name stays.
    void UpdateMember(size_t index, const ZipMember& member);
    // Whether any member isn't closed yet.
    bool HasOpenMember() const { return openMembers_ > 0; }

    IStream* Stream() const { return stream_; }
    const BrmPlatform::BrmStringW& Path() const { return path_; }
    void SetPath(const BrmPlatform::BrmStringW& path) { path_ = path; }
    // Lets go of the stream (before the file is renamed or deleted).
    void ReleaseStream();

    // The table. Members are added by AddMember and never taken out; a
    // removed member is marked `deleted`.
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
    void Index(size_t index);

    IStream* stream_ = nullptr;
    BrmPlatform::BrmStringW path_;
    // Member indices by name folded to lower case: lookups in tables of
    // many thousand members stay cheap.
    std::unordered_map<std::wstring, std::vector<size_t>> byName_;
    size_t openMembers_ = 0;
};
