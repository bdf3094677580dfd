// Opening a set, finding and opening members, creating and removing them.
// The commit and the merge are in ZipFileSetCommit.cpp.
#include "zipcontainer/ZipFileSet.h"

#include <regex>

#include "platform/Files.h"
#include "platform/Time.h"
#include "utils/FileUrl.h"
#include "utils/streams/FileStream.h"
#include "utils/streams/StreamInterfaces.h"
#include "utils/streams/RandomAccessStream.h"
#include "zipcontainer/ZipFormat.h"
#include "zipcontainer/ZipMatch.h"
#include "zipcontainer/ZipReadStream.h"
#include "zipcontainer/ZipText.h"
#include "zipcontainer/ZipWriteStream.h"

using BrmPlatform::BrmStringW;
using namespace ZipFormat;

namespace {

// The file behind a stream, when the stream says where it comes from.
BrmStringW PathOfStream(IStream* stream, const BrmStringW& given) {
    if (!given.IsEmpty() || !stream)
        return given;
    BrmUtils::IStreamResourceLocator* locator = nullptr;
    if (FAILED(stream->QueryInterface(BrmUtils::IID_IStreamResourceLocator, reinterpret_cast<void**>(&locator))) ||
        !locator)
        return BrmStringW();
    BrmStringW path = BrmUtils::PathFromUrl(locator->GetResourceLocator());
    locator->Release();
    return path;
}

}  // namespace

ZipFileSet::~ZipFileSet() {
    // Targets that never became the result are the set's own temporary
    // files; nobody else knows their names, so they go with the set.
    for (auto& archive : all_) {
        archive->ReleaseStream();
        if (archive->temporary && !archive->Path().IsEmpty())
            DeleteFileW(archive->Path().GetString());
    }
}

void ZipFileSet::AddRef() { refCount_.fetch_add(1, std::memory_order_relaxed); }

void ZipFileSet::Release() {
    if (refCount_.fetch_sub(1, std::memory_order_acq_rel) != 1 || closing_)
        return;
    // The commit opens and closes member streams, which take and drop
    // references; `closing_` keeps those from coming back here.
    closing_ = true;
    CommitSet();
    delete this;
}

void ZipFileSet::SetNewTargetCallback(NewTargetCallback callback, void* context) {
    newTarget_ = callback;
    newTargetContext_ = context;
}

ZipFileSetRef ZipFileSet::Open(IStream* stream, const BrmStringW& path) {
    if (!stream)
        return {};
    // The path is asked of the stream only once the stream proved to be an
    // archive: most streams probed are none, and the question is not free.
    auto archive = std::make_unique<ZipArchive>(stream, path, true);
    if (!archive->ReadCentralDirectory())
        return {};
    archive->SetPath(PathOfStream(stream, path));
    ZipFileSetRef set(new ZipFileSet);
    set->mode_ = kOpened;
    set->sources_.push_back(archive.get());
    set->all_.push_back(std::move(archive));
    return set;
}

ZipFileSetRef ZipFileSet::OpenFromStream(IStream* stream, const BrmStringW& path) { return Open(stream, path); }

ZipFileSetRef ZipFileSet::OpenFromPath(const BrmStringW& path) {
    IStream* stream = BrmUtils::FileStream::Open(path.GetString());
    if (!stream)
        return {};
    ZipFileSetRef set = Open(stream, path);
    stream->Release();
    return set;
}

ZipFileSetRef ZipFileSet::CreateOnStream(IStream* stream, const BrmStringW& path) {
    if (!stream)
        return {};
    ZipFileSetRef set(new ZipFileSet);
    auto archive = std::make_unique<ZipArchive>(stream, PathOfStream(stream, path), false);
    // Even with no member the commit must leave a valid, empty archive.
    archive->modified = true;
    set->target_ = archive.get();
    set->all_.push_back(std::move(archive));
    set->mode_ = kCreated;
    set->createdNew_ = true;
    return set;
}

ZipFileSetRef ZipFileSet::CreateOnPath(const BrmStringW& path) {
    IStream* stream = BrmUtils::FileStream::Create(path.GetString());
    if (!stream)
        return {};
    ZipFileSetRef set = CreateOnStream(stream, path);
    stream->Release();
    if (!set)
        DeleteFileW(path.GetString());
    return set;
}

const ZipMember* ZipFileSet::FindMember(const BrmStringW& name) const {
    for (const auto& archive : all_) {
        int i = archive->FindMember(name);
        if (i >= 0)
            return &archive->members[size_t(i)];
    }
    return nullptr;
}

std::vector<const ZipMember*> ZipFileSet::ListMembers() const {
    std::vector<const ZipMember*> out;
    for (const auto& archive : all_)
        for (const ZipMember& m : archive->members)
            if (!m.deleted)
                out.push_back(&m);
    return out;
}

IStream* ZipFileSet::OpenMember(const BrmStringW& name, bool raw, bool randomAccess) {
    return OpenMember(FindMember(name), raw, randomAccess);
}

IStream* ZipFileSet::OpenMember(const ZipMember* member, bool raw, bool randomAccess) {
    if (!member)
        return nullptr;
    for (auto& archive : all_) {
        const ZipMember* first = archive->members.data();
        if (member >= first && member < first + archive->members.size())
            return OpenMemberIn(*archive, *member, raw, randomAccess);
    }
    return nullptr;
}

IStream* ZipFileSet::OpenMemberIn(ZipArchive& archive, const ZipMember& member, bool raw, bool randomAccess) {
    if (member.deleted || member.openForWrite || !archive.Stream())
        return nullptr;
    ZipReadStream* stream = ZipReadStream::Open(*this, archive.Stream(), member, raw);
    if (!stream)
        return nullptr;
    if (!randomAccess || raw || member.method != kMethodDeflated)
        return stream;
    IStream* wrapped = BrmUtils::RandomAccessStream::Create(stream);
    stream->Release();
    return wrapped;
}

BrmStringW ZipFileSet::GetComment() const { return all_.empty() ? BrmStringW() : all_.back()->comment; }

void ZipFileSet::SetComment(const BrmStringW& comment) {
    if (mode_ == kOpened || all_.empty())
        return;
    all_.back()->comment = comment;
    all_.back()->modified = true;
}

bool ZipFileSet::NameOpenForWrite(const BrmStringW& name) const {
    for (const auto& archive : all_) {
        const std::vector<size_t>* found = archive->HasOpenMember() ? archive->Lookup(name) : nullptr;
        for (size_t i = 0; found && i < found->size(); ++i)
            if (archive->members[(*found)[i]].openForWrite)
                return true;
    }
    return false;
}

int ZipFileSet::MarkDeleted(ZipArchive& archive, const BrmStringW& name) {
    int count = 0;
    auto mark = [&](ZipMember& m) {
        if (!m.openForWrite && !m.deleted) {
            m.deleted = true;
            archive.modified = true;
            ++count;
        }
    };
    if (ZipMatch::IsFolder(name)) {
        for (ZipMember& m : archive.members)
            if (ZipMatch::Matches(m.name, name))
                mark(m);
    } else if (const std::vector<size_t>* found = archive.Lookup(name)) {
        for (size_t i : *found)
            mark(archive.members[i]);
    }
    return count;
}

IStream* ZipFileSet::CreateMember(const BrmStringW& name, int level, bool randomAccess) {
    return NewMember(name, level, randomAccess, nullptr);
}

IStream* ZipFileSet::CreateRawMember(const ZipMember& model) { return NewMember(model.name, 0, false, &model); }

IStream* ZipFileSet::NewMember(const BrmStringW& givenName, int level, bool randomAccess, const ZipMember* model) {
    if (mode_ == kOpened)
        return nullptr;
    BrmStringW name = givenName;
    name.Replace(L'\\', L'/');
    if (name.IsEmpty() || ZipText::ToUtf8(name).size() > kMax16)
        return nullptr;
    if (NameOpenForWrite(name))
        return nullptr;
    if (!target_ || target_->HasOpenMember() || target_->FindMember(name) >= 0) {
        if (!StartTarget())
            return nullptr;
    }
    for (ZipArchive* source : sources_)
        MarkDeleted(*source, name);

    ZipMember member;
    if (model) {
        member = *model;
        member.extras = model->extras;
        member.deleted = false;
        member.openForWrite = false;
    } else {
        FILETIME now{};
        GetSystemTimeAsFileTime(&now);
        member.modified = member.accessed = member.created = now;
        member.versionNeeded = kVersionDefault;
        member.method = level == 0 ? kMethodStored : kMethodDeflated;
        member.flags = kFlagUtf8;
        static const uint16_t kLevelBits[] = {0, 3, 2, 0, 1};
        if (level > 0 && level <= 4)
            member.flags |= uint16_t(kLevelBits[level] << 1);
    }
    member.name = name;
    member.flags |= kFlagUtf8;
    return ZipWriteStream::Create(*this, *target_, std::move(member), model != nullptr, randomAccess);
}

bool ZipFileSet::RemoveMembers(const BrmStringW& name) {
    if (mode_ == kOpened)
        return false;
    bool any = false;
    for (auto& archive : all_)
        any = MarkDeleted(*archive, name) > 0 || any;
    return any;
}

int ZipFileSet::RemoveMatching(const BrmStringW& expression) {
    if (mode_ == kOpened)
        return 0;
    std::wregex pattern;
    try {
        pattern.assign(expression.GetString(), size_t(expression.GetLength()), std::regex::icase);
    } catch (const std::regex_error&) {
        return 0;
    }
    int count = 0;
    for (auto& archive : all_) {
        for (ZipMember& m : archive->members) {
            if (m.openForWrite || m.deleted)
                continue;
            const wchar_t* text = m.name.GetString();
            bool match = false;
            try {
                match = std::regex_match(text, text + m.name.GetLength(), pattern);
            } catch (const std::regex_error&) {
                match = false;
            }
            if (match) {
                m.deleted = true;
                archive->modified = true;
                ++count;
            }
        }
    }
    return count;
}
