// Message notation to positional printf notation, both widths alike.
#include "utils/MessageFormat.h"

#include <gtest/gtest.h>

using BrmUtils::ConvertMessageFormat;

TEST(MessageFormat, Conversions) {
    const struct {
        const char *in, *out;
    } cases[] = {
        {"plain text", "plain text"}, {"100%% and %%x", "100%% and %%x"}, {"%1", "%1$s"}, {"%1!s!", "%1$s"},
        {"%2!d! of %1", "%2$d of %1$s"}, {"%1!04X!", "%1$04X"}, {"%12", "%12$s"},
        {"%1!-+ #0*.*lld!", "%1$-+ #0*.*lld"}, {"%1!I64u! %2!Lg! %3!p! %4!ls!", "%1$I64u %2$Lg %3$p %4$ls"},
        {"%1!z!", "%1!z!"}, {"% a", "% a"}, {"a% b", "a b"}, {"%% x", "%% x"}, {"%%n", "%\n"}, {"%%%n", "%%\n"},
        {"%%.", "%."}, {"%.%!", ".!"}, {"%r%t%n", "\r\t\n"}, {"%%1", "%%1$s"}, {"%%%1", "%%%1$s"},
        {"%1%2", "%1$s%2$s"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ConvertMessageFormat(c.in), c.out) << c.in;
        const std::string in = c.in, out = c.out;
        EXPECT_EQ(ConvertMessageFormat(std::wstring(in.begin(), in.end()).c_str()), std::wstring(out.begin(), out.end()))
            << c.in;
    }
    EXPECT_EQ(ConvertMessageFormat(static_cast<const char*>(nullptr)), "");
}
