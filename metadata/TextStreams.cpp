// Reading the text flows of a text summary document.
#include "metadata/TextStreams.h"

#include <strings.h>

#include "metadata/Schema.h"
#include "metadata/Utf8.h"

namespace Metadata {

namespace {

constexpr QualifiedName kLang{&Namespaces::legacykvd, "lang"};
constexpr QualifiedName kBreak{&Namespaces::legacykvd, "break"};

TextRunBreak BreakFromText(const std::string* text) {
    if (!text) return BreakNone;
    static constexpr struct {
        const char* word;
        TextRunBreak kind;
    } kWords[] = {{"line", BreakLine}, {"para", BreakParagraph}, {"column", BreakColumn}, {"frame", BreakFrame}};
    for (const auto& w : kWords) {
        if (strcasecmp(text->c_str(), w.word) == 0) return w.kind;
    }
    return BreakNone;
}

int32_t LanguageFromText(const std::string* text) {
    if (!text) return 0;
    Any value;
    DataType::Int().FromText(value, *text);
    return value.GetValue<int>(0);
}

}  // namespace

std::vector<TextRunEntry> ReadTextStreams(const Container& container) {
    std::vector<TextRunEntry> runs;
    const XmlNS::Node* description = container.FindDescription();
    if (!description) return runs;
    for (const auto& stream : description->Children()) {
        if (!stream->HasName(ZipContainerSchema::names::TextStream)) continue;
        bool first = true;
        for (const auto& child : stream->Children()) {
            // Whatever element comes first in a stream takes the stream
            // break, even a run without text that is skipped.
            const bool wasFirst = first;
            first = false;
            if (!child->HasName(ZipContainerSchema::names::TextRun) || child->Text().empty()) continue;
            TextRunEntry entry;
            entry.text = Utf8ToWide(child->Text());
            entry.language = LanguageFromText(child->GetAttribute(kLang));
            entry.breakKind = wasFirst ? BreakStream : BreakFromText(child->GetAttribute(kBreak));
            runs.push_back(std::move(entry));
        }
    }
    return runs;
}

}  // namespace Metadata
