// Number formats against the oracle tables of ../shared/corpus/numfmt, and behaviours the
// tables leave out.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "test_support.h"
#include "xlsx/numfmt.h"

namespace {

using xlsx::NumberFormat;
using xlsx::NumberFormatError;

// ---------------------------------------------------------------------------------------------
// The oracle tables: TAB-separated, no quoting, header line first.

using Row = std::vector<std::string>;

std::vector<Row> ReadTsv(const std::filesystem::path& path) {
    std::vector<Row> rows;
    std::ifstream in(path, std::ios::binary);
    // With the shared corpus there, a missing table is a failure, never zero rows passing.
    if (!in) ADD_FAILURE() << path << " can't be read";
    std::string line;
    std::getline(in, line);  // the header
    while (std::getline(in, line)) {
        Row row;
        std::stringstream fields(line);
        for (std::string f; std::getline(fields, f, '\t');) row.push_back(f);
        if (line.ends_with('\t')) row.push_back("");
        rows.push_back(std::move(row));
    }
    return rows;
}

std::filesystem::path CorpusDir() {
    const auto shared = testsupport::SharedDir();
    return shared.empty() ? std::filesystem::path{} : shared / "corpus/numfmt";
}

// Where this engine knowingly differs from a table row, with the reason.
struct Departure {
    const char* format;
    const char* value;  // nullptr: every value
    const char* reason;
};

const Departure kSsfDepartures[] = {
    {"B2yyyymmdd", nullptr, "Hijri calendar (B2) not supported; the Gregorian date is shown"},
    {"b2yyyy", nullptr, "Hijri calendar (b2) not supported"},
    {"b2eeee", nullptr, "Hijri calendar (b2) not supported"},
    {"b2bbbb", nullptr, "Hijri calendar (b2) not supported"},
    {"[Blue]G3neral", nullptr, "refused as numfmt's reviewed cases do (unquoted 'n')"},
};

const Departure kInvalidDepartures[] = {
    {"B2yyyy-mm-dd", nullptr, "refused in the source only for serial 60 under the Hijri calendar"},
    {"hhh:mm AM/PM", nullptr, "SSF-only refusal; numfmt's reviewed cases format it"},
    {"hhh:mmm:sss", nullptr, "SSF-only refusal; numfmt's reviewed cases format it"},
    {"hh:mm:sss", nullptr, "SSF-only refusal; numfmt's reviewed cases format it"},
    {"hh:mmm:sss", nullptr, "SSF-only refusal of the same shape numfmt formats (hhh:mmm:sss)"},
    {"[hhh]", nullptr, "SSF-only refusal; numfmt's reviewed cases format it"},
    {"\u2603", nullptr, "SSF-only refusal; numfmt's reviewed cases format it"},
    {"##,##", nullptr, "SSF lists it as bad yet gives its texts; numfmt formats it"},
};

template <size_t N>
const Departure* FindDeparture(const Departure (&list)[N], const std::string& format, const std::string& value) {
    for (const Departure& d : list)
        if (format == d.format && (d.value == nullptr || value == d.value)) return &d;
    return nullptr;
}

// Formats one row's value as the table says it is held in the cell.
class Oracle {
public:
    std::string Display(const std::string& code, const std::string& value, const std::string& kind) {
        auto it = formats_.find(code);
        if (it == formats_.end()) {
            std::unique_ptr<NumberFormat> f;
            std::string error;
            try {
                f = std::make_unique<NumberFormat>(code);
            } catch (const NumberFormatError& e) {
                error = e.what();
            }
            it = formats_.emplace(code, Entry{std::move(f), error}).first;
        }
        const Entry& e = it->second;
        if (!e.format) return "<refused: " + e.error + ">";
        // A blank cell, and an empty text (which the tables hold for a blank), show nothing.
        if (kind == "empty" || (kind == "text" && value.empty())) return "";
        if (kind == "text") return e.format->FormatText(value);
        if (kind == "bool") return e.format->FormatBool(value == "TRUE");
        return e.format->Format(std::strtod(value.c_str(), nullptr));
    }

private:
    struct Entry { std::unique_ptr<NumberFormat> format; std::string error; };
    std::map<std::string, Entry> formats_;
};

struct Tally {
    int checked = 0, agreed = 0, departed = 0;
    std::vector<std::string> failures;

    void Fail(std::string line) { failures.push_back(std::move(line)); }
    // Prints the figures and fails with the first unexpected rows.
    void Report(const std::string& name) const {
        std::ostringstream s;
        s << name << ": " << agreed << " of " << checked << " rows agree";
        if (checked > 0) s << " (" << (100.0 * agreed / checked) << "%)";
        s << ", " << departed << " listed departures";
        std::cout << s.str() << "\n";
        EXPECT_GT(checked, 0) << name << ": no row checked";
        for (size_t i = 0; i < failures.size() && i < 30; ++i) s << "\n  " << failures[i];
        EXPECT_TRUE(failures.empty()) << s.str() << "\n" << failures.size() << " unexpected failures";
    }
};

std::string Show(const std::string& s) { return "[" + s + "]"; }

// ---------------------------------------------------------------------------------------------
// The tables.

TEST(NumberFormatOracle, NumfmtCasesAgree) {
    const auto dir = CorpusDir();
    if (dir.empty()) GTEST_SKIP() << "../shared is not beside the source tree";
    Oracle oracle;
    Tally tally;
    for (const Row& r : ReadTsv(dir / "numfmt-cases.tsv")) {
        ASSERT_GE(r.size(), 5u);
        ++tally.checked;
        const std::string got = oracle.Display(r[0], r[1], r[3]);
        if (got == r[2]) ++tally.agreed;
        else tally.Fail(Show(r[0]) + " " + r[3] + " " + r[1] + ": want " + Show(r[2]) + " got " + Show(got) + "  (" + r[4] + ")");
    }
    tally.Report("numfmt-cases.tsv");
}

TEST(NumberFormatOracle, SsfCasesAgreeExceptDisputed) {
    const auto dir = CorpusDir();
    if (dir.empty()) GTEST_SKIP() << "../shared is not beside the source tree";
    Oracle oracle;
    Tally tally;
    for (const Row& r : ReadTsv(dir / "ssf-cases.tsv")) {
        ASSERT_GE(r.size(), 6u);
        if (r[5] != "no") continue;  // numfmt disagrees, or SSF's blank for an unshowable date
        ++tally.checked;
        const std::string got = oracle.Display(r[0], r[1], r[3]);
        if (got == r[2]) ++tally.agreed;
        else if (FindDeparture(kSsfDepartures, r[0], r[1])) ++tally.departed;
        else tally.Fail(Show(r[0]) + " " + r[3] + " " + r[1] + ": want " + Show(r[2]) + " got " + Show(got) + "  (" + r[4] + ")");
    }
    tally.Report("ssf-cases.tsv (not disputed)");
}

TEST(NumberFormatOracle, InvalidFormatsAreRefused) {
    const auto dir = CorpusDir();
    if (dir.empty()) GTEST_SKIP() << "../shared is not beside the source tree";
    Tally tally;
    for (const Row& r : ReadTsv(dir / "invalid-formats.tsv")) {
        ++tally.checked;
        const bool refused = !xlsx::IsValidNumberFormat(r[0]);
        EXPECT_EQ(refused, [&] {
            try {
                NumberFormat f(r[0]);
                return false;
            } catch (const NumberFormatError&) {
                return true;
            }
        }()) << r[0];
        if (refused) ++tally.agreed;
        else if (FindDeparture(kInvalidDepartures, r[0], "")) ++tally.departed;
        else tally.Fail(Show(r[0]) + " is accepted  (" + r[1] + ")");
    }
    tally.Report("invalid-formats.tsv");
}

TEST(NumberFormatOracle, ValidFormatsAreAccepted) {
    const auto dir = CorpusDir();
    if (dir.empty()) GTEST_SKIP() << "../shared is not beside the source tree";
    Tally tally;
    for (const Row& r : ReadTsv(dir / "valid-formats.tsv")) {
        ++tally.checked;
        try {
            NumberFormat f(r[0]);
            f.Format(1234.5678);
            f.Format(-0.25);
            f.FormatText("text");
            ++tally.agreed;
        } catch (const NumberFormatError& e) {
            tally.Fail(Show(r[0]) + " refused: " + e.what());
        }
    }
    tally.Report("valid-formats.tsv");
}

// ---------------------------------------------------------------------------------------------
// Behaviours the tables leave out.

std::string F(std::string_view code, double v) { return xlsx::FormatNumber(code, v); }

TEST(NumberFormat, RoundsTheFifteenDigitDecimalHalfAwayFromZero) {
    EXPECT_EQ(F("0.00", 2.675), "2.68");    // binary 2.67499999...
    EXPECT_EQ(F("0.00", -2.675), "-2.68");
    EXPECT_EQ(F("0.0", 0.15), "0.2");
    EXPECT_EQ(F("0", 0.5), "1");
    EXPECT_EQ(F("0", -0.5), "-1");
    EXPECT_EQ(F("0.000", 1.0005), "1.001");
    EXPECT_EQ(F("General", 0.1 + 0.2), "0.3");
    EXPECT_EQ(F("0.00%", 0.000125), "0.01%");
    EXPECT_EQ(F("#,##0", 999999.5), "1,000,000");
}

TEST(NumberFormat, SectionsConditionsAndColours) {
    const NumberFormat f("[Green]#,##0.00;[Red]-#,##0.00;[Color10]\"zero\";[Blue]\"<\"@\">\"");
    EXPECT_EQ(f.Format(1234.5), "1,234.50");
    EXPECT_EQ(f.Format(-1234.5), "-1,234.50");
    EXPECT_EQ(f.Format(0), "zero");
    EXPECT_EQ(f.FormatText("abc"), "<abc>");
    EXPECT_EQ(f.FormatBool(true), "<TRUE>");
    EXPECT_EQ(F("[>100]\"big\";[<-100]\"small\";0", 150), "big");
    EXPECT_EQ(F("[>100]\"big\";[<-100]\"small\";0", -150), "small");
    EXPECT_EQ(F("[>100]\"big\";[<-100]\"small\";0", -5), "-5");
    EXPECT_EQ(F("[Red][<=100];[Blue][>100]", 50), "50");  // colour and condition only: General
    EXPECT_EQ(F("[Red][<=100];[Blue][>100]", 500), "500");
    EXPECT_EQ(F("", -1.5), "-1.5");           // an empty code is General
    EXPECT_EQ(F("0.0;-0.0;@", 0), "0.0");     // a last section with @ is for texts
    EXPECT_EQ(NumberFormat("0.0;-0.0;@").FormatText("t"), "t");
    EXPECT_EQ(F("0;;", -5), "");              // an empty section hides its numbers
    EXPECT_EQ(F(";;;", 5), "");
    EXPECT_EQ(NumberFormat(";;;").FormatText("x"), "");
    EXPECT_EQ(NumberFormat("0.00").FormatText("x"), "x");  // no text section: the text itself
    EXPECT_EQ(NumberFormat("0.00").FormatBool(false), "FALSE");
}

TEST(NumberFormat, LiteralsSkipsFillsAndCurrencies) {
    EXPECT_EQ(F("_(\"$\"* #,##0.00_);_(\"$\"* \\(#,##0.00\\);_(\"$\"* \"-\"??_);_(@_)", -1234.5), " $(1,234.50)");
    EXPECT_EQ(F("_(\"$\"* #,##0.00_);_(\"$\"* \\(#,##0.00\\);_(\"$\"* \"-\"??_);_(@_)", 0), " $-   ");
    EXPECT_EQ(F("[$\u20AC-407] #,##0.00", 5), "\u20AC 5.00");
    EXPECT_EQ(F("[$-409]#,##0", 5), "5");
    EXPECT_EQ(F("\\+0;\\-0", 3), "+3");
    EXPECT_EQ(F("(000) 000-0000", 5551234567), "(555) 123-4567");
    EXPECT_EQ(F("0 \"km\"", 12), "12 km");
    EXPECT_EQ(F("0_\u20AC", 12), "12 ");  // a skip is one space whatever its character
}

TEST(NumberFormat, ScalingPercentAndScientific) {
    EXPECT_EQ(F("#,##0,\"K\"", 123456), "123K");
    EXPECT_EQ(F("0.0,,\"M\"", 123456789), "123.5M");
    EXPECT_EQ(F("0%", 0.256), "26%");
    EXPECT_EQ(F("0.00E+00", 0.000123), "1.23E-04");
    EXPECT_EQ(F("0.00E-00", 12300), "1.23E04");
    EXPECT_EQ(F("0.00E+00", -1e300), "-1.00E+300");
}

TEST(NumberFormat, FractionsPickTheClosestWithinTheDigits) {
    EXPECT_EQ(F("# ?/?", 3.14159), "3 1/7");
    EXPECT_EQ(F("# ?\?/??", 3.14159), "3  1/7 ");  // convergents only: 1/7, then 16/113
    EXPECT_EQ(F("# ??\?/???", 3.14159), "3  16/113");
    EXPECT_EQ(F("?/?", 0.5), "1/2");
    EXPECT_EQ(F("# ?/4", 2.9), "3    ");       // rounds up into the whole number
    EXPECT_EQ(F("# ?/8", -0.375), "- 3/8");
}

TEST(NumberFormat, DatesAndTimes) {
    EXPECT_EQ(F("yyyy-mm-dd hh:mm:ss", 45000.5), "2023-03-15 12:00:00");
    EXPECT_EQ(F("dddd, mmmm d, yyyy", 1), "Sunday, January 1, 1900");
    EXPECT_EQ(F("ddd", 61), "Thu");
    EXPECT_EQ(F("h:mm AM/PM", 0.99999), "11:59 PM");   // 23:59:59.1: seconds are rounded, minutes not
    EXPECT_EQ(F("h:mm AM/PM", 0.999999), "12:00 AM");  // rounds into the next day
    EXPECT_EQ(F("[h]:mm", 2.5), "60:00");
    EXPECT_EQ(F("[mm]:ss", 0.5), "720:00");
    EXPECT_EQ(F("mm:ss.00", 1.5 / 86400), "00:01.50");
    EXPECT_EQ(F("d-mmm-yy", -1), "######");
    EXPECT_EQ(F("d-mmm-yy", 2958466), "######");
    EXPECT_EQ(F("d-mmm-yy", 2958465), "31-Dec-99");
    EXPECT_EQ(F("[h]:mm;\\-[h]:mm", -0.25), "-6:00");  // a negative section shows the magnitude
    EXPECT_TRUE(NumberFormat("m/d/yyyy").IsDate());
    EXPECT_TRUE(NumberFormat("[h]:mm").IsDate());
    EXPECT_FALSE(NumberFormat("0.00;@").IsDate());
    EXPECT_FALSE(NumberFormat("\"d\"0").IsDate());
}

TEST(NumberFormat, GeneralFitsElevenCharacters) {
    EXPECT_EQ(F("General", 123456789012.0), "1.23457E+11");
    EXPECT_EQ(F("General", -12345678901.0), "-12345678901");
    EXPECT_EQ(F("General", 1e100), "1E+100");
    EXPECT_EQ(F("General", 1.23456789e-100), "1.2346E-100");
    EXPECT_EQ(F("General", 99999999999.5), "1E+11");
    EXPECT_EQ(F("General", 1.0 / 3), "0.333333333");
    EXPECT_EQ(F("@", -2.5), "-2.5");
    EXPECT_EQ(F("\"Total: \"General", 7), "Total: 7");
}

TEST(NumberFormat, RefusalsAndCodes) {
    EXPECT_THROW(NumberFormat("0.0\""), NumberFormatError);
    EXPECT_THROW(NumberFormat("[Red"), NumberFormatError);
    EXPECT_THROW(NumberFormat("yyyy 0.0"), NumberFormatError);
    EXPECT_THROW(NumberFormat("0;0;0;0;0"), NumberFormatError);
    EXPECT_THROW(xlsx::FormatNumber("0E0", 1), NumberFormatError);
    EXPECT_FALSE(xlsx::IsValidNumberFormat("General 0"));
    EXPECT_TRUE(xlsx::IsValidNumberFormat("General;-General"));
    const NumberFormat f("0.00;(0.00)");
    EXPECT_EQ(f.Code(), "0.00;(0.00)");
    NumberFormat moved = NumberFormat("0%");
    moved = NumberFormat("0.0");
    EXPECT_EQ(moved.Format(1), "1.0");
}

TEST(NumberFormat, BuiltinCodesOfTheEnglishApplication) {
    EXPECT_EQ(xlsx::BuiltinNumberFormat(0), "General");
    EXPECT_EQ(xlsx::BuiltinNumberFormat(14), "m/d/yyyy");
    EXPECT_EQ(xlsx::BuiltinNumberFormat(22), "m/d/yyyy h:mm");
    EXPECT_EQ(xlsx::BuiltinNumberFormat(49), "@");
    EXPECT_EQ(xlsx::BuiltinNumberFormat(23), "");
    EXPECT_EQ(xlsx::BuiltinNumberFormat(200), "");
    for (int id = 0; id < 200; ++id) {
        auto code = xlsx::BuiltinNumberFormat(id);
        EXPECT_TRUE(code.empty() || xlsx::IsValidNumberFormat(code)) << id;
    }
    EXPECT_EQ(F(xlsx::BuiltinNumberFormat(14), 45000), "3/15/2023");
    EXPECT_EQ(F(xlsx::BuiltinNumberFormat(37), -1234), "(1,234)");
    EXPECT_EQ(F(xlsx::BuiltinNumberFormat(47), 0.5 / 1440), "0030.0");
}

}  // namespace
