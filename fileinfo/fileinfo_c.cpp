// The C interface (fileinfo_c.h) over IFileInfo. Every entry point catches
// whatever the C++ below may throw (allocation failures mostly) and answers
// a status, so that no exception ever crosses into C or a binding.
#include "fileinfo/fileinfo_c.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "fileinfo/BitmapPng.h"
#include "fileinfo/FormatDetection.h"
#include "fileinfo/IFileInfo.h"
#include "fileinfo/PropertyNames.h"
#include "fileinfo/PropsJson.h"
#include "fileinfo/Utf8Text.h"
#include "fileinfo/Variants.h"
#include "platform/PropIdl.h"
#include "utils/streams/MemStream.h"
#include "zipcontainer/ZipContainerImpl.h"

struct fi_document {
    IFileInfo* info = nullptr;
    EFileFormat format = FileFormatDrawing;
    std::string error;
    ~fi_document() {
        if (info) info->Release();
    }
};

namespace {

using fi::Narrow;
using fi::Variant;

// Runs `body`, turning any exception into a status.
template <class F>
fi_status Guard(F&& body) {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return FI_ERR_MEMORY;
    } catch (...) {
        return FI_ERR_INTERNAL;
    }
}

char* CopyString(const std::string& s) {
    char* out = static_cast<char*>(std::malloc(s.size() + 1));
    if (!out) throw std::bad_alloc();
    std::memcpy(out, s.c_str(), s.size() + 1);
    return out;
}

bool ValidFormat(int format) { return format >= FI_FORMAT_DETECT && format <= FI_FORMAT_FILL; }

// The format a caller asked for; none for FI_FORMAT_DETECT.
std::optional<EFileFormat> Forced(int format) {
    return format == FI_FORMAT_DETECT ? std::nullopt : std::optional<EFileFormat>(EFileFormat(format));
}

// A property handed out, with the storage its pointers refer to. The public
// structure comes first so that the caller's pointer converts back.
struct PropertyBox {
    fi_property property{};
    struct Storage {
        std::string key, name, display;
        std::vector<std::string> strings;
        std::vector<fi_value> items;
    }* storage = nullptr;
};

constexpr int64_t kUnixEpochAsFileTime = 116444736000000000LL;  // 100-ns ticks from 1601 to 1970

int64_t FileTimeToMicros(const FILETIME& ft) {
    int64_t ticks = int64_t((uint64_t(ft.dwHighDateTime) << 32) | ft.dwLowDateTime);
    return (ticks - kUnixEpochAsFileTime) / 10;
}

FILETIME MicrosToFileTime(int64_t micros) {
    uint64_t ticks = uint64_t(micros * 10 + kUnixEpochAsFileTime);
    return FILETIME{DWORD(ticks & 0xFFFFFFFFu), DWORD(ticks >> 32)};
}

// The typed value of a PROPVARIANT. Strings land in `storage.strings`, whose
// elements must not move afterwards: the caller reserves room first.
fi_value MakeValue(const PROPVARIANT& v, PropertyBox::Storage& storage) {
    fi_value out{};
    auto text = [&](std::string s) {
        storage.strings.push_back(std::move(s));
        out.type = FI_VALUE_STRING;
        out.s = storage.strings.back().c_str();
    };
    switch (v.vt) {
        case VT_EMPTY:
        case VT_NULL: break;
        case VT_BOOL: out.type = FI_VALUE_BOOL; out.i = v.boolVal != VARIANT_FALSE; break;
        case VT_I1: out.type = FI_VALUE_INT; out.i = v.cVal; break;
        case VT_UI1: out.type = FI_VALUE_INT; out.i = v.bVal; break;
        case VT_I2: out.type = FI_VALUE_INT; out.i = v.iVal; break;
        case VT_UI2: out.type = FI_VALUE_INT; out.i = v.uiVal; break;
        case VT_I4: out.type = FI_VALUE_INT; out.i = v.lVal; break;
        case VT_UI4: out.type = FI_VALUE_INT; out.i = v.ulVal; break;
        case VT_INT: out.type = FI_VALUE_INT; out.i = v.intVal; break;
        case VT_UINT: out.type = FI_VALUE_INT; out.i = v.uintVal; break;
        case VT_ERROR: out.type = FI_VALUE_INT; out.i = v.scode; break;
        case VT_I8: out.type = FI_VALUE_INT; out.i = v.hVal.QuadPart; break;
        case VT_UI8: out.type = FI_VALUE_INT; out.i = int64_t(v.uhVal.QuadPart); break;
        case VT_R4: out.type = FI_VALUE_FLOAT; out.f = v.fltVal; break;
        case VT_R8: out.type = FI_VALUE_FLOAT; out.f = v.dblVal; break;
        case VT_FILETIME: out.type = FI_VALUE_DATETIME; out.i = FileTimeToMicros(v.filetime); break;
        case VT_BLOB:
            storage.strings.emplace_back(reinterpret_cast<const char*>(v.blob.pBlobData), v.blob.cbSize);
            out.type = FI_VALUE_BYTES;
            out.s = storage.strings.back().data();
            out.count = v.blob.cbSize;
            break;
        case VT_VECTOR | VT_FILETIME: {
            size_t first = storage.items.size();
            for (ULONG k = 0; k < v.cafiletime.cElems; ++k) {
                fi_value item{};
                item.type = FI_VALUE_DATETIME;
                item.i = FileTimeToMicros(v.cafiletime.pElems[k]);
                storage.items.push_back(item);
            }
            out.type = FI_VALUE_LIST;
            out.items = storage.items.data() + first;
            out.count = v.cafiletime.cElems;
            break;
        }
        default:
            if (v.vt & VT_VECTOR) {
                // Lists of strings, numbers and booleans, in the JSON form's terms.
                nlohmann::ordered_json list = fi::VariantToJson(v);
                size_t first = storage.items.size();
                for (const auto& e : list) {
                    fi_value item{};
                    if (e.is_boolean()) {
                        item.type = FI_VALUE_BOOL;
                        item.i = e.get<bool>();
                    } else if (e.is_number_integer()) {
                        item.type = FI_VALUE_INT;
                        item.i = e.get<int64_t>();
                    } else if (e.is_number()) {
                        item.type = FI_VALUE_FLOAT;
                        item.f = e.get<double>();
                    } else if (e.is_string()) {
                        storage.strings.push_back(e.get<std::string>());
                        item.type = FI_VALUE_STRING;
                        item.s = storage.strings.back().c_str();
                    }
                    storage.items.push_back(item);
                }
                out.type = FI_VALUE_LIST;
                out.items = storage.items.data() + first;
                out.count = storage.items.size() - first;
            } else {
                text(fi::VariantToText(v));  // strings in any encoding, GUIDs, dates as text
            }
    }
    return out;
}

// An upper bound of the strings and items a value needs, so that the
// vectors never reallocate under the pointers handed out.
size_t ElementBound(const PROPVARIANT& v) { return (v.vt & VT_VECTOR) ? size_t(v.cal.cElems) + 1 : 1; }

fi_status StatusOf(HRESULT hr) {
    if (SUCCEEDED(hr)) return FI_OK;
    if (hr == E_OUTOFMEMORY) return FI_ERR_MEMORY;
    if (hr == E_INVALIDARG) return FI_ERR_VALUE;
    if (hr == STG_E_ACCESSDENIED) return FI_ERR_READ_ONLY;
    return FI_ERR_INTERNAL;
}

fi_status MakeProperty(fi_document* d, const PROPERTYKEY& key, fi_property** property) {
    auto box = std::make_unique<PropertyBox>();
    auto storage = std::make_unique<PropertyBox::Storage>();
    Variant value;
    d->info->GetValue(&key, &value.pv);
    Variant display;
    fi::ReadDisplayValue(d->info, key, &display.pv);
    storage->key = fi::KeyText(key);
    storage->name = fi::KeyName(key);
    storage->display = fi::VariantToText(display.pv);
    storage->strings.reserve(ElementBound(value.pv));
    storage->items.reserve(ElementBound(value.pv));
    box->property.value = MakeValue(value.pv, *storage);
    box->property.key = storage->key.c_str();
    box->property.name = storage->name.c_str();
    box->property.display = storage->display.c_str();
    box->property.read_only = d->info->IsReadOnly(&key) ? 1 : 0;
    box->storage = storage.release();
    *property = &box.release()->property;
    return FI_OK;
}

IFileInfo* OpenStreamCopy(const void* data, size_t size, EFileFormat format) {
    std::vector<uint8_t> bytes(static_cast<const uint8_t*>(data), static_cast<const uint8_t*>(data) + size);
    BrmUtils::MemStream* stream = BrmUtils::CreateMemStreamOwning(std::move(bytes), true);
    if (!stream) return nullptr;
    IFileInfo* info = IFileInfo::GetInst(stream, format);
    stream->Release();  // the reader holds its own reference
    return info;
}

// Builds the PROPVARIANT for `value` in the type the property is known to
// take; strings go through the text form that `fileinfo set` accepts.
bool ToVariant(const fi_value& value, VARTYPE type, PROPVARIANT* out) {
    switch (value.type) {
        case FI_VALUE_STRING:
            return value.s && fi::TextToVariant(value.s, type, out);
        case FI_VALUE_BOOL:
            return fi::TextToVariant(value.i ? "true" : "false", type == VT_EMPTY ? VARTYPE(VT_BOOL) : type, out);
        case FI_VALUE_INT:
            return fi::TextToVariant(std::to_string(value.i), type == VT_EMPTY ? VARTYPE(VT_I4) : type, out);
        case FI_VALUE_FLOAT: {
            char buf[64];
            std::snprintf(buf, sizeof buf, "%.17g", value.f);
            return fi::TextToVariant(buf, type == VT_EMPTY ? VARTYPE(VT_R8) : type, out);
        }
        case FI_VALUE_DATETIME:
            if (type != VT_EMPTY && type != VT_FILETIME) return false;
            out->vt = VT_FILETIME;
            out->filetime = MicrosToFileTime(value.i);
            return true;
        case FI_VALUE_LIST: {
            if (type != VT_EMPTY && type != (VT_VECTOR | VT_LPWSTR)) return false;
            auto** elems = static_cast<LPWSTR*>(CoTaskMemAlloc(sizeof(LPWSTR) * (value.count ? value.count : 1)));
            if (!elems) return false;
            out->vt = VT_VECTOR | VT_LPWSTR;
            out->calpwstr.pElems = elems;
            out->calpwstr.cElems = 0;
            for (size_t k = 0; k < value.count; ++k) {
                if (value.items[k].type != FI_VALUE_STRING || !value.items[k].s) return false;
                std::wstring w = fi::Widen(value.items[k].s);
                auto* copy = static_cast<LPWSTR>(CoTaskMemAlloc((w.size() + 1) * sizeof(wchar_t)));
                if (!copy) return false;
                std::memcpy(copy, w.c_str(), (w.size() + 1) * sizeof(wchar_t));
                elems[out->calpwstr.cElems++] = copy;
            }
            return true;
        }
        default:
            return false;
    }
}

struct TextCollector : PropertyVisitor {
    std::vector<fi_text_chunk> chunks;
    void Visit(const void* record) override {
        const auto* c = static_cast<const TextChunk*>(record);
        fi_text_chunk out{};
        out.text = CopyString(Narrow(c->text, size_t(c->length > 0 ? c->length : 0)));
        out.language = c->language;
        out.chunk_break = c->chunkBreak;
        chunks.push_back(out);
    }
    ~TextCollector() {
        for (auto& c : chunks) std::free(const_cast<char*>(c.text));
    }
};

}  // namespace

extern "C" {

const char* fi_version(void) { return "0.1.0"; }

const char* fi_status_text(fi_status status) {
    switch (status) {
        case FI_OK: return "ok";
        case FI_ERR_ARGUMENT: return "invalid argument";
        case FI_ERR_UNREADABLE: return "the file cannot be read";
        case FI_ERR_UNSUPPORTED: return "not a document of a supported type";
        case FI_ERR_NOT_FOUND: return "not found";
        case FI_ERR_READ_ONLY: return "the property is read-only";
        case FI_ERR_VALUE: return "the value does not fit the property";
        case FI_ERR_WRITE: return "the document could not be written";
        case FI_ERR_MEMORY: return "out of memory";
        case FI_ERR_INTERNAL: return "internal error";
    }
    return "unknown status";
}

const char* fi_format_name(int format) {
    return format >= FI_FORMAT_DRAWING && format <= FI_FORMAT_FILL ? fi::FormatName(EFileFormat(format)) : nullptr;
}

fi_status fi_open_path(const char* path, int format, fi_document** document) {
    if (!path || !document || !ValidFormat(format)) return FI_ERR_ARGUMENT;
    *document = nullptr;
    return Guard([&] {
        // Opened by path: a document of this handle may be committed.
        auto d = std::make_unique<fi_document>();
        bool readable = false;
        d->info = fi::OpenDocumentPath(path, Forced(format), &d->format, &readable, nullptr);
        if (!readable) return FI_ERR_UNREADABLE;
        if (!d->info) return FI_ERR_UNSUPPORTED;
        *document = d.release();
        return FI_OK;
    });
}

fi_status fi_open_memory(const void* data, size_t size, int format, fi_document** document) {
    if ((!data && size) || !document || !ValidFormat(format)) return FI_ERR_ARGUMENT;
    *document = nullptr;
    return Guard([&] {
        std::optional<EFileFormat> chosen = Forced(format);
        if (!chosen) chosen = fi::DetectFormatOfBytes(static_cast<const uint8_t*>(data), size);
        if (!chosen) return FI_ERR_UNSUPPORTED;
        auto d = std::make_unique<fi_document>();
        d->format = *chosen;
        d->info = OpenStreamCopy(data, size, *chosen);
        if (!d->info) return FI_ERR_UNSUPPORTED;
        *document = d.release();
        return FI_OK;
    });
}

void fi_close(fi_document* document) { delete document; }

void fi_set_external_links(int allowed) { ContainerOptions::SetRefuseFileLinksDefault(allowed == 0); }

int fi_document_format(const fi_document* document) { return document ? int(document->format) : -1; }

const char* fi_document_error(const fi_document* document) { return document ? document->error.c_str() : ""; }

size_t fi_property_count(fi_document* document) { return document ? document->info->GetCount() : 0; }

fi_status fi_property_at(fi_document* document, size_t index, fi_property** property) {
    if (!document || !property) return FI_ERR_ARGUMENT;
    *property = nullptr;
    return Guard([&] {
        PROPERTYKEY key{};
        if (index >= document->info->GetCount() || FAILED(document->info->GetAt(uint32_t(index), &key))) {
            return FI_ERR_NOT_FOUND;
        }
        return MakeProperty(document, key, property);
    });
}

fi_status fi_property_get(fi_document* document, const char* name, fi_property** property) {
    if (!document || !name || !property) return FI_ERR_ARGUMENT;
    *property = nullptr;
    return Guard([&] {
        std::optional<PROPERTYKEY> key = fi::ResolveKey(name);
        if (!key || !document->info->HasProperty(&*key)) return FI_ERR_NOT_FOUND;
        return MakeProperty(document, *key, property);
    });
}

void fi_property_free(fi_property* property) {
    if (!property) return;
    auto* box = reinterpret_cast<PropertyBox*>(property);
    delete box->storage;
    delete box;
}

fi_status fi_props_json(fi_document* document, const char* file, char** json) {
    if (!document || !json) return FI_ERR_ARGUMENT;
    *json = nullptr;
    return Guard([&] {
        std::string out;
        fi::AppendPropsJson(out, document->info, file ? file : "", document->format);
        *json = CopyString(out);
        return FI_OK;
    });
}

fi_status fi_scan_json(const char* path, int format, char** json) {
    if (!path || !json || !ValidFormat(format)) return FI_ERR_ARGUMENT;
    *json = nullptr;
    return Guard([&] {
        // Read only: the file is opened once, detection and reader on the same stream.
        const std::optional<EFileFormat> forced = Forced(format);
        EFileFormat chosen = forced ? *forced : EFileFormat{};
        bool readable = false;
        std::string why;
        std::unique_ptr<IFileInfo, void (*)(IFileInfo*)> info(
            fi::OpenDocumentFile(path, forced, &chosen, &readable, &why), [](IFileInfo* i) {
                if (i) i->Release();
            });
        // The line `fileinfo scan --jsonl` writes for the file.
        std::string line;
        if (!info) {
            switch (fi::ClassifyOpenFailure(forced.has_value(), readable, why)) {
                case fi::OpenFailure::kUnreadable: return FI_ERR_UNREADABLE;
                case fi::OpenFailure::kUnsupported: return FI_ERR_UNSUPPORTED;
                case fi::OpenFailure::kFailed: fi::AppendScanErrorJson(line, path, chosen, why); break;
            }
        } else {
            fi::AppendPropsJson(line, info.get(), path, chosen);
        }
        *json = CopyString(line);
        return FI_OK;
    });
}

fi_status fi_thumbnail_png(fi_document* document, int size, int page, unsigned char** png, size_t* length) {
    if (!document || !png || !length || size <= 0 || size > kMaxBitmapSide) return FI_ERR_ARGUMENT;
    *png = nullptr;
    *length = 0;
    return Guard([&] {
        SIZE box{LONG(size), LONG(size)};
        uint8_t alpha = 0;
        HBITMAP bitmap = page < 0 ? document->info->GetBitmap(box, 0, false, &alpha)
                                  : document->info->GetPageBitmap(uint32_t(page), box, 0, false, &alpha);
        if (!bitmap) return FI_ERR_NOT_FOUND;
        std::vector<uint8_t> bytes;
        bool ok = fi::EncodePng(*bitmap, alpha != 0, &bytes, &document->error);
        DeleteObject(bitmap);
        if (!ok) return FI_ERR_INTERNAL;
        auto* out = static_cast<unsigned char*>(std::malloc(bytes.size() ? bytes.size() : 1));
        if (!out) return FI_ERR_MEMORY;
        std::memcpy(out, bytes.data(), bytes.size());
        *png = out;
        *length = bytes.size();
        return FI_OK;
    });
}

fi_status fi_text(fi_document* document, fi_text_chunk** chunks, size_t* count) {
    if (!document || !chunks || !count) return FI_ERR_ARGUMENT;
    *chunks = nullptr;
    *count = 0;
    return Guard([&] {
        TextCollector collector;
        HRESULT hr = document->info->EnumTextChunks(collector);
        if (FAILED(hr) && hr != E_NOTIMPL) return StatusOf(hr);
        if (collector.chunks.empty()) return FI_OK;
        auto* out = static_cast<fi_text_chunk*>(std::malloc(collector.chunks.size() * sizeof(fi_text_chunk)));
        if (!out) return FI_ERR_MEMORY;
        std::memcpy(out, collector.chunks.data(), collector.chunks.size() * sizeof(fi_text_chunk));
        *count = collector.chunks.size();
        *chunks = out;
        collector.chunks.clear();  // the texts now belong to the caller
        return FI_OK;
    });
}

void fi_text_free(fi_text_chunk* chunks, size_t count) {
    if (!chunks) return;
    for (size_t k = 0; k < count; ++k) std::free(const_cast<char*>(chunks[k].text));
    std::free(chunks);
}

fi_status fi_set_value(fi_document* document, const char* name, const fi_value* value) {
    if (!document || !name || !value) return FI_ERR_ARGUMENT;
    return Guard([&] {
        std::optional<PROPERTYKEY> key = fi::ResolveKey(name);
        if (!key) return FI_ERR_NOT_FOUND;
        if (document->info->IsReadOnly(&*key)) return FI_ERR_READ_ONLY;
        Variant v;
        if (!ToVariant(*value, fi::KnownPrimaryType(*key), &v.pv)) return FI_ERR_VALUE;
        HRESULT hr = document->info->SetValue(&*key, &v.pv);
        if (FAILED(hr)) document->error = "setting " + std::string(name) + " failed: " + fi::HexHresult(hr);
        return StatusOf(hr);
    });
}

fi_status fi_set_text(fi_document* document, const char* name, const char* text) {
    if (!text) return FI_ERR_ARGUMENT;
    fi_value value{};
    value.type = FI_VALUE_STRING;
    value.s = text;
    return fi_set_value(document, name, &value);
}

fi_status fi_commit(fi_document* document) {
    if (!document) return FI_ERR_ARGUMENT;
    return Guard([&] {
        HRESULT hr = document->info->Commit();
        if (FAILED(hr)) {
            document->error = "commit failed: " + fi::HexHresult(hr);
            return FI_ERR_WRITE;
        }
        return FI_OK;
    });
}

void fi_free(void* memory) { std::free(memory); }

}  // extern "C"
