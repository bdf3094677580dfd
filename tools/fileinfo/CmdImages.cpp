// `fileinfo thumbnail`, `icon` and `dib`: the reader's pictures as files.
#include <cstdlib>
#include <memory>

#include "Commands.h"
#include "ImageOutput.h"

namespace fitool {
namespace {

// "256" or "320x200"; each side 1..16384.
bool ParseSize(const std::string& text, SIZE* size) {
    auto side = [](const std::string& s, LONG* out) {
        if (s.empty() || s.size() > 5 || s.find_first_not_of("0123456789") != std::string::npos) return false;
        long v = std::strtol(s.c_str(), nullptr, 10);
        if (v < 1 || v > 16384) return false;
        *out = LONG(v);
        return true;
    };
    auto x = text.find_first_of("xX");
    if (x == std::string::npos) {
        if (!side(text, &size->cx)) return false;
        size->cy = size->cx;
        return true;
    }
    return side(text.substr(0, x), &size->cx) && side(text.substr(x + 1), &size->cy);
}

struct BitmapOwner {
    HBITMAP bitmap;
    ~BitmapOwner() { if (bitmap) DeleteObject(bitmap); }
};
struct IconOwner {
    HICON icon;
    ~IconOwner() { if (icon) DestroyIcon(icon); }
};

void AddThumbnail(CLI::App& app, int* exitCode) {
    struct Options {
        std::string file, out, size = "256";
        bool enlarge = false;
        uint32_t page = 0;
        TypeOption type;
    };
    auto o = std::make_shared<Options>();
    CLI::App* sub = app.add_subcommand("thumbnail", "Write the document's thumbnail as PNG");
    sub->footer("Example:\n  fileinfo thumbnail drawing.kvd -o drawing.png --size 320x200 --enlarge");
    sub->add_option("FILE", o->file, "The document")->required();
    sub->add_option("-o,--output", o->out, "The PNG file to write (- for standard output)")->required();
    sub->add_option("--size", o->size, "Box the thumbnail is fitted into: W or WxH (default 256)");
    sub->add_flag("--enlarge", o->enlarge, "Scale a small preview up to the box");
    sub->add_option("--page", o->page, "Page thumbnail (1 is the first page)")->check(CLI::PositiveNumber);
    AddTypeOption(sub, o->type);
    sub->callback([o, exitCode] {
        SIZE size{};
        if (!ParseSize(o->size, &size)) {
            std::fputs(("fileinfo: invalid --size '" + o->size + "' (W or WxH, 1 to 16384)\n").c_str(), stderr);
            *exitCode = kExitUsage;
            return;
        }
        EFileFormat format{};
        Document doc = OpenDocument(o->file, o->type.Get(), &format);
        if (!doc) {
            *exitCode = kExitFailed;
            return;
        }
        uint8_t alpha = 0;
        BitmapOwner bmp{o->page ? doc->GetPageBitmap(o->page, size, 0, o->enlarge, &alpha)
                                : doc->GetBitmap(size, 0, o->enlarge, &alpha)};
        if (!bmp.bitmap) {
            *exitCode = Fail(o->file, o->page ? "no thumbnail of page " + std::to_string(o->page) : "no thumbnail");
            return;
        }
        std::string why;
        *exitCode = WritePng(*bmp.bitmap, alpha != 0, o->out, &why) ? kExitOk : Fail(o->out, why);
    });
}

void AddIcon(CLI::App& app, int* exitCode) {
    struct Options {
        std::string file, out;
        uint32_t size = 0;
        TypeOption type;
    };
    auto o = std::make_shared<Options>();
    CLI::App* sub = app.add_subcommand("icon", "Write the document's icon (thumbnail on a transparent square) as PNG");
    sub->footer("Example:\n  fileinfo icon drawing.kvd -o drawing-48.png --size 48");
    sub->add_option("FILE", o->file, "The document")->required();
    sub->add_option("-o,--output", o->out, "The PNG file to write (- for standard output)")->required();
    sub->add_option("--size", o->size, "Edge of the square in pixels")->required()->check(CLI::Range(1, 16384));
    AddTypeOption(sub, o->type);
    sub->callback([o, exitCode] {
        EFileFormat format{};
        Document doc = OpenDocument(o->file, o->type.Get(), &format);
        if (!doc) {
            *exitCode = kExitFailed;
            return;
        }
        IconOwner icon{doc->GetIcon(nullptr, o->size)};
        if (!icon.icon || !icon.icon->color) {
            *exitCode = Fail(o->file, "no icon");
            return;
        }
        std::string why;
        *exitCode = WritePng(*icon.icon->color, true, o->out, &why) ? kExitOk : Fail(o->out, why);
    });
}

void AddDib(CLI::App& app, int* exitCode) {
    struct Options {
        std::string file, out;
        TypeOption type;
    };
    auto o = std::make_shared<Options>();
    CLI::App* sub = app.add_subcommand("dib", "Write the preview the document holds, unscaled, as a BMP file");
    sub->footer("Example:\n  fileinfo dib drawing.kvd -o preview.bmp");
    sub->add_option("FILE", o->file, "The document")->required();
    sub->add_option("-o,--output", o->out, "The BMP file to write (- for standard output)")->required();
    AddTypeOption(sub, o->type);
    sub->callback([o, exitCode] {
        EFileFormat format{};
        Document doc = OpenDocument(o->file, o->type.Get(), &format);
        if (!doc) {
            *exitCode = kExitFailed;
            return;
        }
        DibBlock block = doc->ReadPreviewDib();
        std::unique_ptr<void, decltype(&std::free)> owner(block.data, &std::free);
        std::vector<uint8_t> bmp;
        if (!block.data || block.size == 0) {
            *exitCode = Fail(o->file, "no preview");
            return;
        }
        if (!DibToBmpBytes(block.data, block.size, &bmp)) {
            *exitCode = Fail(o->file, "the preview is damaged");
            return;
        }
        std::string why;
        *exitCode = WriteFileAtomic(o->out, bmp.data(), bmp.size(), &why) ? kExitOk : Fail(o->out, why);
    });
}

}  // namespace

void AddImages(CLI::App& app, int* exitCode) {
    AddThumbnail(app, exitCode);
    AddIcon(app, exitCode);
    AddDib(app, exitCode);
}

}  // namespace fitool
