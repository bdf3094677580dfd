// The logical zip file the container sees: the archive that was opened or
// created, plus the temporary target archives that writing adds. An opened
// archive is never changed in place; new members go to a target, and the
// commit merges everything into one new file that replaces the first source.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ObjIdl.h"
#include "utils/RefCounted.h"
#include "utils/strings/BrmString.h"
#include "zipcontainer/ZipArchive.h"

class ZipFileSet;
using ZipFileSetRef = BrmUtils::RefPtr<ZipFileSet>;

class ZipFileSet {
public:
    // Runs when a new target archive has been started, so that the owner can
    // put its first members in (the container writes "mimetype"). Its
    // result is that of starting the target.
    using NewTargetCallback = bool (*)(void* context, ZipFileSet& set);

    enum Mode : int32_t { kOpened = 0, kCreated = 2 };

    // An existing archive, read-only. Empty if it isn't a zip this layer can
    // read. `path` names the file behind the stream; if empty, a file stream tells it.
    static ZipFileSetRef OpenFromStream(IStream* stream, const BrmPlatform::BrmStringW& path = {});
    static ZipFileSetRef OpenFromPath(const BrmPlatform::BrmStringW& path);
    // A new, empty archive written to `stream` (its old content is lost when
    // the set is committed). With a path, the commit renames the finished
    // file over it; without one it copies the bytes.
    static ZipFileSetRef CreateOnStream(IStream* stream, const BrmPlatform::BrmStringW& path = {});
    // Creates (or truncates) the file and the set on it; the file is removed
    // again if the set can't be made.
    static ZipFileSetRef CreateOnPath(const BrmPlatform::BrmStringW& path);

    // Reference counting. The last Release commits (see CommitSet) and frees.
    void AddRef();
    void Release();

    Mode GetMode() const { return mode_; }
    bool IsCreatedNew() const { return createdNew_; }
    void SetNewTargetCallback(NewTargetCallback callback, void* context);

    // --- Reading -----------------------------------------------------------

    // The first live member of that name, compared without regard to case,
    // over all archives in the order they were added; null if none.
    const ZipMember* FindMember(const BrmPlatform::BrmStringW& name) const;
    bool Exists(const BrmPlatform::BrmStringW& name) const { return FindMember(name) != nullptr; }
    // All live members of all archives, in order (a name may repeat).
    std::vector<const ZipMember*> ListMembers() const;
    // A stream on the member (one reference, for the caller to release), or
    // null. `raw` serves the stored bytes without inflating; `randomAccess`
    // makes backward seeks on a deflated member cheap.
    IStream* OpenMember(const BrmPlatform::BrmStringW& name, bool raw = false, bool randomAccess = false);
    IStream* OpenMember(const ZipMember* member, bool raw = false, bool randomAccess = false);

    // The comment of the last archive (what a commit writes).
    BrmPlatform::BrmStringW GetComment() const;
    // Sets the comment of the last archive and marks it modified; nothing on
    // an opened set.
    void SetComment(const BrmPlatform::BrmStringW& comment);

    // --- Writing (nothing of this works on an opened set) -------------------

    // A new member, replacing any of that name. Level 0 stores; any other
    // level deflates (1 fastest ... 4 best). `randomAccess` lets a stored
    // member be written out of order. Null if the set is opened, the name is
    // being written already, or no target can be started.
    IStream* CreateMember(const BrmPlatform::BrmStringW& name, int level, bool randomAccess = false);
    // A member whose stored bytes are copied as they are: method, sizes and
    // CRC are those of `model`, which the caller feeds from a raw read.
    IStream* CreateRawMember(const ZipMember& model);

    // Marks the member of that name removed; a name ending in '/' removes all
    // members under it. Whether any was marked.
    bool RemoveMembers(const BrmPlatform::BrmStringW& name);
    // Removes the members whose whole name matches the regular expression
    // (case ignored). The count removed.
    int RemoveMatching(const BrmPlatform::BrmStringW& expression);
    // Copies every live member (each name once) to `target` raw, except the
    // excluded names (rule of RemoveMembers). The names copied go to
    // `copied`. False at the first failure.
    bool MergeMembersTo(ZipFileSet* target, const std::vector<BrmPlatform::BrmStringW>& excluded,
                        std::vector<BrmPlatform::BrmStringW>* copied);

    // Writes the set's result: all live members into one new archive, which
    // replaces the first source (a rename when both have paths). False while
    // streams are open (try again after closing them) or on failure.
    bool CommitSet();

    // --- For the member streams ----------------------------------------------

    // All archives, in the order they were added.
    const std::vector<std::unique_ptr<ZipArchive>>& Archives() const { return all_; }

private:
    friend class ZipWriteStream;

    ZipFileSet() = default;
    ~ZipFileSet();
    ZipFileSet(const ZipFileSet&) = delete;
    ZipFileSet& operator=(const ZipFileSet&) = delete;

    static ZipFileSetRef Open(IStream* stream, const BrmPlatform::BrmStringW& path);
    IStream* OpenMemberIn(ZipArchive& archive, const ZipMember& member, bool raw, bool randomAccess);
    IStream* NewMember(const BrmPlatform::BrmStringW& name, int level, bool randomAccess, const ZipMember* model);
    bool NameOpenForWrite(const BrmPlatform::BrmStringW& name) const;
    // Marks the members matching `name` (rule of RemoveMembers) deleted.
    static int MarkDeleted(ZipArchive& archive, const BrmPlatform::BrmStringW& name);
    bool StartTarget();
    bool CopyLiveMembers(ZipArchive& source);
    static bool CopyMember(ZipFileSet& from, ZipArchive& archive, const ZipMember& member, ZipFileSet& to);
    bool ReplaceSource(ZipArchive& source, ZipArchive& target);
    bool AnyModified() const;
    void ReleaseStreams();

    std::atomic<int32_t> refCount_{0};
    bool closing_ = false;
    std::vector<ZipArchive*> sources_;
    ZipArchive* target_ = nullptr;
    std::vector<std::unique_ptr<ZipArchive>> all_;
    NewTargetCallback newTarget_ = nullptr;
    void* newTargetContext_ = nullptr;
    Mode mode_ = kOpened;
    bool createdNew_ = false;
};
