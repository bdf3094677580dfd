// The category translation tables and the lookup of a template's type word.
//
// Only English and German rows are held; every other language of the tables
// ("br", "cs", "ct", "cz", "es", "fr", "it", "jp", "nl", "pl", "ru", "tr")
// has no row yet and answers the type word unchanged.
//
// The rows keep non-ASCII letters the way the tables have always stored
// them: each UTF-8 byte widened to one wide character. Documents and hosts
// that compare against these names expect exactly those characters, so the
// German rows are written in UTF-8 here and widened byte by byte.
#include "fileinfo/CategoryTables.h"

#include <map>
#include <mutex>
#include <string_view>

namespace CategoryTables {
namespace {

std::wstring Widen(std::u8string_view utf8) {
    std::wstring wide;
    wide.reserve(utf8.size());
    for (char8_t byte : utf8) wide.push_back(wchar_t(static_cast<unsigned char>(byte)));
    return wide;
}

LanguageRow Row(const wchar_t* language, std::initializer_list<std::u8string_view> names) {
    LanguageRow row{language, {}};
    row.names.reserve(names.size());
    for (std::u8string_view name : names) row.names.push_back(Widen(name));
    return row;
}

Tables Build() {
    Tables tables;
    tables.fills = {
        Row(L"de", {u8"Abstrakt", u8"Tier", u8"Dekorativ", u8"Stoff", u8"Essen", u8"Geometrisch", u8"Metall",
                    u8"Natur", u8"Objekte", u8"Jahreszeiten", u8"Textur"}),
        Row(L"en", {u8"Abstract", u8"Animal", u8"Decorative", u8"Fabric", u8"Food", u8"Geometric", u8"Metal",
                    u8"Nature", u8"Objects", u8"Seasons", u8"Texture"}),
    };
    tables.symbols = {
        Row(L"de", {u8"Tiere", u8"Architektur", u8"Babys und Kinder", u8"Hintergründe und Texturen", u8"Vögel",
                    u8"Leere Objekte", u8"Rahmen und Umrandungen", u8"Gebäude", u8"Geschäft", u8"Kleidung",
                    u8"Kultur", u8"Gestaltungselemente", u8"Bildung", u8"Bauernhof", u8"Mode",
                    u8"Feuerwehr und Polizei", u8"Flammen", u8"Essen", u8"Insekten", u8"Landschaft und Natur",
                    u8"Medizin", u8"Militär", u8"Verschiedenes", u8"Musik", u8"Objekte", u8"Zierlinien",
                    u8"Ornamente", u8"Menschen", u8"Pflanzen", u8"Reptilien", u8"Meeresleben", u8"Weltraum",
                    u8"Besondere Anlässe", u8"Sport", u8"Technik", u8"Verkehr", u8"Reisen", u8"Wetter",
                    u8"Holzschnitt", u8"Schmiedeeisen", u8"Sonstiges"}),
        Row(L"en", {u8"Animals", u8"Architecture", u8"Baby and Kids", u8"Backgrounds and Textures", u8"Birds",
                    u8"Blank Objects", u8"Borders and Frames", u8"Buildings", u8"Business", u8"Clothing",
                    u8"Culture", u8"Design Elements", u8"Education", u8"Farm", u8"Fashion", u8"Fire and Police",
                    u8"Flames", u8"Food", u8"Insects", u8"Landscape and Nature", u8"Medical", u8"Military",
                    u8"Miscellaneous", u8"Music", u8"Objects", u8"Ornamental Lines", u8"Ornaments", u8"People",
                    u8"Plants", u8"Reptiles", u8"Sea Life", u8"Space", u8"Special Occasions", u8"Sports",
                    u8"Technology", u8"Transportation", u8"Travel", u8"Weather", u8"Woodcut", u8"Wrought Iron",
                    u8"Other"}),
    };
    tables.templates = {
        Row(L"de", {u8"Buchumschläge", u8"Broschüren", u8"Visitenkarten", u8"Kalender", u8"Karten & Einladungen",
                    u8"Kataloge & Infobroschüren", u8"Urkunden", u8"Collagen", u8"Flyer", u8"Infografiken",
                    u8"Briefköpfe & Briefe", u8"Sonstiges", u8"Poster", u8"Präsentationen", u8"Lebensläufe",
                    u8"Soziale Medien & Web"}),
        Row(L"en", {u8"Book Covers", u8"Brochures", u8"Business Cards", u8"Calendars", u8"Cards & Invitations",
                    u8"Catalogs & Information Booklets", u8"Certificates", u8"Collages", u8"Flyers",
                    u8"Infographics", u8"Letterheads & Letters", u8"Other", u8"Posters", u8"Presentations",
                    u8"Resumes", u8"Social Media & Web"}),
    };
    return tables;
}

const Tables kTables = Build();

// Type word to index (-1 for none), filled as words are asked for. Readers
// on different threads may translate at the same time, hence the lock.
std::mutex cacheLock;
std::map<std::wstring, int, std::less<>> typeIndexCache;

int TemplateIndex(std::wstring_view word) {
    std::lock_guard<std::mutex> guard(cacheLock);
    auto found = typeIndexCache.find(word);
    if (found != typeIndexCache.end()) return found->second;
    int index = -1;
    for (const TemplateType& row : kTemplateTypes) {
        if (word == row.word) {
            index = row.index;
            break;
        }
    }
    typeIndexCache.emplace(std::wstring(word), index);
    return index;
}

}  // namespace

const Tables& Get() { return kTables; }

BrmPlatform::BrmStringW TranslateCategory(const BrmPlatform::BrmStringW& text, const BrmPlatform::BrmStringW& typeWord,
                                          const BrmPlatform::BrmStringW& language) {
    if (!text.IsEmpty()) return text;
    if (typeWord.IsEmpty()) return typeWord;
    const int index = TemplateIndex(typeWord.StdView());
    if (index < 0) return typeWord;
    for (const LanguageRow& row : kTables.templates) {
        if (row.language == language.StdView()) {
            if (size_t(index) < row.names.size()) return BrmPlatform::BrmStringW(row.names[size_t(index)]);
            return typeWord;
        }
    }
    return typeWord;
}

}  // namespace CategoryTables
