// `fileinfo props`: every property in the reader's order, as JSON or as a
// table by display group.
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <map>
#include <set>

#include "Commands.h"
#include "fileinfo/PropertyCatalogue.h"

namespace fitool {

void AddTypeOption(CLI::App* sub, TypeOption& type) {
    sub->add_option("--type", type.text, "Format of the file instead of detecting it")
        ->check(CLI::IsMember({"drawing", "paint", "metafile", "fill"}));
}

namespace {

void PrintTable(IFileInfo* info, const std::string& file, EFileFormat format) {
    std::vector<PROPERTYKEY> keys;
    for (uint32_t i = 0, n = info->GetCount(); i < n; ++i) {
        PROPERTYKEY key{};
        if (SUCCEEDED(info->GetAt(i, &key))) keys.push_back(key);
    }
    auto groups = PropertyGroups(info);

    std::map<std::string, std::string> shown;  // key text -> display text, for present keys
    size_t width = 0;
    for (const auto& key : keys) {
        Variant display;
        ReadDisplayValue(info, key, &display.pv);
        shown[KeyText(key)] = VariantToText(display.pv);
        width = std::max(width, KeyName(key).size());
    }

    std::string out = file + " (" + FormatName(format) + ", " + std::to_string(keys.size()) + " properties)\n";
    std::set<std::string> listed;
    auto line = [&](const PROPERTYKEY& key) {
        std::string name = KeyName(key);
        const std::string& text = shown[KeyText(key)];
        out += "  " + name + std::string(width - std::min(width, name.size()) + 2, ' ') + text + "\n";
        listed.insert(KeyText(key));
    };
    for (const auto& [groupKey, members] : groups) {
        std::vector<PROPERTYKEY> present;
        for (const auto& k : members) {
            if (shown.count(KeyText(k)) && !listed.count(KeyText(k))) present.push_back(k);
        }
        if (present.empty()) continue;
        out += "\n" + GroupName(groupKey) + "\n";
        for (const auto& k : present) line(k);
    }
    bool header = false;
    for (const auto& key : keys) {
        if (listed.count(KeyText(key))) continue;
        if (!header) out += "\nOther\n";
        header = true;
        line(key);
    }
    std::fwrite(out.data(), 1, out.size(), stdout);
}

}  // namespace

void AddProps(CLI::App& app, int* exitCode) {
    struct Options {
        std::string file;
        bool json = false;
        TypeOption type;
    };
    auto opts = std::make_shared<Options>();
    CLI::App* sub = app.add_subcommand("props", "Print every property of a document");
    sub->footer("Example:\n  fileinfo props drawing.kvd\n  fileinfo props drawing.kvd --json | jq '.properties[].name'");
    sub->add_option("FILE", opts->file, "The document")->required();
    sub->add_flag("--json", opts->json, "Print one JSON object");
    AddTypeOption(sub, opts->type);
    sub->callback([opts, exitCode] {
        EFileFormat format{};
        Document doc = OpenDocument(opts->file, opts->type.Get(), &format);
        if (!doc) {
            *exitCode = kExitFailed;
            return;
        }
        // A reader may open a file lazily and only find out while reading it:
        // a document where no property has a value gave nothing.
        nlohmann::ordered_json props = PropsJson(doc.get(), opts->file, format);
        bool anyValue = false;
        for (const auto& p : props["properties"]) anyValue = anyValue || !p["value"].is_null();
        if (!anyValue) {
            *exitCode = Fail(opts->file, props["properties"].empty() ? "no properties" : "no property has a value");
            return;
        }
        if (opts->json) {
            std::string text = DumpJson(props, 2) + "\n";
            std::fwrite(text.data(), 1, text.size(), stdout);
        } else {
            PrintTable(doc.get(), opts->file, format);
        }
        *exitCode = kExitOk;
    });
}

}  // namespace fitool
