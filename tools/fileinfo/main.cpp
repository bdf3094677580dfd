// fileinfo: thumbnails, properties and text of documents from the shell.
// Exit codes: 0 success, 1 the file gave nothing, 2 a usage error.
#include <cstdio>
#include <iostream>

#include "Commands.h"

int main(int argc, char** argv) {
    CLI::App app{"Reads thumbnails, properties and text of drawing documents, paint images, exchange metafiles and "
                 "fill files.\n\nExample:\n  fileinfo props drawing.kvd --json",
                 "fileinfo"};
    app.require_subcommand(1);
    app.set_version_flag("--version", "fileinfo 0.1.0");
    int exitCode = fitool::kExitOk;
    fitool::AddProps(app, &exitCode);
    fitool::AddImages(app, &exitCode);
    fitool::AddText(app, &exitCode);
    fitool::AddSet(app, &exitCode);
    fitool::AddParts(app, &exitCode);
    fitool::AddScan(app, &exitCode);
    fitool::AddExternalLinksFlag(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForVersion& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        std::string line = std::string("fileinfo: ") + e.what() + "\n";
        for (auto& c : line) {
            if (c == '\n' && &c != &line.back()) c = ' ';
        }
        std::fputs(line.c_str(), stderr);
        return fitool::kExitUsage;
    }
    return exitCode;
}
