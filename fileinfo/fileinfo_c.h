/* The C interface of libfileinfo, for callers in C and for other languages'
 * bindings. Every call answers an fi_status; nothing throws across it.
 * Whatever a call hands out is freed with this interface's own functions
 * (fi_free, fi_property_free, fi_text_free, fi_close). Strings are UTF-8 and
 * zero-terminated. A document is used by one thread at a time; different
 * documents may be used on different threads at once. */
#ifndef FILEINFO_C_H
#define FILEINFO_C_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum fi_status {
    FI_OK = 0,
    FI_ERR_ARGUMENT = 1,     /* a null pointer, an unknown format, a bad size */
    FI_ERR_UNREADABLE = 2,   /* the file cannot be opened or read, or is no regular file */
    FI_ERR_UNSUPPORTED = 3,  /* the bytes are of no supported type, or the reader of the type asked refuses them */
    FI_ERR_NOT_FOUND = 4,    /* no such property, page or image */
    FI_ERR_READ_ONLY = 5,    /* the property cannot be written */
    FI_ERR_VALUE = 6,        /* the value does not fit the property */
    FI_ERR_WRITE = 7,        /* the commit failed; the file is unchanged */
    FI_ERR_MEMORY = 8,
    FI_ERR_INTERNAL = 9
} fi_status;

/* The formats; FI_FORMAT_DETECT tells the format from the bytes. */
enum {
    FI_FORMAT_DETECT = -1,
    FI_FORMAT_DRAWING = 0,
    FI_FORMAT_PAINT = 1,
    FI_FORMAT_METAFILE = 2,
    FI_FORMAT_FILL = 3
};

typedef enum fi_value_type {
    FI_VALUE_EMPTY = 0,
    FI_VALUE_BOOL = 1,      /* i is 0 or 1 */
    FI_VALUE_INT = 2,       /* i */
    FI_VALUE_FLOAT = 3,     /* f */
    FI_VALUE_STRING = 4,    /* s */
    FI_VALUE_DATETIME = 5,  /* i: microseconds since 1970-01-01 00:00 UTC */
    FI_VALUE_LIST = 6,      /* items[0 .. count) */
    FI_VALUE_BYTES = 7      /* s holds `count` bytes */
} fi_value_type;

typedef struct fi_value {
    fi_value_type type;
    int64_t i;
    double f;
    const char* s;
    const struct fi_value* items;
    size_t count;
} fi_value;

typedef struct fi_property {
    const char* key;      /* "{FMTID}/PID" */
    const char* name;     /* canonical name, e.g. "System.Title" */
    fi_value value;       /* the typed value */
    const char* display;  /* the display text */
    int read_only;
} fi_property;

typedef struct fi_text_chunk {
    const char* text;
    uint16_t language;
    uint32_t chunk_break; /* 0 none, 3 end of paragraph, 4 new text stream */
} fi_text_chunk;

typedef struct fi_document fi_document;

const char* fi_version(void);
/* A fixed English text for a status. */
const char* fi_status_text(fi_status status);
/* "drawing", "paint", "metafile", "fill"; null for another number. */
const char* fi_format_name(int format);

/* Opening. `format` is one of FI_FORMAT_*. The memory form copies the bytes. */
fi_status fi_open_path(const char* path, int format, fi_document** document);
fi_status fi_open_memory(const void* data, size_t size, int format, fi_document** document);
void fi_close(fi_document* document);
int fi_document_format(const fi_document* document);
/* The reason of the last failure on this document, or "". */
const char* fi_document_error(const fi_document* document);


/* Whether documents opened from now on may follow "file:" references to
 * other local files (allowed unless set). A server that scans uploads calls
 * fi_set_external_links(0) once, before it opens anything. */
void fi_set_external_links(int allowed);

/* Properties, in the reader's order. */
size_t fi_property_count(fi_document* document);
fi_status fi_property_at(fi_document* document, size_t index, fi_property** property);
/* By canonical name or "{FMTID}/PID". */
fi_status fi_property_get(fi_document* document, const char* name, fi_property** property);
void fi_property_free(fi_property* property);

/* The properties as the tool's `props --json` object (one line), for an
 * open document; or, for a path, the line `scan --jsonl` writes, an error
 * object included. Free with fi_free. */
fi_status fi_props_json(fi_document* document, const char* file, char** json);
fi_status fi_scan_json(const char* path, int format, char** json);

/* PNG bytes of the thumbnail (page < 0) or of a page, fitted into
 * size x size. Free with fi_free. */
fi_status fi_thumbnail_png(fi_document* document, int size, int page, unsigned char** png, size_t* length);

/* The document's text runs. Free with fi_text_free. */
fi_status fi_text(fi_document* document, fi_text_chunk** chunks, size_t* count);
void fi_text_free(fi_text_chunk* chunks, size_t count);

/* Writing: values are stored by fi_set_* and written by fi_commit. A string
 * is turned into the property's own type (a list splits on ";"). */
fi_status fi_set_value(fi_document* document, const char* name, const fi_value* value);
fi_status fi_set_text(fi_document* document, const char* name, const char* text);
fi_status fi_commit(fi_document* document);

void fi_free(void* memory);

#ifdef __cplusplus
}
#endif

#endif
