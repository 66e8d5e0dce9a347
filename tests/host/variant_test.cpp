#include <gtest/gtest.h>

#include "host/error.h"
#include "host/variant.h"

using host::Variant;

TEST(Dates, ADateIsNoNumberButConvertsToItsSerial) {
    const Variant march31 = Variant::Date(45382);
    EXPECT_FALSE(march31.IsNumeric());
    for (const Variant& v : {Variant(45382.0), Variant(45382L), Variant(true), Variant(), Variant(" 12.5 "), Variant("1,200")})
        EXPECT_TRUE(v.IsNumeric()) << host::CStr(v);
    EXPECT_FALSE(Variant("3/31/2024").IsNumeric()) << "date text is no number either";
    EXPECT_FALSE(Variant("12 apples").IsNumeric());

    EXPECT_EQ(host::CDbl(march31), 45382.0);
    EXPECT_EQ(host::CDbl(Variant::Date(45382.75)), 45382.75);
    EXPECT_EQ(host::CLng(Variant::Date(45382.75)), 45383);
    EXPECT_TRUE(host::CBool(march31));
    EXPECT_FALSE(host::CBool(Variant::Date(0)));
    EXPECT_THROW(host::CDbl(Variant("3/31/2024")), host::Error) << "CDbl reads no date text";
}

TEST(Dates, TextIsTheShortDateWithTheTimeWhenThereIsOne) {
    struct Case {
        double serial;
        const char* text;
    } cases[] = {
        {45382, "3/31/2024"},
        {45382.5, "3/31/2024 12:00:00 PM"},
        {45382 + 13.0 / 24 + 5.0 / 1440 + 9.0 / 86400, "3/31/2024 1:05:09 PM"},
        {45382.99999999, "4/1/2024"},  // rounds to the second, into the next day
        {0, "12:00:00 AM"},            // day zero alone is a time
        {0.75, "6:00:00 PM"},
        {1, "12/31/1899"},
        {60, "2/28/1900"},  // no 29th of February 1900 in the run-time's calendar
        {61, "3/1/1900"},
        {-1.25, "12/29/1899 6:00:00 AM"},  // below zero the fraction is still the time of that day
        {2958465, "12/31/9999"},
    };
    for (auto& k : cases) EXPECT_EQ(host::CStr(Variant::Date(k.serial)), k.text) << k.serial;
    EXPECT_EQ(host::CStr(Variant(45382.0)), "45382") << "a Double stays a number";
}

TEST(Dates, ComparisonsReadTheOtherSideAsADate) {
    const Variant march31 = Variant::Date(45382);
    EXPECT_TRUE(march31 == Variant::Date(45382));
    EXPECT_TRUE(march31 == Variant(45382.0));
    EXPECT_FALSE(march31 == Variant());
    EXPECT_TRUE(Variant::Date(0) == Variant());
    EXPECT_FALSE(march31 == Variant::Null());

    EXPECT_TRUE(march31 == Variant("3/31/2024"));
    EXPECT_TRUE(Variant(" 03/31/24 ") == march31);
    EXPECT_FALSE(march31 == Variant("45382")) << "a number written as text is no date";
    EXPECT_FALSE(march31 == Variant("3/31/2024 1:00 PM"));
    EXPECT_FALSE(march31 == Variant("2/30/2024"));
    EXPECT_TRUE(Variant::Date(45382.5) == Variant("3/31/2024 12:00 pm"));
    EXPECT_TRUE(Variant::Date(45382.5) == Variant("3/31/2024 12:00:00"));
    EXPECT_TRUE(Variant::Date(0) == Variant(host::CStr(Variant::Date(0))));
    EXPECT_FALSE(Variant::Date(0.75) == Variant("18:00 PM"));

    // Numbers and numeric text compare as before.
    EXPECT_TRUE(Variant(2.5) == Variant("2.5"));
    EXPECT_FALSE(Variant(2.5) == Variant("two"));
}

TEST(Val, RadixPrefixesAreTypedAsTheRunTimesLiterals) {
    struct Case {
        const char* text;
        double value;
    } cases[] = {
        {"&O17", 15},
        {"&O18", 1},  // 8 is no octal digit: the reading stops there
        {"&O177777", -1},
        {"&O200000", 65536},
        {"&H1F", 31},
        {" & H 1 F", 31},  // blanks go first
        {"&HFFFF", -1},
        {"&H8000", -32768},
        {"&HFFFF&", 65535},  // a Long by its suffix
        {"&H10000", 65536},
        {"&HFFFFFFFF", -1},
        {"&H80000000", -2147483648.0},
        {"&H100000000", 4294967296.0},
        {"&H", 0},
        {"&H-1", 0},
        {"&H0x1F", 0},
        {"&X1", 0},
        {"12abc", 12},
        {" 2 45 7", 2457},
    };
    for (auto& k : cases) EXPECT_EQ(host::Val(k.text), k.value) << k.text;
}
