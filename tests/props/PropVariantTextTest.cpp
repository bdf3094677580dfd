// The text form of variant values: the texts and values refused.
#include <gtest/gtest.h>

#include "platform/OleAuto.h"
#include "tests/props/VariantText.h"
#include "utils/props/PropVariantText.h"

using BrmPlatform::BrmStringW;
using BrmUtils::FormatPropVariant;
using BrmUtils::ParsePropVariant;
using fitest::TextCase;

TEST(PropVariantText, Failures) {
    const TextCase parse[] = {
        {L"Int", false, L"1", 0, nullptr},  // names compare exactly
        {L"integer", false, L"1", 0, nullptr}, {L"in", false, L"1", 0, nullptr}, {L"", false, L"1", 0, nullptr},
        {L"binary", true, L"00", 0, nullptr},  // no vector form
        {L"binary", false, L"abc", 0, nullptr}, {L"binary", false, L"zz", 0, nullptr},
        {L"binary", false, L"0 1", 0, nullptr},
    };
    for (const TextCase& c : parse) {
        SCOPED_TRACE(fitest::Narrow(c.type));
        PROPVARIANT value;
        value.vt = VT_I4;
        EXPECT_FALSE(ParsePropVariant(c.type, c.vector, c.text, &value));
        EXPECT_EQ(value.vt, VT_EMPTY);
    }
    EXPECT_FALSE(ParsePropVariant(L"int", false, L"1", nullptr));

    const VARTYPE types[] = {VT_EMPTY, VT_NULL, VT_INT, VT_FILETIME, VT_CLSID, VT_ERROR,
                             VT_VECTOR | VT_BLOB, VT_ARRAY | VT_I4, VT_BYREF | VT_I4, VT_VECTOR | VT_FILETIME,
                             VT_VECTOR | VT_I4 /* three elements and no array */};
    for (VARTYPE vt : types) {
        SCOPED_TRACE(vt);
        PROPVARIANT value;
        PropVariantInit(&value);
        value.vt = vt;
        if (vt == (VT_VECTOR | VT_I4)) value.cal.cElems = 3;
        BrmStringW type(L"old"), text(L"old");
        bool vector = true;
        EXPECT_FALSE(FormatPropVariant(value, type, vector, text));
        EXPECT_TRUE(type.IsEmpty() && text.IsEmpty());
        EXPECT_FALSE(vector);
    }
}
