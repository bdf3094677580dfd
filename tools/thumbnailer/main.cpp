// fileinfo-thumbnailer: the desktop's thumbnail hook. It writes a PNG of at
// most SIZE pixels on the longer side, never larger than the preview, with
// alpha where the document's picture has it. Exit 0 on success, 1 when the
// document gives no thumbnail, 2 on bad arguments.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "ImageOutput.h"
#include "Tool.h"

namespace {

// The desktop passes paths, or file URIs when the .thumbnailer asks for %u.
std::string PathOf(std::string input) {
    if (input.rfind("file://", 0) != 0) return input;
    std::string path;
    for (size_t i = 7; i < input.size(); ++i) {
        if (input[i] == '%' && i + 2 < input.size() && std::isxdigit(static_cast<unsigned char>(input[i + 1])) &&
            std::isxdigit(static_cast<unsigned char>(input[i + 2]))) {
            path.push_back(char(std::strtol(input.substr(i + 1, 2).c_str(), nullptr, 16)));
            i += 2;
        } else {
            path.push_back(input[i]);
        }
    }
    auto slash = path.find('/');  // "file://host/path": the host part goes
    return slash == std::string::npos ? path : path.substr(slash);
}

int Usage() {
    std::fputs("usage: fileinfo-thumbnailer -s SIZE INPUT OUTPUT\n"
               "Example:\n  fileinfo-thumbnailer -s 256 plan.kvd /tmp/plan.png\n",
               stderr);
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && (!std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h"))) {
        std::puts("usage: fileinfo-thumbnailer -s SIZE INPUT OUTPUT\nExample:\n  fileinfo-thumbnailer -s 256 plan.kvd /tmp/plan.png");
        return 0;
    }
    if (argc != 5 || std::strcmp(argv[1], "-s") != 0) return Usage();
    char* end = nullptr;
    long size = std::strtol(argv[2], &end, 10);
    if (*end || size < 1 || size > 4096) return Usage();
    std::string input = PathOf(argv[3]);
    std::string output = argv[4];

    EFileFormat format{};
    fitool::Document doc = fitool::OpenDocument(input, std::nullopt, &format);
    if (!doc) return 1;
    uint8_t alpha = 0;
    HBITMAP bitmap = doc->GetBitmap(SIZE{LONG(size), LONG(size)}, 0, false, &alpha);
    if (!bitmap) return fitool::Fail(input, "no thumbnail");
    std::string why;
    bool ok = fitool::WritePng(*bitmap, alpha != 0, output, &why);
    DeleteObject(bitmap);
    return ok ? 0 : fitool::Fail(output, why);
}
