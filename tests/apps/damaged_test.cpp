// Damaged workbooks are refused in one line that names the part, before anything is changed; a
// workbook whose parts bind their namespaces to other prefixes is listed, added to and refreshed
// as any other.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "../xlsx/reprefix.h"
#include "cli.h"
#include "host/chart.h"
#include "host/drawing.h"
#include "host/workbook.h"
#include "xlsx/engine.h"
#include "xlsx/package.h"

using namespace clitest;

namespace {

// The example with two charts on a sheet "Charts": a drawing, two chart parts, shared strings.
ts::fs::path ChartBook(const std::string& test) {
    auto book = SalesBook(test);
    for (auto [definition, more] : {std::pair{"column-revenue-by-region.xml", " --new-sheet"}, {"pie-share-by-segment.xml", ""}}) {
        auto r = ts::Run(Plotsmith("add " + Q(book) + " " + Q(Example(definition)) + " --sheet Charts" + more));
        EXPECT_EQ(r.status, 0) << r.output;
    }
    return book;
}

// A copy of the book in a folder of its own, its package changed.
ts::fs::path Changed(const ts::fs::path& book, const std::string& test, const std::function<void(xlsx::Package&)>& change) {
    auto copy = ts::ScratchDir(test) / "book.xlsx";
    ts::fs::copy_file(book, copy);
    auto pkg = xlsx::Package::Open(copy.string());
    change(*pkg);
    pkg->Save(copy.string());
    return copy;
}

// list and refresh both exit with 2 and one line naming the file and the part, and leave the file
// as it was.
void ExpectRefused(const ts::fs::path& book, const std::string& part, const std::string& what) {
    std::string before = Slurp(book);
    for (const char* op : {"list", "refresh"}) {
        auto r = ts::Run(Plotsmith(std::string(op) + " " + Q(book)));
        EXPECT_EQ(r.status, 2) << op << ": " << r.output;
        EXPECT_TRUE(Has(r.output, "is not a valid workbook package: part '" + part + "' " + what)) << op << ": " << r.output;
        EXPECT_EQ(std::count(r.output.begin(), r.output.end(), '\n'), 1) << r.output;
        EXPECT_TRUE(Slurp(book) == before) << op << " changed " << book;
    }
}

// The number of series of each chart of a sheet, in drawing order.
std::vector<long> SeriesCounts(const ts::fs::path& book, const std::string& sheet) {
    auto app = xlsx::NewApplication();
    auto objects = app->Open(book.string())->Worksheets()->Item(sheet)->ChartObjects();
    std::vector<long> counts;
    for (long i = 1; i <= objects->Count(); ++i) counts.push_back(objects->Item(i)->Chart()->SeriesCollection()->Count());
    return counts;
}

}  // namespace

TEST(DamagedParts, ARefusedWorkbookIsNamedWithItsPartAndStaysAsItWas) {
    auto book = ChartBook("damaged-base");
    // Before, a damaged drawing or chart lost definitions, and damaged strings listed no charts.
    for (std::string part : {"xl/drawings/drawing1.xml", "xl/charts/chart1.xml", "xl/sharedStrings.xml", "xl/styles.xml",
                             "xl/worksheets/sheet1.xml", "xl/workbook.xml"}) {
        auto damaged = Changed(book, "damaged-" + part.substr(part.rfind('/') + 1), [&](xlsx::Package& pkg) {
            std::string text = pkg.Bytes(part);
            pkg.Put(part, "\x01\x02 garbage" + text.substr(0, text.size() / 2));
        });
        ExpectRefused(damaged, part, "is not well-formed XML (");
    }
    // Positions were walked column by column up to this one: refresh spun without end.
    auto far = Changed(book, "damaged-far", [](xlsx::Package& pkg) {
        std::string text = pkg.Bytes("xl/drawings/drawing1.xml");
        pkg.Put("xl/drawings/drawing1.xml", text.replace(text.find("<xdr:col>8<"), 10, "<xdr:col>99999999999"));
    });
    ExpectRefused(far, "xl/drawings/drawing1.xml", "anchors a shape at column index '99999999999', outside 0 to 16383");
    auto orphan = Changed(book, "damaged-orphan", [](xlsx::Package& pkg) { pkg.Remove("xl/charts/chart2.xml"); });
    ExpectRefused(orphan, "xl/drawings/_rels/drawing1.xml.rels", "points at 'xl/charts/chart2.xml', which the package doesn't have");
}

TEST(Namespaces, AWorkbookWithOtherPrefixesListsAddsAndRefreshesAsTheOriginal) {
    auto plain = ChartBook("prefixes-plain");
    auto prefixed = Changed(plain, "prefixes-other", [](xlsx::Package&) {});
    reprefix::Workbook(prefixed.string());
    ASSERT_TRUE(Has(xlsx::Package::Open(prefixed.string())->Bytes("xl/workbook.xml"), "<x:workbook "));

    auto list = [](const ts::fs::path& book) {
        auto r = ts::Run(Plotsmith("list " + Q(book)));
        EXPECT_EQ(r.status, 0) << r.output;
        return r.output;
    };
    EXPECT_EQ(list(prefixed), list(plain));
    for (auto& book : {plain, prefixed}) {
        auto add = ts::Run(Plotsmith("add " + Q(book) + " " + Q(Example("bar-units-by-product.xml")) + " --sheet More --new-sheet"));
        EXPECT_EQ(add.status, 0) << add.output;
        auto refresh = ts::Run(Plotsmith("refresh " + Q(book)));
        EXPECT_EQ(refresh.status, 0) << refresh.output;
    }
    EXPECT_EQ(list(prefixed), list(plain));
    EXPECT_EQ(SeriesCounts(prefixed, "Charts"), SeriesCounts(plain, "Charts"));
    EXPECT_EQ(SeriesCounts(prefixed, "More"), SeriesCounts(plain, "More"));
    EXPECT_FALSE(SeriesCounts(prefixed, "Charts").empty());

    // Edited parts are written with the engine's prefixes, the others as the writer had them.
    auto pkg = xlsx::Package::Open(prefixed.string());
    EXPECT_TRUE(Has(pkg->Bytes("xl/workbook.xml"), "<workbook "));
    EXPECT_TRUE(Has(pkg->Bytes("xl/worksheets/sheet2.xml"), "<x:worksheet "));
    if (ts::HaveValidator()) {
        auto v = ts::ValidateXlsx({prefixed});
        EXPECT_EQ(v.status, 0) << v.output;
    }
}
