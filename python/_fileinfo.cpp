// The Python extension `fileinfo._fileinfo`: a thin layer over the C
// interface. It turns values into Python objects and statuses into
// exceptions, and lets go of the GIL while the library reads, so that scans
// on several threads run at once.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <string>
#include <vector>

#include "fileinfo/fileinfo_c.h"

namespace py = pybind11;

namespace {

// Python's exception classes, set once at import by the package. Held for
// the life of the process (never released: they outlive the interpreter's
// own teardown of module globals).
PyObject* g_error = PyExc_Exception;
PyObject* g_unreadable = PyExc_OSError;
PyObject* g_unsupported = PyExc_ValueError;

[[noreturn]] void Raise(fi_status status, const std::string& what, const char* detail = nullptr) {
    std::string message = what + ": " + fi_status_text(status);
    if (detail && *detail) message += " (" + std::string(detail) + ")";
    PyObject* type = g_error;
    if (status == FI_ERR_UNREADABLE) type = g_unreadable;
    if (status == FI_ERR_UNSUPPORTED) type = g_unsupported;
    if (status == FI_ERR_ARGUMENT || status == FI_ERR_VALUE) type = PyExc_ValueError;
    if (status == FI_ERR_NOT_FOUND) type = PyExc_KeyError;
    if (status == FI_ERR_MEMORY) throw std::bad_alloc();
    PyErr_SetString(type, message.c_str());
    throw py::error_already_set();
}

py::object ToPython(const fi_value& v, const py::object& fromMicros) {
    switch (v.type) {
        case FI_VALUE_EMPTY: return py::none();
        case FI_VALUE_BOOL: return py::bool_(v.i != 0);
        case FI_VALUE_INT: return py::int_(v.i);
        case FI_VALUE_FLOAT: return py::float_(v.f);
        case FI_VALUE_STRING: return py::str(v.s ? v.s : "");
        case FI_VALUE_DATETIME: return fromMicros(v.i);
        case FI_VALUE_BYTES: return py::bytes(v.s, v.count);
        case FI_VALUE_LIST: {
            py::list out;
            for (size_t k = 0; k < v.count; ++k) out.append(ToPython(v.items[k], fromMicros));
            return out;
        }
    }
    return py::none();
}

class Document {
public:
    Document(fi_document* d, std::string path) : d_(d), path_(std::move(path)) {}
    ~Document() { fi_close(d_); }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    std::string Type() const { return fi_format_name(fi_document_format(d_)); }
    const std::string& Path() const { return path_; }

    // Every property: (key, name, value, display, read_only) in the reader's order.
    py::list Properties(const py::object& fromMicros) {
        std::vector<fi_property*> props;
        {
            py::gil_scoped_release release;
            size_t n = fi_property_count(d_);
            for (size_t k = 0; k < n; ++k) {
                fi_property* p = nullptr;
                if (fi_property_at(d_, k, &p) == FI_OK) props.push_back(p);
            }
        }
        py::list out;
        try {
            for (fi_property* p : props) {
                out.append(py::make_tuple(p->key, p->name, ToPython(p->value, fromMicros), p->display,
                                          p->read_only != 0));
            }
        } catch (...) {
            for (fi_property* p : props) fi_property_free(p);
            throw;
        }
        for (fi_property* p : props) fi_property_free(p);
        return out;
    }

    py::bytes Thumbnail(int size, int page) {
        unsigned char* png = nullptr;
        size_t length = 0;
        fi_status s;
        {
            py::gil_scoped_release release;
            s = fi_thumbnail_png(d_, size, page, &png, &length);
        }
        if (s != FI_OK) Raise(s, path_ + ": no " + (page < 0 ? std::string("thumbnail") : "page preview"));
        py::bytes out(reinterpret_cast<const char*>(png), length);
        fi_free(png);
        return out;
    }

    py::list Text() {
        fi_text_chunk* chunks = nullptr;
        size_t count = 0;
        fi_status s;
        {
            py::gil_scoped_release release;
            s = fi_text(d_, &chunks, &count);
        }
        if (s != FI_OK) Raise(s, path_ + ": no text");
        py::list out;
        for (size_t k = 0; k < count; ++k) {
            out.append(py::make_tuple(py::str(chunks[k].text), int(chunks[k].language), int(chunks[k].chunk_break)));
        }
        fi_text_free(chunks, count);
        return out;
    }

    void SetText(const std::string& name, const std::string& text) {
        fi_status s = fi_set_text(d_, name.c_str(), text.c_str());
        if (s != FI_OK) Raise(s, path_ + ": cannot set " + name, fi_document_error(d_));
    }
    void SetList(const std::string& name, const std::vector<std::string>& items) {
        std::vector<fi_value> values(items.size());
        for (size_t k = 0; k < items.size(); ++k) {
            values[k].type = FI_VALUE_STRING;
            values[k].s = items[k].c_str();
        }
        fi_value v{};
        v.type = FI_VALUE_LIST;
        v.items = values.data();
        v.count = values.size();
        Set(name, v);
    }
    void SetNumber(const std::string& name, const py::object& number) {
        fi_value v{};
        if (py::isinstance<py::bool_>(number)) {
            v.type = FI_VALUE_BOOL;
            v.i = number.cast<bool>();
        } else if (py::isinstance<py::int_>(number)) {
            v.type = FI_VALUE_INT;
            v.i = number.cast<int64_t>();
        } else {
            v.type = FI_VALUE_FLOAT;
            v.f = number.cast<double>();
        }
        Set(name, v);
    }
    void SetDatetime(const std::string& name, int64_t micros) {
        fi_value v{};
        v.type = FI_VALUE_DATETIME;
        v.i = micros;
        Set(name, v);
    }
    void Commit() {
        fi_status s;
        {
            py::gil_scoped_release release;
            s = fi_commit(d_);
        }
        if (s != FI_OK) Raise(s, path_ + ": commit failed", fi_document_error(d_));
    }

private:
    void Set(const std::string& name, const fi_value& v) {
        fi_status s = fi_set_value(d_, name.c_str(), &v);
        if (s != FI_OK) Raise(s, path_ + ": cannot set " + name, fi_document_error(d_));
    }

    fi_document* d_;
    std::string path_;
};

int FormatNumber(const std::string& type) {
    if (type.empty()) return FI_FORMAT_DETECT;
    for (int f = FI_FORMAT_DRAWING; f <= FI_FORMAT_FILL; ++f) {
        if (type == fi_format_name(f)) return f;
    }
    Raise(FI_ERR_ARGUMENT, "unknown type '" + type + "' (drawing, paint, metafile or fill)");
}

Document* OpenPath(const std::string& path, const std::string& type) {
    int format = FormatNumber(type);
    fi_document* d = nullptr;
    fi_status s;
    {
        py::gil_scoped_release release;
        s = fi_open_path(path.c_str(), format, &d);
    }
    if (s != FI_OK) Raise(s, path);
    return new Document(d, path);
}

Document* OpenBytes(const py::bytes& data, const std::string& type) {
    int format = FormatNumber(type);
    std::string_view bytes = data;
    fi_document* d = nullptr;
    fi_status s;
    {
        py::gil_scoped_release release;
        s = fi_open_memory(bytes.data(), bytes.size(), format, &d);
    }
    if (s != FI_OK) Raise(s, "<bytes>");
    return new Document(d, "<bytes>");
}

// The `scan --jsonl` line of one file, or None when the file is skipped
// (unreadable or of no supported type).
py::object ScanJson(const std::string& path, const std::string& type) {
    int format = FormatNumber(type);
    char* json = nullptr;
    fi_status s;
    {
        py::gil_scoped_release release;
        s = fi_scan_json(path.c_str(), format, &json);
    }
    if (s == FI_ERR_UNREADABLE || s == FI_ERR_UNSUPPORTED) return py::none();
    if (s != FI_OK) Raise(s, path);
    py::str out(json);
    fi_free(json);
    return out;
}

}  // namespace

PYBIND11_MODULE(_fileinfo, m) {
    m.doc() = "Thumbnails, properties and text of drawing documents, paint images, metafiles and fill files";
    m.attr("__version__") = fi_version();

    py::class_<Document>(m, "_Document")
        .def_property_readonly("type", &Document::Type)
        .def_property_readonly("path", &Document::Path)
        .def("_properties", &Document::Properties)
        .def("_thumbnail", &Document::Thumbnail)
        .def("_text", &Document::Text)
        .def("_set_text", &Document::SetText)
        .def("_set_list", &Document::SetList)
        .def("_set_number", &Document::SetNumber)
        .def("_set_datetime", &Document::SetDatetime)
        .def("_commit", &Document::Commit);
    m.def("_open_path", &OpenPath, py::return_value_policy::take_ownership);
    m.def("_open_bytes", &OpenBytes, py::return_value_policy::take_ownership);
    m.def("_scan_json", &ScanJson);
    m.def("set_external_links", [](bool allowed) { fi_set_external_links(allowed ? 1 : 0); },
          "Whether documents opened from now on may follow file: references to other local files.");
    m.def("_set_exceptions", [](py::object error, py::object unreadable, py::object unsupported) {
        g_error = error.release().ptr();
        g_unreadable = unreadable.release().ptr();
        g_unsupported = unsupported.release().ptr();
    });
}
