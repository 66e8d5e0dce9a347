// The engine's displayed text against LibreOffice's, for a broad table of formats and values:
// the workbook is written by the engine, LibreOffice shows it as CSV "as shown".
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>

#include "test_support.h"
#include "xlsx/engine.h"

namespace ts = testsupport;
using namespace host;

namespace {

// How LibreOffice may show a code otherwise than the application (the oracle of the number
// format tests): dates and times run on another calendar below serial 61 and show negative serials;
// seconds are truncated where the application rounds them.
enum Kind { kNumber, kDate, kTime };

struct Code {
    const char* text;
    Kind kind;
    int secondDecimals = -1;  // decimals of the seconds shown; -1 when no seconds are shown
};

const Code kFormats[] = {
    {"General", kNumber}, {"0", kNumber}, {"0.00", kNumber}, {"#,##0", kNumber}, {"#,##0.00", kNumber},
    {"0%", kNumber}, {"0.00%", kNumber}, {"0.00E+00", kNumber}, {"##0.0E+0", kNumber}, {"# ?/?", kNumber},
    {"# ?""?/??", kNumber}, {"#,##0 ;(#,##0)", kNumber}, {"#,##0.00;(#,##0.00)", kNumber}, {"$#,##0.00", kNumber},
    {"\"$\"#,##0;[Red]-\"$\"#,##0", kNumber}, {"0.0,,\"M\"", kNumber}, {"#,##0,", kNumber},
    {"000-00-0000", kNumber}, {"#;(#);", kNumber}, {"#,###;(#,###);", kNumber}, {"$#,###;($#,###);", kNumber},
    {"[>=1000]#,##0,\"K\";0", kNumber}, {"0.0;-0.0;\"zero\"", kNumber}, {"@", kNumber},
    {"\"Total: \"0.0", kNumber}, {"0 \"units\"", kNumber}, {"#.##", kNumber}, {"0.###", kNumber},
    {"?.??", kNumber}, {"# ?/8", kNumber}, {"0/4", kNumber}, {"0.0%;-0.0%;-", kNumber},
    {"_(* #,##0_);_(* (#,##0);_(* \"-\"_);_(@_)", kNumber}, {"#,##0.000", kNumber},
    {"[Blue]0.00;[Red]-0.00", kNumber}, {"0E+0", kNumber}, {"00.00", kNumber}, {"\\$0.00", kNumber},
    {"0.00\\%", kNumber}, {"m/d/yyyy", kDate}, {"d-mmm-yy", kDate}, {"d-mmm", kDate}, {"mmm-yy", kDate},
    {"mmmm d, yyyy", kDate}, {"dddd", kDate}, {"yyyy-mm-dd hh:mm:ss", kTime, 0}, {"h:mm AM/PM", kTime},
    {"h:mm:ss AM/PM", kTime, 0}, {"h:mm", kTime}, {"[h]:mm:ss", kTime, 0}, {"mm:ss.0", kTime, 1},
    {"[mm]:ss", kTime, 0},
};

// Why LibreOffice shows a cell otherwise, where the application's behaviour is known; "" if no reason.
std::string Departure(const Code& code, double v, const std::string& ours, const std::string& theirs) {
    std::string f = code.text;
    if (code.kind != kNumber && v < 61)
        return "serials below 61: LibreOffice counts from 1899-12-30 and shows negative serials; the application "
               "has 1900-01-00 and 1900-02-29 and shows ######";
    if (code.kind == kTime && code.secondDecimals >= 0) {
        double units = v * 86400 * std::pow(10, code.secondDecimals);
        if (units - std::floor(units) >= 0.5) return "LibreOffice truncates seconds; the application rounds them";
    }
    if (code.kind == kTime && theirs == "#FMT") return "LibreOffice can't show elapsed times this long";
    if ((f == "#.##" || f == "0.###") && ours == theirs + ".")
        return "the application keeps the decimal point when no decimals are shown";
    if (f.rfind("[>=", 0) == 0 && v < 0 && ours == "-" + theirs)
        return "the application keeps the minus in the section after a failed >= condition";
    if (f == "# ?/8" && ours == theirs + " ") return "the application pads a whole number to the fraction's full width";
    return {};
}

const double kValues[] = {0, 1, -1, 0.5, 12345.6789, -12345.6789, 1234567.891, 0.000123, 45000.75, 2.675, 100};

// The first field of each row, as Python's csv module reads it.
std::vector<std::string> FirstColumn(const ts::fs::path& p) {
    auto r = ts::Python("import csv\nfor row in csv.reader(open(" + ts::Quote(p.string()) +
                        ", newline='', encoding='utf-8')): print(row[0] if row else '')\n");
    EXPECT_EQ(r.status, 0) << r.output;
    std::vector<std::string> out;
    std::stringstream s(r.output);
    for (std::string line; std::getline(s, line);) out.push_back(line);
    return out;
}

TEST(NumberFormatLibreOffice, DisplayedTextsAgree) {
    if (!ts::HaveLibreOffice()) GTEST_SKIP() << "LibreOffice missing";
    auto dir = ts::ScratchDir("numfmt-lo");
    auto app = xlsx::NewApplication();
    auto wb = app->NewWorkbook();
    auto ws = wb->Worksheets()->Item(1L);
    long row = 1;
    std::vector<std::string> ours;
    for (const Code& f : kFormats)
        for (double v : kValues) {
            ws->Cells(row, 1)->SetValue(v);
            ws->Cells(row, 1)->SetNumberFormat(f.text);
            ours.push_back(ws->Cells(row, 1)->Text());
            ++row;
        }
    auto path = dir / "formats.xlsx";
    wb->SaveAs(path.string());
    auto csv = ts::LibreOfficeConvertAll({path}, "csv", dir);
    ASSERT_FALSE(csv[0].empty());
    auto rows = FirstColumn(csv[0]);
    ASSERT_EQ(rows.size(), ours.size());
    size_t agree = 0;
    std::map<std::string, size_t> departures;
    std::string report;
    for (size_t i = 0; i < ours.size(); ++i) {
        const std::string& theirs = rows[i];
        const Code& code = kFormats[i / std::size(kValues)];
        double v = kValues[i % std::size(kValues)];
        if (theirs == ours[i]) {
            ++agree;
        } else if (auto why = Departure(code, v, ours[i], theirs); !why.empty()) {
            ++departures[why];
        } else {
            report += std::string(code.text) + " | " + std::to_string(v) + " | ours '" + ours[i] + "' | LibreOffice '" +
                      theirs + "'\n";
        }
    }
    std::string summary = std::to_string(agree) + " of " + std::to_string(ours.size()) + " agree";
    for (auto& [why, n] : departures) summary += "; " + std::to_string(n) + ": " + why;
    RecordProperty("agreement", summary);
    std::printf("%s\n", summary.c_str());
    EXPECT_TRUE(report.empty()) << report;
    EXPECT_GT(agree, ours.size() * 8 / 10);
}

}  // namespace
