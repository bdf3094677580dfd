// The byte form of variant values: byte sequences written out by hand from
// the property-set layout, round trips of every type, truncated and hostile
// input.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "platform/OleAuto.h"
#include "tests/props/VariantText.h"
#include "utils/props/PropVariantBytes.h"
#include "utils/props/PropVariantText.h"

using BrmUtils::DeserializePropVariant;
using BrmUtils::SerializePropVariant;
using Bytes = std::vector<uint8_t>;
using fitest::Owned;

namespace {

constexpr GUID kGuid = {0x00112233, 0x4455, 0x6677, {0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};

// A value from its text form; the test fails if the text does not read.
void FromText(const wchar_t* type, bool vector, const wchar_t* text, PROPVARIANT* v) {
    ASSERT_TRUE(BrmUtils::ParsePropVariant(type, vector, text, v)) << fitest::Narrow(text);
}

using Make = std::function<void(PROPVARIANT*)>;

Make Text(const wchar_t* type, bool vector, const wchar_t* text) {
    return [=](PROPVARIANT* v) { FromText(type, vector, text, v); };
}

void MakeFiletime(PROPVARIANT* v) { v->vt = VT_FILETIME, v->filetime = UInt64ToFileTime(0x01D9000012345678ull); }

void MakeClsid(PROPVARIANT* v) {
    v->vt = VT_CLSID;
    v->puuid = static_cast<CLSID*>(CoTaskMemAlloc(sizeof(CLSID)));
    *v->puuid = kGuid;
}

struct Golden { const char* name; Make make; Bytes bytes; };

const std::vector<Golden>& Goldens() {
    static const std::vector<Golden> goldens = {
        {"empty", [](PROPVARIANT* v) { v->vt = VT_EMPTY; }, {0x00, 0, 0, 0}},
        {"short -2", Text(L"short", false, L"-2"), {0x02, 0, 0, 0, 0xFE, 0xFF, 0, 0}},
        {"byte 7", Text(L"byte", false, L"7"), {0x11, 0, 0, 0, 0x07, 0, 0, 0}},
        {"bool true", Text(L"bool", false, L"true"), {0x0B, 0, 0, 0, 0xFF, 0xFF, 0, 0}},
        {"uint", Text(L"uint", false, L"305419896"), {0x13, 0, 0, 0, 0x78, 0x56, 0x34, 0x12}},
        {"int64 -1", Text(L"int64", false, L"-1"), {0x14, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
        {"float 1.5", Text(L"float", false, L"1.5"), {0x04, 0, 0, 0, 0, 0, 0xC0, 0x3F}},
        {"double 1", Text(L"double", false, L"1"), {0x05, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F}},
        {"string Ab", Text(L"string", false, L"Ab"), {0x1F, 0, 0, 0, 3, 0, 0, 0, 0x41, 0, 0x62, 0, 0, 0, 0, 0}},
        {"string pair", Text(L"string", false, L"\U0001F600"),
         {0x1F, 0, 0, 0, 3, 0, 0, 0, 0x3D, 0xD8, 0x00, 0xDE, 0, 0, 0, 0}},
        {"cstr hi", Text(L"cstr", false, L"hi"), {0x1E, 0, 0, 0, 6, 0, 0, 0, 0x68, 0, 0x69, 0, 0, 0, 0, 0}},
        {"bstr x", Text(L"bstr", false, L"x"), {0x08, 0, 0, 0, 4, 0, 0, 0, 0x78, 0, 0, 0}},
        {"blob", Text(L"binary", false, L"010203"), {0x41, 0, 0, 0, 3, 0, 0, 0, 1, 2, 3, 0}},
        {"filetime", MakeFiletime, {0x40, 0, 0, 0, 0x78, 0x56, 0x34, 0x12, 0, 0, 0xD9, 0x01}},
        {"clsid", MakeClsid,
         {0x48, 0, 0, 0, 0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}},
        {"short vector", Text(L"short", true, L"1;2;3"), {0x02, 0x10, 0, 0, 3, 0, 0, 0, 1, 0, 2, 0, 3, 0, 0, 0}},
        {"bool vector", Text(L"bool", true, L"true;false"), {0x0B, 0x10, 0, 0, 2, 0, 0, 0, 0xFF, 0xFF, 0, 0}},
        {"string vector", Text(L"string", true, L"a;bc"),
         {0x1F, 0x10, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 0x61, 0, 0, 0, 3, 0, 0, 0, 0x62, 0, 0x63, 0, 0, 0, 0, 0}},
        {"empty vector", Text(L"int", true, L""), {0x03, 0x10, 0, 0, 0, 0, 0, 0}},
    };
    return goldens;
}

Bytes Serialized(const PROPVARIANT& v) {
    Bytes bytes;
    EXPECT_TRUE(SerializePropVariant(v, bytes));
    return bytes;
}

// Serialize, read back, and check the same type and bytes come out again.
Bytes ExpectRoundTrip(const PROPVARIANT& value, Owned& back) {
    const Bytes bytes = Serialized(value);
    EXPECT_EQ(bytes.size() % 4, 0u);
    EXPECT_TRUE(DeserializePropVariant(bytes.data(), bytes.size(), &back.v));
    EXPECT_EQ(back.v.vt, value.vt);
    EXPECT_EQ(Serialized(back.v), bytes);
    return bytes;
}

}  // namespace

TEST(PropVariantBytes, GoldenSequences) {
    for (const Golden& g : Goldens()) {
        SCOPED_TRACE(g.name);
        Owned value, back, again;
        g.make(&value.v);
        EXPECT_EQ(ExpectRoundTrip(value.v, back), g.bytes);
        // Bytes behind the value are not its business.
        Bytes longer = g.bytes;
        longer.insert(longer.end(), {0xDE, 0xAD, 0xBE, 0xEF});
        ASSERT_TRUE(DeserializePropVariant(longer.data(), longer.size(), &again.v));
        EXPECT_EQ(Serialized(again.v), g.bytes);
        // A truncation never gives another value.
        for (size_t n = 0; n < g.bytes.size(); ++n) {
            Owned cut;
            cut.v.vt = VT_I4;
            if (DeserializePropVariant(g.bytes.data(), n, &cut.v)) {
                EXPECT_EQ(Serialized(cut.v), g.bytes) << "at " << n;  // only the end's padding was missing
            } else {
                EXPECT_EQ(cut.v.vt, VT_EMPTY);
            }
        }
    }
}

TEST(PropVariantBytes, EveryTypeRoundTrips) {
    for (const fitest::TextCase& c : fitest::kTextRoundTrips) {
        SCOPED_TRACE(fitest::Narrow(c.type) + (c.vector ? "[] " : " ") + fitest::Narrow(c.text));
        Owned value, back;
        FromText(c.type, c.vector, c.text, &value.v);
        ExpectRoundTrip(value.v, back);
        BrmPlatform::BrmStringW type, text;
        bool vector;
        ASSERT_TRUE(BrmUtils::FormatPropVariant(back.v, type, vector, text));
        EXPECT_EQ(back.v.vt, c.vt);
        EXPECT_EQ(text.StdString(), c.formatted ? c.formatted : c.text);
    }
    // Types without a text form.
    const std::vector<Make> makes = {
        [](PROPVARIANT* v) { v->vt = VT_NULL; },
        [](PROPVARIANT* v) { v->vt = VT_ERROR, v->scode = E_FAIL; },
        [](PROPVARIANT* v) { v->vt = VT_INT, v->intVal = -9; },
        [](PROPVARIANT* v) { v->vt = VT_UINT, v->uintVal = 9; },
        [](PROPVARIANT* v) { v->vt = VT_DATE, v->date = 45000.25; },
        MakeFiletime,
        MakeClsid,
        [](PROPVARIANT* v) {
            v->vt = VT_VECTOR | VT_FILETIME, v->cafiletime.cElems = 2;
            v->cafiletime.pElems = static_cast<FILETIME*>(CoTaskMemAlloc(2 * sizeof(FILETIME)));
            v->cafiletime.pElems[0] = UInt64ToFileTime(1), v->cafiletime.pElems[1] = UInt64ToFileTime(~0ull);
        },
        [](PROPVARIANT* v) {
            v->vt = VT_VECTOR | VT_CLSID, v->cauuid.cElems = 1;
            v->cauuid.pElems = static_cast<CLSID*>(CoTaskMemAlloc(sizeof(CLSID)));
            v->cauuid.pElems[0] = kGuid;
        },
        [](PROPVARIANT* v) {
            v->vt = VT_VECTOR | VT_ERROR, v->cascode.cElems = 1;
            v->cascode.pElems = static_cast<SCODE*>(CoTaskMemAlloc(sizeof(SCODE)));
            v->cascode.pElems[0] = E_INVALIDARG;
        },
        [](PROPVARIANT* v) { v->vt = VT_BSTR, v->bstrVal = SysAllocStringLen(L"bstr", 4); },
    };
    for (size_t i = 0; i < makes.size(); ++i) {
        SCOPED_TRACE(i);
        Owned value, back;
        makes[i](&value.v);
        ExpectRoundTrip(value.v, back);
    }
}

TEST(PropVariantBytes, HostileInputAnswersFalse) {
    const std::vector<Bytes> cases = {
        {},
        {0x03, 0x00, 0x00},                                         // a short header
        {0x03, 0x00, 0x00, 0x00, 0x01, 0x00},                       // a short number
        {0x1F, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0x41, 0},           // huge character count
        {0x1F, 0, 0, 0, 5, 0, 0, 0, 0x41, 0},                       // count beyond the data
        {0x1E, 0, 0, 0, 3, 0, 0, 0, 0x41, 0, 0, 0},                 // odd byte count in UTF-16
        {0x08, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x7F},
        {0x41, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3, 4},        // blob beyond the data
        {0x1F, 0x10, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0},     // element count beyond the data
        {0x1F, 0x10, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 0x61, 0, 0, 0},  // second element missing
        {0x1E, 0x10, 0, 0, 1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF},
        {0x08, 0x10, 0, 0, 0x00, 0x00, 0x00, 0x40},
        {0x03, 0x10, 0, 0, 0x40, 0, 0, 0, 1, 0, 0, 0},  // 64 numbers in 4 bytes
        {0x14, 0x10, 0, 0, 0x02, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0},
        {0x48, 0x10, 0, 0, 2, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16},
        {0x48, 0, 0, 0, 1, 2, 3, 4},
        {0x0C, 0x10, 0, 0, 1, 0, 0, 0, 0x03, 0, 0, 0, 1, 0, 0, 0},  // vectors of variants are not read
        {0x0D, 0, 0, 0}, {0x42, 0, 0, 0},                            // VT_UNKNOWN, VT_STREAM
        {0x03, 0x20, 0, 0, 1, 0, 0, 0}, {0x03, 0x40, 0, 0, 1, 0, 0, 0},  // VT_ARRAY, VT_BYREF
        {0xFF, 0x0F, 0, 0},
    };
    for (size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        Owned value;
        value.v.vt = VT_I4;
        EXPECT_FALSE(DeserializePropVariant(cases[i].data(), cases[i].size(), &value.v));
        EXPECT_EQ(value.v.vt, VT_EMPTY);
    }
    Owned value;
    EXPECT_FALSE(DeserializePropVariant(nullptr, 8, &value.v));
    const uint8_t header[] = {0, 0, 0, 0};
    EXPECT_FALSE(DeserializePropVariant(header, sizeof header, nullptr));
}

TEST(PropVariantBytes, ValuesThatCannotBeWritten) {
    const std::vector<Make> makes = {
        [](PROPVARIANT* v) { v->vt = VT_UNKNOWN; },
        [](PROPVARIANT* v) { v->vt = VT_STREAM; },
        [](PROPVARIANT* v) { v->vt = VT_ARRAY | VT_I4; },
        [](PROPVARIANT* v) { v->vt = VT_CLSID; },  // no GUID behind it
        [](PROPVARIANT* v) { v->vt = VT_VECTOR | VT_I4, v->cal.cElems = 2; },
        [](PROPVARIANT* v) { v->vt = VT_VECTOR | VT_LPWSTR, v->calpwstr.cElems = 1; },
        [](PROPVARIANT* v) { v->vt = VT_BLOB, v->blob.cbSize = 3; },
    };
    for (size_t i = 0; i < makes.size(); ++i) {
        SCOPED_TRACE(i);
        PROPVARIANT value;
        PropVariantInit(&value);
        makes[i](&value);
        Bytes bytes = {1, 2, 3};
        EXPECT_FALSE(SerializePropVariant(value, bytes));
        EXPECT_TRUE(bytes.empty());
    }
}
