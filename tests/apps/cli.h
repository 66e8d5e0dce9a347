#pragma once
// Running the plotsmith program on copies of the example workbook.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "test_support.h"

namespace clitest {

namespace ts = testsupport;

inline std::string Q(const ts::fs::path& p) { return ts::Quote(p.string()); }
inline std::string Plotsmith(const std::string& args) { return Q(ts::fs::path(PLOTSMITH_BINARY_DIR) / "plotsmith") + " " + args; }
inline ts::fs::path Example(const std::string& name) { return ts::fs::path(PLOTSMITH_SOURCE_DIR) / "examples" / name; }
inline std::string Slurp(const ts::fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
inline bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
// A copy of sales.xlsx in a scratch folder of its own: Quarterly sales (labels Region, Product,
// Quarter; numbers Revenue, Units), Sales targets, Data1.
inline ts::fs::path SalesBook(const std::string& test) {
    auto dir = ts::ScratchDir(test);
    ts::fs::copy_file(Example("sales.xlsx"), dir / "book.xlsx");
    return dir / "book.xlsx";
}

// A copy of sales.xlsx with the column chart (categories Region, colours Quarter) and the bar
// chart (categories Product, colours Region, values Units) added on the Sales sheet.
inline ts::fs::path BookWithCharts(const std::string& test) {
    auto book = SalesBook(test);
    for (auto* xml : {"column-revenue-by-region.xml", "bar-units-by-product.xml"}) {
        auto r = ts::Run(Plotsmith("add " + Q(book) + " " + Q(Example(xml)) + " --sheet Sales"));
        EXPECT_EQ(r.status, 0) << r.output;
    }
    return book;
}

}  // namespace clitest
