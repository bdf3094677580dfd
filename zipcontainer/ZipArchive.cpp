// Reading and writing the central directory of one archive.
#include "zipcontainer/ZipArchive.h"

#include "zipcontainer/ZipCentralDirectory.h"
#include "zipcontainer/ZipEndRecord.h"
#include "zipcontainer/ZipFormat.h"
#include "zipcontainer/ZipHeaders.h"
#include "zipcontainer/ZipIo.h"
#include "zipcontainer/ZipMatch.h"
#include "zipcontainer/ZipText.h"

using BrmPlatform::BrmStringW;
using namespace ZipFormat;

ZipArchive::ZipArchive(IStream* stream, const BrmStringW& path, bool readOnlyArchive)
    : readOnly(readOnlyArchive), stream_(stream), path_(path) {
    if (stream_)
        stream_->AddRef();
}

ZipArchive::~ZipArchive() { ReleaseStream(); }

void ZipArchive::ReleaseStream() { SafeRelease(stream_); }

bool ZipArchive::ReadCentralDirectory() {
    members.clear();
    ZipEndRecord record;
    if (!stream_ || !record.Read(stream_))
        return false;
    uint64_t length = 0;
    uint64_t directoryEnd = 0;
    if (!ZipIo::Length(stream_, length) ||
        !ZipIo::Add(record.directoryOffset, record.directorySize, directoryEnd) || directoryEnd > length)
        return false;
    std::vector<uint8_t> directory(size_t(record.directorySize));
    if (!ZipIo::ReadAt(stream_, record.directoryOffset, directory.data(), directory.size()))
        return false;
    end = record.directoryOffset;
    comment = ZipText::FromAnsi(record.comment.data(), record.comment.size());
    if (!ZipCentralDirectory::Parse(directory.data(), directory.size(), record.entries, members)) {
        members.clear();
        return false;
    }
    byName_.clear();
    for (size_t i = 0; i < members.size(); ++i)
        Index(i);
    return true;
}

void ZipArchive::Index(size_t index) { byName_[ZipMatch::Key(members[index].name)].push_back(index); }

size_t ZipArchive::AddMember(ZipMember member) {
    members.push_back(std::move(member));
    size_t index = members.size() - 1;
    Index(index);
    if (members[index].openForWrite)
        ++openMembers_;
    return index;
}

void ZipArchive::UpdateMember(size_t index, const ZipMember& member) {
    ZipMember& m = members[index];
    if (m.openForWrite != member.openForWrite)
        member.openForWrite ? ++openMembers_ : --openMembers_;
    BrmStringW name = m.name;
    m = member;
    m.name = name;
}

const std::vector<size_t>* ZipArchive::Lookup(const BrmStringW& name) const {
    auto it = byName_.find(ZipMatch::Key(name));
    return it == byName_.end() ? nullptr : &it->second;
}

bool ZipArchive::WriteCentralDirectory() {
    if (!stream_ || !ZipIo::SeekTo(stream_, end))
        return false;
    ZipHeaders::EndValues values;
    values.directoryOffset = end;
    bool cut = false;
    std::vector<uint8_t> block;
    for (const ZipMember& m : members) {
        if (m.deleted)
            continue;
        std::vector<uint8_t> header = ZipHeaders::Central(m);
        cut = cut || ZipHeaders::CentralNeedsZip64(m);
        values.directorySize += header.size();
        ++values.entries;
        block.insert(block.end(), header.begin(), header.end());
        if (block.size() >= 65536) {
            if (!ZipIo::Write(stream_, block.data(), block.size()))
                return false;
            block.clear();
        }
    }
    values.zip64 = cut || values.entries > 65534 || values.directorySize >= kMax32 || values.directoryOffset >= kMax32;
    values.narrowComment = ZipText::ToAnsi(comment);
    std::vector<uint8_t> tail = ZipHeaders::EndRecords(values);
    block.insert(block.end(), tail.begin(), tail.end());
    if (!ZipIo::Write(stream_, block.data(), block.size()))
        return false;
    uint64_t reached = values.directoryOffset + values.directorySize + tail.size();
    return SUCCEEDED(stream_->SetSize(MakeULargeInteger(reached)));
}

int ZipArchive::FindMember(const BrmStringW& name) const {
    if (const std::vector<size_t>* found = Lookup(name))
        for (size_t i : *found)
            if (!members[i].deleted)
                return int(i);
    return -1;
}
