// Round trips of the application-made corpus: every workbook loads, takes a very hidden sheet, and
// saves with untouched parts byte for byte and touched parts keeping what they had.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include <pugixml.hpp>

#include "host/constants.h"
#include "test_support.h"
#include "xlsx/engine.h"
#include "xlsx/package.h"

namespace ts = testsupport;
using namespace host;

namespace {

// Every element path with its attribute names, so that a touched part can be checked for loss.
std::multiset<std::string> Shape(const pugi::xml_document& doc) {
    std::multiset<std::string> out;
    struct Walker : pugi::xml_tree_walker {
        std::multiset<std::string>* out;
        std::vector<std::string> path;
        bool for_each(pugi::xml_node& n) override {
            if (n.type() != pugi::node_element) return true;
            path.resize(static_cast<size_t>(depth()));
            path.push_back(n.name());
            std::string key;
            for (auto& p : path) key += "/" + p;
            out->insert(key);
            for (auto a : n.attributes()) out->insert(key + " @" + a.name());
            return true;
        }
    } w;
    w.out = &out;
    const_cast<pugi::xml_document&>(doc).traverse(w);
    return out;
}

// Adds the component's data sheet to a corpus workbook as the component does, and saves it.
void AddDataSheet(const ts::fs::path& in, const ts::fs::path& out) {
    auto app = xlsx::NewApplication();
    auto wb = app->Open(in.string());
    auto active = wb->ActiveSheet();
    auto sheets = wb->Sheets();
    auto ws = sheets->Add(nullptr, sheets->Item(sheets->Count()));
    ws->SetName("VEX_ChartData");
    ws->SetVisible(xlSheetVeryHidden);
    active->Activate();
    ws->Cells(1, 1)->SetValue("VEX_Chart1");
    ws->Cells(1, 2)->SetValue("Category");
    ws->Cells(2, 2)->SetValue(42.5);
    ws->Cells(2, 3)->SetValue(true);
    wb->SaveAs(out.string());
}

ts::fs::path RoundTripDir() {
    static ts::fs::path dir = [] {
        auto d = ts::ScratchDir("corpus-roundtrip");
        for (auto& f : ts::CorpusWorkbooks()) AddDataSheet(f, d / f.filename());
        return d;
    }();
    return dir;
}

TEST(Corpus, RoundTripKeepsEveryPart) {
    auto files = ts::CorpusWorkbooks();
    if (files.empty()) GTEST_SKIP() << "../shared is not beside the source tree";
    auto dir = RoundTripDir();
    size_t identical = 0, touched = 0;
    for (auto& f : files) {
        SCOPED_TRACE(f.filename().string());
        auto before = xlsx::Package::Open(f.string());
        auto after = xlsx::Package::Open((dir / f.filename()).string());
        for (auto& part : before->Parts()) {
            ASSERT_TRUE(after->Has(part)) << part;
            if (before->Bytes(part) == after->Bytes(part)) {
                ++identical;
                continue;
            }
            ++touched;
            // Only the parts that a new sheet needs may change, and they lose nothing.
            static const std::set<std::string> mayChange = {"[Content_Types].xml", "xl/workbook.xml",
                                                            "xl/_rels/workbook.xml.rels", "xl/sharedStrings.xml"};
            EXPECT_TRUE(mayChange.count(part)) << part << " changed";
            auto was = Shape(before->Read(part)), now = Shape(after->Read(part));
            for (auto& k : was) EXPECT_GE(now.count(k), was.count(k)) << part << ": lost " << k;
        }
        // The new sheet reads back very hidden, with its values.
        auto app = xlsx::NewApplication();
        auto wb = app->Open((dir / f.filename()).string());
        auto ws = wb->Worksheets()->Item("VEX_ChartData");
        EXPECT_EQ(ws->Visible(), xlSheetVeryHidden);
        EXPECT_EQ(CStr(ws->Cells(1, 1)->Value()), "VEX_Chart1");
        EXPECT_EQ(CDbl(ws->Cells(2, 2)->Value()), 42.5);
    }
    EXPECT_GT(identical, touched * 3);
}

TEST(Corpus, RoundTripPassesTheSchemasAndOpensInLibreOffice) {
    auto files = ts::CorpusWorkbooks();
    if (files.empty()) GTEST_SKIP() << "../shared is not beside the source tree";
    std::vector<ts::fs::path> out;
    for (auto& f : files) out.push_back(RoundTripDir() / f.filename());
    if (ts::HaveValidator()) {
        auto r = ts::ValidateXlsx(out);
        EXPECT_EQ(r.status, 0) << r.output;
    }
    if (!ts::HaveLibreOffice()) GTEST_SKIP() << "LibreOffice missing";
    auto converted = ts::LibreOfficeConvertAll(out, "csv", ts::ScratchDir("corpus-lo"));
    for (size_t i = 0; i < out.size(); ++i) EXPECT_FALSE(converted[i].empty()) << out[i] << " did not open";
}

}  // namespace
