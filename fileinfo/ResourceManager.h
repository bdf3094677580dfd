// ShellExt::ResourceManager: the display texts of the readers (product
// names, kinds of objects, colour modes) by string number, in the user's
// language. The texts live in message catalogues beside the library: first
// <libdir>/../share/fileinfo/locale/<lang>.mo, then <libdir>/<lang>.mo;
// when the user's language has none, English is tried. No catalogue at all
// is no error: every text is then empty.
#pragma once
#include <memory>
#include <string>

#include "fileinfo/MessageCatalogue.h"
#include "utils/strings/BrmString.h"

namespace ShellExt {

class ResourceManager {
public:
    // Looks for the catalogues beside the library that holds this code.
    ResourceManager();
    // Looks in `libraryFolder` (with or without a trailing slash); an empty
    // folder gives a manager without texts. For tools and tests.
    explicit ResourceManager(const std::wstring& libraryFolder);

    // The process-wide manager, made on first use.
    static ResourceManager& Instance();

    // The loaded catalogue; null when none was found.
    const MessageCatalogue* GetResourceHandle() const { return module.get(); }
    // The text with this number, or an empty string.
    BrmPlatform::BrmStringW LoadStringW(uint32_t id) const;
    // The file the texts came from; empty when none.
    const std::wstring& ModulePath() const { return modulePath; }

private:
    // The user's language as two upper-case letters ("DE"); empty if unknown.
    static std::wstring GetUserLangCode();
    void LoadFrom(const std::wstring& libraryFolder);

    std::unique_ptr<MessageCatalogue> module;
    std::wstring modulePath;
};

}  // namespace ShellExt
