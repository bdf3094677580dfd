// PartSet: look-ups, the part table document and its writing order.
#include "zipcontainer/PartSet.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <string>

#include "metadata/Utf8.h"

using BrmPlatform::BrmStringW;

namespace {

constexpr const char* kContainerUri = "urn:oasis:names:tc:opendocument:xmlns:container";
constexpr const char* kBrmUri = "urn:brimo:namespaces:zcf:xmlns:container";

std::string_view LocalName(const char* name) {
    const char* colon = std::strchr(name, ':');
    return colon ? std::string_view(colon + 1) : std::string_view(name);
}

// The URI the prefix of `qualified` stands for at `node`; "" when unbound.
std::string_view PrefixUri(pugi::xml_node node, std::string_view qualified) {
    size_t colon = qualified.find(':');
    std::string attribute = colon == std::string_view::npos
                                ? std::string("xmlns")
                                : "xmlns:" + std::string(qualified.substr(0, colon));
    for (; node; node = node.parent()) {
        pugi::xml_attribute a = node.attribute(attribute.c_str());
        if (a) return a.value();
    }
    return {};
}

// The attribute `local` in the container's own namespace.
const char* BrmAttribute(pugi::xml_node node, std::string_view local) {
    for (pugi::xml_attribute a : node.attributes()) {
        std::string_view name = a.name();
        if (name.find(':') != std::string_view::npos && LocalName(a.name()) == local &&
            PrefixUri(node, name) == kBrmUri)
            return a.value();
    }
    return nullptr;
}

pugi::xml_node FindRootfiles(pugi::xml_node node) {
    if (LocalName(node.name()) == "rootfiles") return node;
    for (pugi::xml_node child : node.children()) {
        if (child.type() != pugi::node_element) continue;
        pugi::xml_node found = FindRootfiles(child);
        if (found) return found;
    }
    return {};
}

int32_t NumberOr(const char* text, int32_t fallback) { return text ? int32_t(std::atoi(text)) : fallback; }

// Case-blind order of kinds, the shorter first where one begins the other.
int CompareKinds(const BrmStringW& a, const BrmStringW& b) {
    int n = std::min(a.GetLength(), b.GetLength());
    for (int i = 0; i < n; ++i) {
        wint_t x = std::towlower(wint_t(a[i])), y = std::towlower(wint_t(b[i]));
        if (x != y) return x < y ? -1 : 1;
    }
    return a.GetLength() - b.GetLength();
}

}  // namespace

const PartRecord* PartSet::Find(const BrmStringW& name) const {
    auto it = parts_.find(name);
    return it == parts_.end() ? nullptr : &it->second;
}

bool PartSet::Load(const Brm::XmlFile& document) {
    pugi::xml_node rootfiles = FindRootfiles(document.RootElement());
    for (pugi::xml_node file : rootfiles.children()) {
        if (file.type() != pugi::node_element || LocalName(file.name()) != "rootfile") continue;
        pugi::xml_attribute path = file.attribute("full-path");
        if (!path) continue;
        PartRecord record;
        record.mediaType = Metadata::Utf8ToWide(file.attribute("media-type").value());
        if (const char* kind = BrmAttribute(file, "file-kind")) record.fileKind = Metadata::Utf8ToWide(kind);
        if (const char* caption = BrmAttribute(file, "caption"))
            record.captions = CaptionsFromText(Metadata::Utf8ToWide(caption));
        record.index = NumberOr(BrmAttribute(file, "index"), -1);
        record.width = NumberOr(BrmAttribute(file, "image-width"), -1);
        record.height = NumberOr(BrmAttribute(file, "image-height"), -1);
        parts_.emplace(Metadata::Utf8ToWide(path.value()), std::move(record));
    }
    loaded_ = true;
    return true;
}

std::vector<NamedPartRecord> PartSet::SortedForWriting() const {
    std::vector<NamedPartRecord> out(parts_.begin(), parts_.end());
    auto key = [](const PartRecord& r) { return r.fileKind == L"main" ? BrmStringW() : r.fileKind; };
    std::stable_sort(out.begin(), out.end(), [&](const NamedPartRecord& a, const NamedPartRecord& b) {
        int c = CompareKinds(key(a.second), key(b.second));
        return c != 0 ? c < 0 : a.second.index < b.second.index;
    });
    return out;
}

std::unique_ptr<Brm::XmlFile> PartSet::ToDocument() const {
    auto document = Brm::XmlFile::FromTree(nullptr);
    pugi::xml_node root = document->Document().append_child("container");
    root.append_attribute("xmlns") = kContainerUri;
    root.append_attribute("xmlns:brm") = kBrmUri;
    root.append_attribute("version") = "1.0";
    pugi::xml_node rootfiles = root.append_child("rootfiles");
    for (const auto& [name, record] : SortedForWriting()) {
        pugi::xml_node file = rootfiles.append_child("rootfile");
        file.append_attribute("full-path") = Metadata::WideToUtf8(name).c_str();
        file.append_attribute("media-type") = Metadata::WideToUtf8(record.mediaType).c_str();
        file.append_attribute("brm:file-kind") = Metadata::WideToUtf8(record.fileKind).c_str();
        if (record.index >= 0) file.append_attribute("brm:index") = record.index;
        BrmStringW caption = CaptionsToText(record.captions);
        if (!caption.IsEmpty()) file.append_attribute("brm:caption") = Metadata::WideToUtf8(caption).c_str();
        if (record.width >= 1 && record.height >= 1) {
            file.append_attribute("brm:image-width") = record.width;
            file.append_attribute("brm:image-height") = record.height;
        }
    }
    return document;
}

BrmStringW PartSet::CaptionsToText(const Metadata::MultiLanguageString& captions) {
    const auto& entries = captions.Entries();
    if (entries.empty()) return {};
    if (entries.size() == 1 && entries.begin()->first.IsEmpty()) return entries.begin()->second;
    std::wstring out;
    for (const auto& [language, text] : entries) {
        if (!out.empty()) out += L';';
        out.append(language.StdView()).append(L":[");
        for (wchar_t c : text.StdView()) {
            if (c == L'\\' || c == L']') out += L'\\';
            out += c;
        }
        out += L']';
    }
    return BrmStringW(out);
}

Metadata::MultiLanguageString PartSet::CaptionsFromText(const BrmStringW& text) {
    Metadata::MultiLanguageString out;
    std::wstring_view s = text.StdView();
    size_t i = 0;
    bool ok = !s.empty();
    while (ok && i < s.size()) {
        size_t colon = s.find(L':', i);
        if (colon == std::wstring_view::npos || colon + 1 >= s.size() || s[colon + 1] != L'[') {
            ok = false;
            break;
        }
        std::wstring language(s.substr(i, colon - i)), value;
        size_t j = colon + 2;
        for (; j < s.size() && s[j] != L']'; ++j) {
            if (s[j] == L'\\' && j + 1 < s.size()) ++j;
            value += s[j];
        }
        if (j >= s.size() || language.find_first_of(L";[]") != std::wstring::npos) {
            ok = false;
            break;
        }
        out.Set(BrmStringW(language), BrmStringW(value));
        i = j + 1;
        if (i < s.size()) {
            if (s[i] != L';') ok = false;
            ++i;
        }
    }
    if (!ok) {
        out = {};
        out.Set(BrmStringW(), text);
    }
    return out;
}
