// `fileinfo parts` and `cat`: the members of a zip container. The readers
// do not expose container parts yet, so both answer that plainly.
#include <memory>

#include "Commands.h"

namespace fitool {

void AddParts(CLI::App& app, int* exitCode) {
    struct Options {
        std::string file, part;
        bool json = false;
    };
    auto o = std::make_shared<Options>();
    CLI::App* parts = app.add_subcommand("parts", "List the parts of a zip container document");
    parts->footer("Example:\n  fileinfo parts drawing.kvd --json");
    parts->add_option("FILE", o->file, "The document")->required();
    parts->add_flag("--json", o->json, "Print JSON");
    parts->callback([o, exitCode] { *exitCode = Fail(o->file, "no zip container support yet"); });

    CLI::App* cat = app.add_subcommand("cat", "Write one part of a zip container document to standard output");
    cat->footer("Example:\n  fileinfo cat drawing.kvd META-INF/metadata.xml");
    cat->add_option("FILE", o->file, "The document")->required();
    cat->add_option("PART", o->part, "The part's name")->required();
    cat->callback([o, exitCode] { *exitCode = Fail(o->file, "no zip container support yet"); });
}

}  // namespace fitool
