// ZipContainerImpl: parts by name. A name goes through the link table to a
// reference, a list of URIs tried in turn: a member of this zip ("self:"),
// a file beside the document or a part of another container ("file:").
// References come from documents, so a hostile one must not reach further
// than the caller allows: "file:" can be refused, only regular files open,
// and containers reached through containers nest to a fixed depth.
#include <cwctype>
#include <optional>
#include <regex>
#include <unordered_set>

#include "platform/Files.h"
#include "platform/Url.h"
#include "utils/FileUrl.h"
#include "utils/streams/FileStream.h"
#include "zipcontainer/ZipContainerImpl.h"
#include "zipcontainer/ZipMatch.h"

using BrmPlatform::BrmStringW;

namespace {

// Containers a single OpenPart may open through "file:" references, over all
// depths: a reference list of many URIs at each level would otherwise open
// an exponential number of them before the depth bound ends each chain.
constexpr int kMaxExternalOpens = 32;
thread_local int externalOpens = 0;

BrmStringW Lower(const std::wstring& text) {
    std::wstring out = text;
    for (wchar_t& c : out) c = wchar_t(std::towlower(wint_t(c)));
    return BrmStringW(out);
}

void Slashes(std::wstring& text) {
    for (wchar_t& c : text)
        if (c == L'\\') c = L'/';
}

bool IsRegularFile(const BrmStringW& path) {
    DWORD attributes = GetFileAttributesW(path.GetString());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Whole-name match with case ignored; an empty or null pattern takes all.
// A pattern that is no valid expression matches nothing.
class NameFilter {
public:
    explicit NameFilter(const wchar_t* pattern) {
        if (!pattern || !*pattern) return;
        active_ = true;
        try {
            regex_.emplace(pattern, std::regex_constants::icase);
        } catch (const std::regex_error&) {
        }
    }
    bool operator()(const BrmStringW& name) const {
        if (!active_) return true;
        if (!regex_) return false;
        try {
            return std::regex_match(name.StdString(), *regex_);
        } catch (const std::regex_error&) {
            return false;
        }
    }

private:
    bool active_ = false;
    std::optional<std::wregex> regex_;
};

}  // namespace

IStream* ZipContainerImpl::OpenPart(const BrmStringW& name, bool randomAccess) {
    if (!set_) return nullptr;
    // The links part is never looked up in the table it holds.
    if (name.Compare(LinksName()) == 0) return set_->OpenMember(name, false, randomAccess);
    if (options_.nesting == 0) externalOpens = 0;
    if (const BrmStringW* reference = links_.Find(name)) return OpenReference(*reference, randomAccess);
    // What "self:///" + name would reach, without a round through URL
    // parsing that would cut a name holding '?' or '#'.
    return name.IsEmpty() ? nullptr : set_->OpenMember(name, false, randomAccess);
}

IStream* ZipContainerImpl::OpenReference(const BrmStringW& reference, bool randomAccess) {
    std::wstring_view rest = reference.StdView();
    while (!rest.empty()) {
        size_t end = rest.find(L';');
        std::wstring_view uri = rest.substr(0, end);
        rest.remove_prefix(end == std::wstring_view::npos ? rest.size() : end + 1);
        if (uri.empty()) continue;
        bool final = false;
        IStream* stream = OpenUri(BrmStringW(uri), randomAccess, &final);
        if (stream || final) return stream;
    }
    return nullptr;
}

IStream* ZipContainerImpl::OpenUri(BrmStringW uri, bool randomAccess, bool* final) {
    BrmStringW scheme = Lower(UrlGetPartW(uri.StdView(), URL_PART_SCHEME));
    if (scheme.IsEmpty() && !sourcePath_.IsEmpty()) {
        std::wstring combined = UrlCombineW(sourcePath_.StdView(), uri.StdView());
        if (!combined.empty()) uri = BrmStringW(combined);
        scheme = Lower(UrlGetPartW(uri.StdView(), URL_PART_SCHEME));
    }
    if (scheme == L"self") {
        std::wstring name = UrlGetPartW(uri.StdView(), URL_PART_HOSTNAME) + UrlGetPartW(uri.StdView(), URL_PART_PATH);
        Slashes(name);
        if (!name.empty() && name[0] == L'/') name.erase(0, 1);
        if (name.empty()) return nullptr;
        *final = true;
        return set_->OpenMember(BrmStringW(name), false, randomAccess);
    }
    if (scheme == L"file") return OpenFileUri(uri, randomAccess, final);
    return nullptr;
}

IStream* ZipContainerImpl::OpenFileUri(const BrmStringW& uri, bool randomAccess, bool* final) {
    if (options_.refuseFileLinks) return nullptr;
    std::wstring inner = UrlGetPartW(uri.StdView(), URL_PART_EXTRA);
    Slashes(inner);
    if (!inner.empty() && (inner[0] == L'#' || inner[0] == L'?')) inner.erase(0, 1);
    if (!inner.empty() && inner[0] == L'/') inner.erase(0, 1);

    if (inner.empty()) {
        BrmStringW expanded = BrmUtils::ExpandEnvironmentStrings(uri);
        BrmStringW path = ApplySearchPaths(BrmStringW(PathCreateFromUrlW(expanded.StdView())));
        if (path.IsEmpty() || !IsRegularFile(path)) return nullptr;
        *final = true;
        return BrmUtils::FileStream::Open(path.GetString());
    }

    if (options_.nesting >= ContainerOptions::kMaxNesting || ++externalOpens > kMaxExternalOpens) return nullptr;
    std::wstring outer = uri.StdString();
    outer.erase(outer.find_first_of(L"?#"));
    std::wstring located = ApplySearchPaths(BrmUtils::ExpandEnvironmentStrings(BrmStringW(outer))).StdString();
    Slashes(located);
    BrmStringW path(PathCreateFromUrlW(located));
    if (path.IsEmpty() || !IsRegularFile(path)) return nullptr;
    ContainerOptions options = options_;
    ++options.nesting;
    ZipContainerRef other = OpenFromPath(path, true, options);
    if (!other) return nullptr;
    *final = true;
    return other->OpenPart(BrmStringW(inner), randomAccess);
}

BrmStringW ZipContainerImpl::ApplySearchPaths(BrmStringW path) const {
    std::wstring text = path.StdString();
    for (const auto& [from, to] : options_.searchPaths) {
        if (from.IsEmpty()) continue;
        std::wstring_view f = from.StdView(), t = to.StdView();
        for (size_t at = text.find(f); at != std::wstring::npos; at = text.find(f, at + t.size()))
            text.replace(at, f.size(), t);
    }
    return BrmStringW(text);
}

IStream* ZipContainerImpl::CreatePart(const BrmStringW& name, bool stored, bool randomAccess,
                                      const PartRecord* record) {
    if (!set_) return nullptr;
    IStream* stream = set_->CreateMember(name, stored ? 0 : 3, randomAccess);
    if (!stream) return nullptr;
    links_.Remove(name);
    if (record) {
        parts_.Set(name, *record);
        modified_ = true;
    }
    return stream;
}

std::vector<BrmStringW> ZipContainerImpl::ListPartNames(const wchar_t* pattern) const {
    std::vector<BrmStringW> out;
    for (const PartListing& part : ListParts(pattern)) out.push_back(part.name);
    return out;
}

std::vector<PartListing> ZipContainerImpl::ListParts(const wchar_t* pattern) const {
    NameFilter filter(pattern);
    std::vector<PartListing> out;
    std::unordered_set<std::wstring> seen;
    if (set_) {
        for (const ZipMember* member : set_->ListMembers()) {
            if (!seen.insert(ZipMatch::Key(member->name)).second || !filter(member->name)) continue;
            PartListing part;
            part.name = member->name;
            part.comment = member->comment;
            part.modified = member->modified;
            part.accessed = member->accessed;
            part.created = member->created;
            part.compressedSize = member->compressedSize;
            part.uncompressedSize = member->uncompressedSize;
            part.method = member->method;
            part.crc32 = member->crc32;
            out.push_back(std::move(part));
        }
    }
    for (const auto& [name, reference] : links_.Links()) {
        if (!seen.insert(ZipMatch::Key(name)).second || !filter(name)) continue;
        PartListing part;
        part.name = name;
        part.isLink = true;
        out.push_back(std::move(part));
    }
    return out;
}
