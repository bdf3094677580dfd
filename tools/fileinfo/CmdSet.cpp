// `fileinfo set`: writes property values and commits them in one go.
#include <cstdio>
#include <memory>

#include "Commands.h"

namespace fitool {

void AddSet(CLI::App& app, int* exitCode) {
    struct Options {
        std::string file;
        std::vector<std::string> pairs;
        TypeOption type;
    };
    auto o = std::make_shared<Options>();
    CLI::App* sub = app.add_subcommand("set", "Set property values and write them into the file");
    sub->footer("KEY is a name such as System.Title or a key {FMTID}/PID. A list property splits VALUE on ';' and ','.\n"
                "Nothing is written unless every value is accepted.\n\n"
                "Example:\n  fileinfo set drawing.kvd System.Title=Plan \"System.Keywords=site; roof\"");
    sub->add_option("FILE", o->file, "The document")->required();
    sub->add_option("KEY=VALUE", o->pairs, "Properties to set")->required();
    AddTypeOption(sub, o->type);
    sub->callback([o, exitCode] {
        // Every pair is checked before the file is touched.
        std::vector<std::pair<PROPERTYKEY, std::string>> parsed;
        for (const auto& pair : o->pairs) {
            auto eq = pair.find('=');
            std::optional<PROPERTYKEY> key = eq == std::string::npos ? std::nullopt : ResolveKey(pair.substr(0, eq));
            if (!key) {
                std::fputs(("fileinfo: not KEY=VALUE with a known name or {FMTID}/PID: '" + pair + "'\n").c_str(), stderr);
                *exitCode = kExitUsage;
                return;
            }
            parsed.emplace_back(*key, pair.substr(eq + 1));
        }
        EFileFormat format{};
        Document doc = OpenDocumentForWriting(o->file, o->type.Get(), &format);
        if (!doc) {
            *exitCode = kExitFailed;
            return;
        }
        bool failed = false;
        std::string out;
        for (size_t i = 0; i < parsed.size(); ++i) {
            const auto& [key, text] = parsed[i];
            // The primary type: what the reader answers now, else what the key is known to hold.
            Variant current;
            doc->GetValue(&key, &current.pv);
            VARTYPE type = current.pv.vt != VT_EMPTY ? current.pv.vt : KnownPrimaryType(key);
            Variant value;
            HRESULT hr = TextToVariant(text, type, &value.pv) ? doc->SetValue(&key, &value.pv) : E_INVALIDARG;
            failed = failed || FAILED(hr);
            out += o->pairs[i].substr(0, o->pairs[i].find('=')) + " " + HexHresult(hr) + "\n";
        }
        if (failed) {
            out += "commit skipped\n";
        } else {
            HRESULT hr = doc->Commit();
            failed = FAILED(hr);
            out += "commit " + HexHresult(hr) + "\n";
        }
        std::fwrite(out.data(), 1, out.size(), stdout);
        *exitCode = failed ? Fail(o->file, "properties not written") : kExitOk;
    });
}

}  // namespace fitool
