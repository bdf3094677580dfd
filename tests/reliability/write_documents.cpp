// Writes the documents of Documents.h (all of them) into a folder, for the scripts that
// test the tool, the thumbnailer and the desktop files, and as fuzz seeds.
//   reliability_documents OUT_DIR
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "Documents.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: reliability_documents OUT_DIR\n", stderr);
        return 2;
    }
    std::filesystem::create_directories(argv[1]);
    auto docs = reliability::AllDocuments();
    for (auto& doc : reliability::OtherTypeDocuments()) docs.push_back(std::move(doc));
    for (const auto& doc : docs) {
        std::ofstream out(std::filesystem::path(argv[1]) / doc.name, std::ios::binary);
        out.write(reinterpret_cast<const char*>(doc.bytes.data()), std::streamsize(doc.bytes.size()));
        if (!out) return 1;
    }
    return 0;
}
