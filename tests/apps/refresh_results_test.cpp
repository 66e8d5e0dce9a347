// What a refresh writes must not change unnoticed, whatever the engine underneath does: the blocks
// on VEX_ChartData and the series of every chart (references and cached values), for the example's
// four charts and for the benchmark's twenty over a small generated table, against the files in
// tests/data/refresh-results. A deliberate change of output rewrites them:
//   PLOTSMITH_UPDATE_EXPECTED=1 build/tests/test_apps --gtest_filter='RefreshResults.*'
// and the diff of those files is then reviewed with the change.
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <vector>

#include "../../bench/sales_table.h"
#include "cli.h"
#include "host/workbook.h"
#include "xlsx/engine.h"
#include "xlsx/package.h"

using namespace clitest;

namespace {

std::string Text(const host::Variant& v) {
    using T = host::Variant::Type;
    char buf[32];
    switch (v.type()) {
        case T::Empty: return "";
        case T::Null: return "(null)";
        case T::Boolean: return v.RawBool() ? "TRUE" : "FALSE";
        case T::Long: return std::to_string(v.RawLong());
        case T::String: return v.RawString();
        case T::Error: return "(error " + std::to_string(v.RawLong()) + ")";
        default: return std::string(buf, std::to_chars(buf, buf + sizeof buf, v.RawDouble()).ptr);
    }
}

std::string LocalName(const pugi::xml_node& n) {
    std::string name = n.name();
    return name.substr(name.find(':') + 1);
}

pugi::xml_node Child(const pugi::xml_node& n, const std::string& local) {
    for (auto c : n.children())
        if (LocalName(c) == local) return c;
    return {};
}

std::string Points(const pugi::xml_node& data) {
    std::string out, sep = " ";
    for (auto pt : data.children()) {
        if (LocalName(pt) != "pt") continue;
        out += sep + pt.attribute("idx").value() + ":" + Child(pt, "v").text().get();
        sep = " | ";
    }
    return out;
}

// A part of a series as it refers and what it caches ("val Data!$C$2:$C$3 = 0:1 | 1:2"), or its
// literal ("tx 'North'", "val literal = 0:1").
std::string Reference(const pugi::xml_node& data) {
    std::string out;
    for (auto ref : data.children()) {
        std::string name = LocalName(ref);
        if (name == "v") {
            out += " '" + std::string(ref.text().get()) + "'";
        } else if (name.ends_with("Lit")) {
            out += " literal =" + Points(ref);
        } else if (auto f = Child(ref, "f")) {
            out += " " + std::string(f.text().get()) + " =";
            for (auto cache : ref.children())
                if (LocalName(cache).ends_with("Cache")) out += Points(cache);
        }
    }
    return out;
}

// Every row of the data sheet, then each chart part's plots and series, as text to compare.
std::string Results(const ts::fs::path& book) {
    std::string out = "VEX_ChartData\n";
    {
        auto wb = xlsx::NewApplication()->Open(book.string());
        auto used = wb->Worksheets()->Item("VEX_ChartData")->UsedRange();
        for (long r = 1; r <= used->Rows()->Count(); ++r) {
            std::vector<std::string> cells;
            for (long c = 1; c <= used->Columns()->Count(); ++c) cells.push_back(Text(used->Cells(r, c)->Value()));
            while (!cells.empty() && cells.back().empty()) cells.pop_back();
            std::string line = std::to_string(used->Row() + r - 1) + ":";
            for (size_t c = 0; c < cells.size(); ++c) line += (c ? " | " : " ") + cells[c];
            out += line + "\n";
        }
    }
    auto pkg = xlsx::Package::Open(book.string());
    auto parts = pkg->Parts();
    std::erase_if(parts, [](auto& p) { return !p.starts_with("xl/charts/chart") || !p.ends_with(".xml"); });
    std::sort(parts.begin(), parts.end(), [](auto& a, auto& b) { return std::pair(a.size(), a) < std::pair(b.size(), b); });
    for (auto& part : parts) {
        out += part + "\n";
        auto plotArea = Child(Child(pkg->Read(part).document_element(), "chart"), "plotArea");
        for (auto plot : plotArea.children()) {
            std::string name = LocalName(plot);
            if (!name.ends_with("Chart")) continue;
            out += "  " + name;
            for (auto* setting : {"barDir", "grouping"})
                if (auto s = Child(plot, setting)) out += " " + std::string(s.attribute("val").value());
            out += "\n";
            for (auto ser : plot.children()) {
                if (LocalName(ser) != "ser") continue;
                out += "    series\n";
                for (auto data : ser.children())
                    if (auto ref = Reference(data); !ref.empty()) out += "      " + LocalName(data) + ref + "\n";
            }
        }
    }
    return out;
}

// Compares with the expected file, or writes it when asked to.
void ExpectResults(const std::string& results, const std::string& name) {
    auto file = ts::fs::path(PLOTSMITH_SOURCE_DIR) / "tests/data/refresh-results" / name;
    // The charts were drawn: a data sheet with rows, and series with references.
    ASSERT_GT(std::count(results.begin(), results.end(), '\n'), 20) << results;
    ASSERT_NE(results.find("\n      val VEX_ChartData!"), std::string::npos) << results;
    if (const char* update = std::getenv("PLOTSMITH_UPDATE_EXPECTED"); update && *update) {
        ts::fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << results;
        std::printf("wrote %s\n", file.c_str());
        return;
    }
    ASSERT_TRUE(ts::fs::exists(file)) << file << " is missing; PLOTSMITH_UPDATE_EXPECTED=1 writes it";
    auto lines = [](const std::string& text) {
        std::vector<std::string> out;
        for (size_t at = 0, end; at < text.size(); at = end + 1) {
            end = std::min(text.find('\n', at), text.size());
            out.push_back(text.substr(at, end - at));
        }
        return out;
    };
    auto written = lines(results), expected = lines(Slurp(file));
    size_t i = 0;
    while (i < written.size() && i < expected.size() && written[i] == expected[i]) ++i;
    EXPECT_TRUE(i == written.size() && i == expected.size())
        << file << " differs from line " << i + 1 << " on:\n  expected: " << (i < expected.size() ? expected[i] : "(end)")
        << "\n  written:  " << (i < written.size() ? written[i] : "(end)");
}

void MustRun(const std::string& args) {
    auto r = ts::Run(Plotsmith(args));
    ASSERT_EQ(r.status, 0) << args << "\n" << r.output;
    EXPECT_FALSE(Has(r.output, "Chart '")) << args << "\n" << r.output;
}

TEST(RefreshResults, OfTheExampleStayAsTheyWere) {
    auto book = SalesBook("refresh-results-example");
    const std::string b = Q(book);
    // As scripts/run-example adds them.
    const std::pair<const char*, const char*> charts[] = {{"column-revenue-by-region.xml", "Column chart"},
                                                          {"bar-units-by-product.xml", "Bar chart"},
                                                          {"area-revenue-by-quarter.xml", "Area chart"},
                                                          {"pie-share-by-segment.xml", "Pie chart"}};
    for (auto& [definition, sheet] : charts)
        MustRun("add " + b + " " + Q(Example(definition)) + " --sheet " + ts::Quote(sheet) + " --new-sheet");
    MustRun("refresh " + b);
    ExpectResults(Results(book), "example.txt");
}

TEST(RefreshResults, OfTwentyChartsOverAGeneratedTableStayAsTheyWere) {
    auto book = ts::ScratchDir("refresh-results-generated") / "book.xlsx";
    {
        auto wb = xlsx::NewApplication()->NewWorkbook();
        salestable::Fill(*wb, *wb->Worksheets()->Item(1L), 300);
        wb->SaveAs(book.string());
    }
    auto charts = ts::fs::path(PLOTSMITH_SOURCE_DIR) / "bench/scale-charts.xml";
    MustRun("add " + Q(book) + " " + Q(charts) + " --sheet Charts --new-sheet");
    MustRun("refresh " + Q(book));
    ExpectResults(Results(book), "generated.txt");
}

}  // namespace
