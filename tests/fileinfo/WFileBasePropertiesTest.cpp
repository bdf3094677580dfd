// The property operations of WFileBase, driven through IFileInfo on the
// test reader: reserved numbers, enumerations and their order, open
// properties and their writing.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "platform/CodePage.h"
#include "tests/fileinfo/TestReader.h"
#include "tests/props/VariantText.h"

using namespace fitest;

namespace {

PROPSPEC ById(PROPID pid) {
    PROPSPEC spec;
    spec.ulKind = PRSPEC_PROPID, spec.propid = pid;
    return spec;
}

PROPSPEC ByName(const wchar_t* name) {
    PROPSPEC spec;
    spec.ulKind = PRSPEC_LPWSTR, spec.lpwstr = const_cast<wchar_t*>(name);
    return spec;
}

// A borrowed value, never cleared.
PROPVARIANT Int(LONG n) {
    PROPVARIANT v;
    v.vt = VT_I4, v.lVal = n;
    return v;
}

std::vector<PROPERTYKEY> AllKeys(IFileInfo& info) {
    std::vector<PROPERTYKEY> keys;
    PROPERTYKEY key;
    for (uint32_t i = 0; info.GetAt(i, &key) == S_OK; ++i) keys.push_back(key);
    return keys;
}

// The records an enumeration hands to its visitor, copied out.
template <typename Record, typename Enum>
std::vector<Record> Collect(Enum enumerate) {
    std::vector<Record> out;
    FnVisitor visitor([&](const void* r) { out.push_back(*static_cast<const Record*>(r)); });
    enumerate(visitor);
    return out;
}

std::vector<STATPROPSTG> Properties(IFileInfo& info, const FMTID& fmtid) {
    return Collect<STATPROPSTG>([&](PropertyVisitor& v) { EXPECT_EQ(info.EnumProperties(&fmtid, v), S_OK); });
}

std::vector<FMTID> FormatIds(IFileInfo& info) {
    return Collect<FMTID>([&](PropertyVisitor& v) { EXPECT_EQ(info.EnumFormatIds(v), S_OK); });
}

bool SameKeys(const std::vector<PROPERTYKEY>& a, const std::vector<PROPERTYKEY>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](auto& x, auto& y) { return x == y; });
}

// A reader whose catalogue stays empty.
class EmptyReader : public WFileBase {
public:
    void BuildCatalogue() override {}
    DibBlock ReadPreviewDib() override { return {}; }
};

}  // namespace

TEST(WFileBaseRead, ReservedNumbersAndNames) {
    ReaderPtr reader(TestReader::Make());
    FileInfoPtr empty(new EmptyReader());
    for (IFileInfo* info : {static_cast<IFileInfo*>(reader.get()), empty.get()}) {
        Owned codePage, locale, byName;
        PROPSPEC one = ById(PID_CODEPAGE), localeSpec = ById(PID_LOCALE), name = ByName(L"Title");
        EXPECT_EQ(info->ReadValue(&kSetA, &one, &codePage.v), S_OK);
        EXPECT_EQ(codePage.v.vt, VT_I2);
        EXPECT_EQ(codePage.v.iVal, SHORT(GetACP()));
        EXPECT_EQ(info->ReadValue(&kSetA, &localeSpec, &locale.v), S_OK);
        EXPECT_EQ(locale.v.vt, VT_UI4);
        EXPECT_EQ(locale.v.ulVal, 1024u);
        EXPECT_EQ(info->ReadValue(&kSetA, &name, &byName.v), E_UNEXPECTED);
        EXPECT_FALSE(info->HasPropertySpec(&kSetA, &name));
        EXPECT_TRUE(info->IsReadOnlySpec(&kSetA, &name));
        EXPECT_TRUE(info->HasPropertySpec(&kSetB, &one));
        EXPECT_TRUE(info->IsReadOnlySpec(&kSetB, &localeSpec));
        PROPVARIANT text = Text(L"x");
        EXPECT_EQ(info->WriteValue(&kSetA, &name, &text), E_UNEXPECTED);
        EXPECT_EQ(info->WriteValue(&kSetA, &one, &text), S_OK);
        EXPECT_EQ(info->WriteValue(&kSetA, &localeSpec, &text), S_OK);
    }
}

TEST(WFileBaseEnum, GroupsInRegistrationOrder) {
    ReaderPtr reader(TestReader::Make());
    const auto groups = Collect<PropertyGroup>([&](PropertyVisitor& v) { reader->EnumGroups(v); });
    std::vector<PROPERTYKEY> groupKeys;
    for (const PropertyGroup& g : groups) groupKeys.push_back(g.key);
    EXPECT_TRUE(SameKeys(groupKeys, {kGroupDescription, kGroupGeneral, kGroupHidden}));
    const struct { PROPERTYKEY group; std::vector<PROPERTYKEY> members; } cases[] = {
        {kGroupDescription, {kTitle, kKeywords, kTitle}},  // listed twice, held once
        {kGroupGeneral, {kPages, kBig, kThrowing}},
        {kGroupHidden, {kNoGetter}},
        {kGroupOrigin, {}},
        {PROPERTYKEY{kGroupGeneral.fmtid, 101}, {}},  // PID differs
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.group.pid);
        EXPECT_TRUE(SameKeys(Collect<PROPERTYKEY>([&](PropertyVisitor& v) { reader->EnumGroupMembers(&c.group, v); }),
                             c.members));
    }
}

TEST(WFileBaseOpen, OpenPropertiesJoinTheCatalogue) {
    ReaderPtr reader(TestReader::Make());
    reader->openEnabled = true;
    const PROPERTYKEY openA = Key(kSetOpen, 300), openB = Key(kSetOpen, 4), missing = Key(kSetOpen, 5);
    reader->open = {{openA, 30}, {openB, 4}};
    EXPECT_EQ(reader->GetCount(), 9u);
    std::vector<PROPERTYKEY> keys = AllKeys(*reader);  // after the catalogue, in list order
    ASSERT_EQ(keys.size(), 9u);
    EXPECT_TRUE(keys[7] == openA && keys[8] == openB);

    // Every FMTID's enumeration reports the catalogue's own records of the set, then both open keys.
    const struct { FMTID fmtid; size_t count; } sets[] = {{kSetA, 6 + 2}, {kSetB, 1 + 2}, {kSetOpen, 2}, {GUID_NULL, 2}};
    for (const auto& c : sets) {
        const std::vector<STATPROPSTG> props = Properties(*reader, c.fmtid);
        ASSERT_EQ(props.size(), c.count);
        EXPECT_EQ(props[c.count - 2].propid, 300u);
        EXPECT_EQ(props[c.count - 1].propid, 4u);
        EXPECT_EQ(props[c.count - 1].vt, VT_I4);  // the value's actual type
    }

    Owned value;
    EXPECT_EQ(reader->GetValue(&openA, &value.v), S_OK);
    EXPECT_EQ(value.v.lVal, 30);
    EXPECT_EQ(reader->GetValue(&missing, &value.v), S_FALSE);  // what the store answers
    // Unknown keys become writable and present; catalogue rules stay.
    EXPECT_TRUE(reader->HasProperty(&missing));
    EXPECT_FALSE(reader->IsReadOnly(&missing));
    EXPECT_TRUE(reader->IsReadOnly(&kPages));
    PROPVARIANT seven = Int(7), text = Text(L"x");
    EXPECT_EQ(reader->SetValue(&missing, &seven), S_OK);
    EXPECT_EQ(reader->open.size(), 3u);
    EXPECT_EQ(reader->SetValue(&openA, &text), E_INVALIDARG);
    EXPECT_EQ(reader->SetValue(&kPages, &seven), STG_E_ACCESSDENIED);  // the catalogue wins
    // The open set shows in the FMTIDs, in byte order before the others.
    const std::vector<FMTID> ids = FormatIds(*reader);
    ASSERT_EQ(ids.size(), 3u);
    EXPECT_TRUE(ids[0] == kSetOpen);

    // Listed keys of a reader that says it has none stay unknown.
    reader->openEnabled = false;
    const PROPERTYKEY other = Key(kSetOpen, 6);
    EXPECT_EQ(reader->GetValue(&other, &value.v), S_FALSE);
    EXPECT_FALSE(reader->HasProperty(&other));
    EXPECT_EQ(reader->SetValue(&other, &seven), STG_E_ACCESSDENIED);
}
