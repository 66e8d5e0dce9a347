// The automation semantics every layer relies on: conversions of each kind of value as the
// run-time converts them, Collection keys and errors, Dictionary order. Dates and radix literals
// are in variant_test.cpp.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "host/collection.h"
#include "host/error.h"
#include "host/variant.h"

using host::Variant;

namespace {

// The run-time error a call raises, 0 when it raises none.
long ErrorOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const host::Error& e) {
        return e.Number();
    }
    return 0;
}

}  // namespace

TEST(Automation, ConversionsOfEveryKindOfValue) {
    // CStr
    EXPECT_EQ(host::CStr(Variant()), "");
    EXPECT_EQ(host::CStr(true), "True");
    EXPECT_EQ(host::CStr(false), "False");
    EXPECT_EQ(host::CStr(1.5), "1.5");
    EXPECT_EQ(host::CStr(0.1 + 0.2), "0.3") << "15 significant digits";
    EXPECT_EQ(host::CStr(123456789012345.0), "123456789012345");
    EXPECT_EQ(host::CStr(1e15), "1E+15");
    EXPECT_EQ(ErrorOf([] { host::CStr(Variant::Null()); }), host::err::InvalidUseOfNull);

    // CDbl
    EXPECT_EQ(host::CDbl(Variant()), 0);
    EXPECT_EQ(host::CDbl(true), -1);
    EXPECT_EQ(host::CDbl(std::string("1,234.5")), 1234.5);
    EXPECT_EQ(ErrorOf([] { host::CDbl(std::string("abc")); }), host::err::TypeMismatch);
    EXPECT_EQ(ErrorOf([] { host::CDbl(Variant::Null()); }), host::err::InvalidUseOfNull);

    // CLng rounds half to even and overflows outside 32 bits
    EXPECT_EQ(host::CLng(2.5), 2);
    EXPECT_EQ(host::CLng(3.5), 4);
    EXPECT_EQ(host::CLng(-2.5), -2);
    EXPECT_EQ(host::CLng(std::string("12")), 12);
    EXPECT_EQ(ErrorOf([] { host::CLng(2147483648.0); }), host::err::Overflow);

    // CBool
    EXPECT_TRUE(host::CBool(std::string("True")));
    EXPECT_FALSE(host::CBool(std::string("false")));
    EXPECT_FALSE(host::CBool(std::string("0")));
    EXPECT_TRUE(host::CBool(std::string("2")));
    EXPECT_FALSE(host::CBool(Variant()));
    EXPECT_EQ(ErrorOf([] { host::CBool(std::string("abc")); }), host::err::TypeMismatch);

    // Val never raises
    EXPECT_EQ(host::Val("  12 34abc"), 1234);
    EXPECT_EQ(host::Val("-1.5e-1x"), -0.15);
    EXPECT_EQ(host::Val("abc"), 0);

    // IsNumeric: Empty is a number, Null isn't.
    EXPECT_TRUE(Variant().IsNumeric());
    EXPECT_TRUE(Variant(std::string("1,000")).IsNumeric());
    EXPECT_FALSE(Variant(std::string("abc")).IsNumeric());
    EXPECT_FALSE(Variant::Null().IsNumeric());
    EXPECT_FALSE(Variant(std::string("a")) == Variant(std::string("A"))) << "texts compare with case";
}

TEST(Automation, CollectionKeysAndErrorsDictionaryOrder) {
    host::Collection<std::string> c;
    c.Add("first", "Key");
    c.Add("second");
    EXPECT_EQ(c.Item("KEY"), "first") << "keys without regard to case";
    EXPECT_EQ(c.Item(2), "second");
    EXPECT_EQ(ErrorOf([&] { c.Add("again", "key"); }), host::err::DuplicateKey);
    EXPECT_EQ(ErrorOf([&] { c.Item("nope"); }), host::err::InvalidProcedureCall);
    EXPECT_EQ(ErrorOf([&] { c.Remove("nope"); }), host::err::InvalidProcedureCall);
    c.Remove("key");
    EXPECT_EQ(c.Count(), 1);
    EXPECT_EQ(c.Item(1), "second");
    EXPECT_FALSE(c.Has("Key"));

    host::Dictionary<Variant> d;
    d.Add("b", 1.0);
    d.Add("a", 2.0);
    d.Item("c") = 3.0;                     // a new key goes at the end
    EXPECT_TRUE(d.Item("z").IsEmpty());   // and reading one adds it, Empty
    EXPECT_EQ(ErrorOf([&] { d.Add("b", 0.0); }), host::err::DuplicateKey);
    EXPECT_FALSE(d.Exists("B")) << "keys with case";
    d.Remove("a");
    EXPECT_EQ(ErrorOf([&] { d.Remove("a"); }), host::err::InvalidProcedureCall);
    std::string order;
    for (auto& key : d.Keys()) order += key;
    EXPECT_EQ(order, "bcz");
}
