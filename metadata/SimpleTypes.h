// The simple data types: one text value each, held in the Any as bool,
// int, double, wide string, SYSTEMTIME (local time) or BrmUtils::Guid.
#pragma once

#include "metadata/DataSerializer.h"
#include "platform/WinTypes.h"
#include "utils/Guid.h"

namespace Metadata::DataType {

// "true" / "false"; reading compares exactly four characters ignoring case.
class Bool : public SimpleType<Bool, bool> {
public:
    bool IsCompatible(const Any& value) const override;
    void FromText(Any& out, std::string text) const override;
    void ToText(std::string& out, const Any& value) const override;
};

// Decimal; reading stops at the first character that is no digit.
class Int : public SimpleType<Int, int> {
public:
    bool IsCompatible(const Any& value) const override;
    void FromText(Any& out, std::string text) const override;
    void ToText(std::string& out, const Any& value) const override;
};

// Decimal with "." and at most 15 significant digits, whatever the locale.
class Double : public SimpleType<Double, double> {
public:
    bool IsCompatible(const Any& value) const override;
    void FromText(Any& out, std::string text) const override;
    void ToText(std::string& out, const Any& value) const override;
};

// Wide text, UTF-8 in the tree.
class String : public SimpleType<String, BrmStringW> {
public:
    bool IsCompatible(const Any& value) const override;
    void FromText(Any& out, std::string text) const override;
    void ToText(std::string& out, const Any& value) const override;
};

// ISO 8601 with offset. Reading normalises to the machine's present zone;
// writing gives the SYSTEMTIME's fields with that zone's whole-hour offset.
// Text that is no date reads as empty.
class Date : public SimpleType<Date, SYSTEMTIME> {
public:
    bool IsCompatible(const Any& value) const override;
    void FromText(Any& out, std::string text) const override;
    void ToText(std::string& out, const Any& value) const override;
};

// Lower-case 8-4-4-4-12 text without braces; text that does not parse
// reads as the null GUID.
class Guid : public SimpleType<Guid, BrmUtils::Guid> {
public:
    bool IsCompatible(const Any& value) const override;
    void FromText(Any& out, std::string text) const override;
    void ToText(std::string& out, const Any& value) const override;
};

// The present offset from UTC in whole hours, as minutes: the zone in
// which dates are read and written.
int DateZoneMinutes();

}  // namespace Metadata::DataType
