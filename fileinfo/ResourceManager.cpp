// Finding and reading the message catalogue of the user's language.
#include "fileinfo/ResourceManager.h"

#include <cwctype>

#include "platform/Files.h"
#include "platform/Locale.h"
#include "utils/Singleton.h"

namespace ShellExt {
namespace {

struct LangCode {
    LANGID id;
    const wchar_t* code;
};

// Full language ids whose code differs from their primary language's.
constexpr LangCode kFullIds[] = {{0x804, L"CS"}, {0x404, L"CT"}, {0x416, L"BR"}};

// By primary language, searched in this order.
constexpr LangCode kPrimaryIds[] = {
    {0x36, L"AF"}, {0x01, L"AR"}, {0x2D, L"EU"}, {0x23, L"BE"}, {0x02, L"BG"}, {0x03, L"CA"}, {0x1A, L"HR"},
    {0x05, L"CZ"}, {0x06, L"DA"}, {0x13, L"NL"}, {0x09, L"EN"}, {0x25, L"ET"}, {0x38, L"FO"}, {0x0B, L"SU"},
    {0x0C, L"FR"}, {0x07, L"DE"}, {0x08, L"EL"}, {0x0D, L"HE"}, {0x0E, L"MA"}, {0x0F, L"IS"}, {0x21, L"ID"},
    {0x10, L"IT"}, {0x11, L"JP"}, {0x12, L"KR"}, {0x26, L"LV"}, {0x27, L"LT"}, {0x14, L"NO"}, {0x15, L"PL"},
    {0x16, L"PT"}, {0x18, L"RO"}, {0x19, L"RU"}, {0x1A, L"SR"}, {0x1B, L"SK"}, {0x24, L"SL"}, {0x0A, L"ES"},
    {0x1D, L"SV"}, {0x1E, L"TH"}, {0x1F, L"TR"}, {0x22, L"UK"}, {0x2A, L"VI"},
};

std::wstring Lower(std::wstring text) {
    for (wchar_t& c : text) c = wchar_t(std::towlower(wint_t(c)));
    return text;
}

std::wstring FolderOf(const std::wstring& path) {
    size_t slash = path.find_last_of(L'/');
    return slash == std::wstring::npos ? std::wstring() : path.substr(0, slash + 1);
}

}  // namespace

ResourceManager::ResourceManager() { LoadFrom(FolderOf(GetModulePathOf(reinterpret_cast<const void*>(&FolderOf)))); }

ResourceManager::ResourceManager(const std::wstring& libraryFolder) { LoadFrom(libraryFolder); }

ResourceManager& ResourceManager::Instance() { return BrmUtils::Singleton<ResourceManager>::Instance(); }

std::wstring ResourceManager::GetUserLangCode() {
    LANGID id = GetUserDefaultLangID();
    for (const LangCode& row : kFullIds) {
        if (row.id == id) return row.code;
    }
    for (const LangCode& row : kPrimaryIds) {
        if (row.id == PRIMARYLANGID(id)) return row.code;
    }
    return {};
}

void ResourceManager::LoadFrom(const std::wstring& libraryFolder) {
    if (libraryFolder.empty()) return;
    std::wstring folder = libraryFolder;
    if (folder.back() != L'/') folder += L'/';
    // The installed layout first (lib/ and share/ side by side), then the
    // build tree, where the catalogues stand beside the library.
    const std::wstring candidates[] = {folder + L"../share/fileinfo/locale/", folder};
    std::wstring code = GetUserLangCode();
    for (int round = 0; round < 2; ++round) {
        if (!code.empty()) {
            for (const std::wstring& candidate : candidates) {
                std::wstring path = candidate + Lower(code) + L".mo";
                auto catalogue = std::make_unique<MessageCatalogue>();
                if (catalogue->Load(path)) {
                    module = std::move(catalogue);
                    modulePath = path;
                    return;
                }
            }
        }
        if (code == L"EN") return;
        code = L"EN";
    }
}

BrmPlatform::BrmStringW ResourceManager::LoadStringW(uint32_t id) const {
    if (!module) return {};
    const std::wstring* text = module->Find(id);
    return text ? BrmPlatform::BrmStringW(*text) : BrmPlatform::BrmStringW();
}

}  // namespace ShellExt
