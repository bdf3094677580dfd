// Targets, merging and the commit of a ZipFileSet. Members move between
// archives raw, without being inflated and deflated again. The result of a
// commit is always a new file that takes the place of the first source by a
// rename, so that the user's file is at every moment either the old archive
// or the whole new one.
#include <chrono>
#include <thread>
#include <unordered_set>

#include "platform/Files.h"
#include "platform/LastError.h"
#include "utils/TempFiles.h"
#include "utils/streams/FileStream.h"
#include "zipcontainer/ZipFileSet.h"
#include "zipcontainer/ZipIo.h"
#include "zipcontainer/ZipMatch.h"

using BrmPlatform::BrmStringW;

namespace {

constexpr size_t kCopyBlock = 65536;
constexpr DWORD kErrorSharingViolation = 32;
constexpr int kReplaceTries = 10;

// The folder part of a path, with its final '/'; empty if there is none.
BrmStringW FolderOf(const BrmStringW& path) {
    int slash = path.ReverseFind(L'/');
    return slash < 0 ? BrmStringW() : path.Left(slash + 1);
}

// Copies all of `from` to `to`; false on a failed read or write.
bool CopyAll(IStream* from, IStream* to, uint64_t& copied) {
    std::vector<uint8_t> block(kCopyBlock);
    copied = 0;
    for (;;) {
        size_t got = 0;
        if (!ZipIo::Read(from, block.data(), block.size(), got))
            return false;
        if (got == 0)
            return true;
        if (!ZipIo::Write(to, block.data(), got))
            return false;
        copied += got;
    }
}

}  // namespace

bool ZipFileSet::AnyModified() const {
    for (const auto& archive : all_)
        if (archive->modified)
            return true;
    return false;
}

void ZipFileSet::ReleaseStreams() {
    for (auto& archive : all_)
        archive->ReleaseStream();
}

bool ZipFileSet::StartTarget() {
    BrmStringW folder = all_.empty() ? BrmStringW() : FolderOf(all_.back()->Path());
    BrmStringW path;
    HANDLE h = BrmUtils::CreateTempFile(folder, BrmStringW(), BrmStringW(), false, &path);
    if (h == INVALID_HANDLE_VALUE && !folder.IsEmpty())
        h = BrmUtils::CreateTempFile(BrmStringW(), BrmStringW(), BrmStringW(), false, &path);
    if (h == INVALID_HANDLE_VALUE)
        return false;
    IStream* stream = new BrmUtils::FileStream(h, path.GetString());
    auto archive = std::make_unique<ZipArchive>(stream, path, false);
    stream->Release();
    archive->temporary = true;
    archive->modified = true;
    archive->comment = all_.empty() ? BrmStringW() : all_.back()->comment;
    if (target_)
        sources_.push_back(target_);
    target_ = archive.get();
    all_.push_back(std::move(archive));
    return newTarget_ ? newTarget_(newTargetContext_, *this) : true;
}

bool ZipFileSet::CopyMember(ZipFileSet& from, ZipArchive& archive, const ZipMember& member, ZipFileSet& to) {
    // The model is copied first: creating the target member may mark this
    // very record deleted, and may move the table it lives in.
    ZipMember model = member;
    IStream* source = from.OpenMemberIn(archive, model, true, false);
    if (!source)
        return false;
    IStream* target = to.CreateRawMember(model);
    if (!target) {
        source->Release();
        return false;
    }
    uint64_t copied = 0;
    bool ok = CopyAll(source, target, copied) && copied == model.compressedSize;
    source->Release();
    target->Release();
    return ok;
}

bool ZipFileSet::MergeMembersTo(ZipFileSet* target, const std::vector<BrmStringW>& excluded,
                                std::vector<BrmStringW>* copied) {
    if (!target || all_.empty() || target->all_.empty())
        return false;
    if (target->mode_ != kOpened) {
        target->all_.back()->comment = all_.back()->comment;
        target->all_.back()->modified = true;
    }
    // Gather first: copying into a target of this very set would change the
    // tables under the loop.
    std::vector<std::pair<ZipArchive*, size_t>> live;
    std::unordered_set<std::wstring> seen;
    for (auto& archive : all_)
        for (size_t i = 0; i < archive->members.size(); ++i)
            if (!archive->members[i].deleted && seen.insert(ZipMatch::Key(archive->members[i].name)).second)
                live.emplace_back(archive.get(), i);
    for (auto [archive, index] : live) {
        const ZipMember& member = archive->members[index];
        bool skip = false;
        for (const BrmStringW& name : excluded)
            skip = skip || ZipMatch::Matches(member.name, name);
        if (skip)
            continue;
        BrmStringW name = member.name;
        if (!CopyMember(*this, *archive, member, *target))
            return false;
        if (copied)
            copied->push_back(name);
    }
    return true;
}

bool ZipFileSet::CopyLiveMembers(ZipArchive& source) {
    for (size_t i = 0; i < source.members.size(); ++i) {
        if (source.members[i].deleted)
            continue;
        if (!CopyMember(*this, source, source.members[i], *this))
            return false;
    }
    return true;
}

bool ZipFileSet::CommitSet() {
    if (refCount_.load() > 1)
        return false;
    for (const auto& archive : all_)
        if (archive->HasOpenMember())
            return false;
    if (!AnyModified()) {
        ReleaseStreams();
        return true;
    }
    if (!target_ || !target_->members.empty()) {
        if (!StartTarget())
            return false;
    }
    // A member copied here can start yet another target (when its name is
    // in the current one already); the old target then joins the sources
    // and is copied in its turn, so the loop reads the list as it grows.
    for (size_t i = 0; i < sources_.size(); ++i) {
        ZipArchive& source = *sources_[i];
        if (!CopyLiveMembers(source))
            return false;
        if (i > 0) {
            source.ReleaseStream();
            if (source.temporary && !source.Path().IsEmpty() && DeleteFileW(source.Path().GetString()))
                source.temporary = false;
        }
    }
    if (!target_->WriteCentralDirectory())
        return false;
    if (!sources_.empty() && !ReplaceSource(*sources_.front(), *target_))
        return false;
    for (auto& archive : all_)
        archive->modified = false;
    ReleaseStreams();
    return true;
}

bool ZipFileSet::ReplaceSource(ZipArchive& source, ZipArchive& target) {
    if (!source.Path().IsEmpty() && !target.Path().IsEmpty()) {
        source.ReleaseStream();
        target.ReleaseStream();
        // Another process may still hold the file; give it a moment, longer
        // each time.
        for (int attempt = 1; attempt <= kReplaceTries; ++attempt) {
            HANDLE h = CreateFileW(source.Path().GetString(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, 0);
            if (h != INVALID_HANDLE_VALUE) {
                CloseHandle(h);
                break;
            }
            if (GetLastError() != kErrorSharingViolation)
                break;
            std::this_thread::sleep_for(std::chrono::milliseconds(100 * attempt));
        }
        if (!ReplaceFileW(source.Path().GetString(), target.Path().GetString(), nullptr, 0, nullptr, nullptr)) {
            DeleteFileW(target.Path().GetString());
            target.temporary = false;
            return false;
        }
        target.temporary = false;
        return true;
    }
    // A source without a path (a stream the host gave) can only be
    // overwritten in place.
    IStream* from = target.Stream();
    IStream* to = source.Stream();
    uint64_t copied = 0;
    if (!from || !to || !ZipIo::SeekTo(from, 0) || !ZipIo::SeekTo(to, 0) || !CopyAll(from, to, copied))
        return false;
    return SUCCEEDED(to->SetSize(MakeULargeInteger(copied)));
}
