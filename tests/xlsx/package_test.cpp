#include "xlsx/package.h"

#include <cstring>
#include <fstream>
#include <functional>
#include <set>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "test_support.h"

namespace {

namespace fs = std::filesystem;
using xlsx::Package;
using xlsx::PackageError;

constexpr const char* kWorksheetType = "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
constexpr const char* kDrawingType = "application/vnd.openxmlformats-officedocument.drawing+xml";
constexpr const char* kWorkbookType = "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
constexpr const char* kRelBase = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
constexpr const char* kMainNs = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";

std::string ReadFile(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

void WriteFile(const fs::path& p, const std::string& bytes) {
    std::ofstream out(p, std::ios::binary);
    out << bytes;
}

// A Python string literal.
std::string PyString(const std::string& text) {
    std::string out = "'";
    for (char c : text) {
        if (c == '\\' || c == '\'') out += '\\';
        out += c;
    }
    return out + "'";
}

fs::path Corpus(const std::string& name) {
    fs::path p = testsupport::SharedDir() / "corpus" / "excel" / name;
    return fs::exists(p) ? p : fs::path{};
}

// A package of one part of zeros, which deflates about a thousandfold.
fs::path ZerosPackage(const fs::path& file, size_t size) {
    auto pkg = Package::Create();
    pkg->Put("xl/zeros.bin", std::string(size, '\0'), "application/octet-stream");
    pkg->Save(file.string());
    return file;
}

// The zip with the central directory claiming another inflated size for a part; a claim beyond
// 32 bits goes into a zip64 field, as large parts have it.
std::string ClaimingSize(std::string zip, const std::string& part, std::uint64_t size) {
    auto u16 = [&](size_t at) { std::uint16_t v; std::memcpy(&v, &zip[at], 2); return v; };
    auto put = [&](size_t at, auto v) { std::memcpy(&zip[at], &v, sizeof v); };
    size_t at = zip.find("PK\x01\x02");
    while (at != std::string::npos && zip.compare(at + 46, u16(at + 28), part) != 0) at = zip.find("PK\x01\x02", at + 4);
    if (at == std::string::npos) return {};
    if (size < 0xFFFFFFFFu) {
        put(at + 24, std::uint32_t(size));
        return zip;
    }
    put(at + 24, std::uint32_t(0xFFFFFFFFu));
    std::string zip64("\x01\x00\x08\x00", 4);
    zip64.append(reinterpret_cast<const char*>(&size), 8);
    zip.insert(at + 46 + u16(at + 28), zip64);
    put(at + 30, std::uint16_t(u16(at + 30) + 12));
    size_t end = zip.rfind("PK\x05\x06");
    std::uint32_t directorySize;
    std::memcpy(&directorySize, &zip[end + 12], 4);
    put(end + 12, directorySize + 12);
    return zip;
}

#define REQUIRE_CORPUS(var, name)                                   \
    fs::path var = Corpus(name);                                    \
    if (var.empty()) GTEST_SKIP() << "corpus workbook " << name << " not found"

std::string ErrorOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const PackageError& e) {
        return e.what();
    }
    return "(no error)";
}

// Every Override names an existing part, every part has a content type, every internal
// relationship points at an existing part.
std::vector<std::string> Inconsistencies(Package& pkg) {
    std::vector<std::string> out;
    for (auto o : pkg.Read("[Content_Types].xml").document_element().children("Override")) {
        std::string name = std::string(o.attribute("PartName").value()).substr(1);
        if (!pkg.Has(name)) out.push_back("override without part: " + name);
    }
    for (auto& part : pkg.Parts()) {
        // "[trash]/" holds leftovers some writers keep without a content type.
        if (part != "[Content_Types].xml" && !part.starts_with("[trash]/") && pkg.ContentType(part).empty()) {
            out.push_back("no content type: " + part);
        }
        if (part.ends_with(".rels")) continue;
        for (auto& r : pkg.Rels(part)) {
            if (r.external || r.target.starts_with("#")) continue;
            if (!pkg.Has(pkg.Target(part, r.id))) out.push_back("dangling " + part + " " + r.id);
        }
    }
    for (auto& r : pkg.Rels("")) {
        if (!r.external && !pkg.Has(pkg.Target("", r.id))) out.push_back("dangling package rel " + r.id);
    }
    return out;
}

// Elements, attributes in their order, and texts, without formatting.
std::string Raw(const pugi::xml_document& doc) {
    std::ostringstream s;
    doc.save(s, "", pugi::format_raw | pugi::format_no_declaration);
    return s.str();
}

// Every part read, none changed, and the saved file holds the same bytes.
TEST(Package, OpensEveryCorpusWorkbookAndSavesItUnchanged) {
    auto books = testsupport::CorpusWorkbooks();
    if (books.empty()) GTEST_SKIP() << "no corpus";
    fs::path dir = testsupport::ScratchDir("package-identical");
    std::string pairs;
    for (auto& book : books) {
        SCOPED_TRACE(book.filename().string());
        std::unique_ptr<Package> pkg;
        ASSERT_NO_THROW(pkg = Package::Open(book.string()));
        auto parts = pkg->Parts();
        EXPECT_TRUE(pkg->Has("[Content_Types].xml"));
        std::string main;
        for (auto& r : pkg->Rels("")) {
            if (r.type.ends_with("/officeDocument")) main = pkg->Target("", r.id);
        }
        EXPECT_EQ(main, "xl/workbook.xml");
        EXPECT_EQ(pkg->ContentType("xl/workbook.xml").find("application/vnd."), 0u);
        for (auto& part : parts) {
            if (part.ends_with(".xml") || part.ends_with(".rels")) {
                EXPECT_TRUE(pkg->Read(part).document_element()) << part;
            }
            EXPECT_FALSE(pkg->Changed(part)) << part;
        }
        EXPECT_EQ(Inconsistencies(*pkg), std::vector<std::string>{});
        fs::path out = dir / book.filename();
        pkg->Save(out.string());
        pairs += PyString(book.string()) + ", " + PyString(out.string()) + ",\n";
    }
    // An independent unzip: same parts, [Content_Types].xml first then the original order, same bytes,
    // and the deflated ones as they were deflated.
    auto r = testsupport::Python("import zipfile, sys\nbad = 0\nfiles = [" + pairs + R"(]
for a, b in zip(files[::2], files[1::2]):
    za, zb = zipfile.ZipFile(a), zipfile.ZipFile(b)
    names = [n for n in za.namelist() if not n.endswith('/')]
    want = ['[Content_Types].xml'] + [n for n in names if n != '[Content_Types].xml']
    if zb.namelist() != want:
        print(b, 'order', zb.namelist()); bad += 1; continue
    for n in names:
        if za.read(n) != zb.read(n): print(b, 'differs', n); bad += 1
        if za.getinfo(n).compress_type == zipfile.ZIP_DEFLATED and za.getinfo(n).compress_size != zb.getinfo(n).compress_size:
            print(b, 'deflated again', n); bad += 1
    if any(i.compress_type != zipfile.ZIP_DEFLATED for i in zb.infolist()): print(b, 'not deflated'); bad += 1
    if zb.testzip() is not None: print(b, 'crc'); bad += 1
sys.exit(1 if bad else 0)
)");
    EXPECT_EQ(r.status, 0) << r.output;
}

TEST(Package, EditedPartKeepsWhatTheEngineDoesNotKnow) {
    REQUIRE_CORPUS(book, "php_excelChartsTest.xlsx");
    fs::path dir = testsupport::ScratchDir("package-edit");
    auto pkg = Package::Open(book.string());
    std::string before = pkg->Bytes("xl/workbook.xml");
    pugi::xml_document original;
    original.load_string(before.c_str());
    ASSERT_NE(before.find("mc:Ignorable"), std::string::npos);

    pkg->Read("xl/workbook.xml");
    EXPECT_FALSE(pkg->Changed("xl/workbook.xml"));
    auto wb = pkg->Edit("xl/workbook.xml").document_element();
    EXPECT_TRUE(pkg->Changed("xl/workbook.xml"));
    auto dn = wb.insert_child_after("definedNames", wb.child("sheets"));
    auto name = dn.append_child("definedName");
    name.append_attribute("name") = "Added";
    name.text() = "Sheet1!$A$1";

    // Whitespace-only and padded texts survive an edit.
    pkg->Put("customXml/item9.xml", "<a><t xml:space=\"preserve\"> </t><u> a </u><v>\r\n</v></a>", "application/xml");
    pkg->Edit("customXml/item9.xml");
    fs::path out = dir / "edited.xlsx";
    pkg->Save(out.string());

    auto again = Package::Open(out.string());
    std::string after = again->Bytes("xl/workbook.xml");
    const std::string decl = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<workbook ";
    EXPECT_EQ(after.compare(0, decl.size(), decl), 0) << after.substr(0, 80);
    EXPECT_EQ(after.find('\n', decl.size()), std::string::npos) << "indented";
    EXPECT_NE(after.find("mc:Ignorable=\"x15 xr xr6 xr10 xr2\""), std::string::npos);
    pugi::xml_document edited;
    edited.load_string(after.c_str());
    EXPECT_STREQ(edited.select_node("//definedName[@name='Added']").node().text().get(), "Sheet1!$A$1");
    edited.document_element().remove_child("definedNames");
    EXPECT_EQ(Raw(edited), Raw(original));

    auto custom = again->Read("customXml/item9.xml").document_element();
    EXPECT_STREQ(custom.child("t").text().get(), " ");
    EXPECT_STREQ(custom.child("u").text().get(), " a ");
    EXPECT_STREQ(custom.child("v").text().get(), "\n");

    // Parts nobody edited are still the original bytes.
    auto orig = Package::Open(book.string());
    for (auto& part : orig->Parts()) {
        if (part != "xl/workbook.xml" && part != "[Content_Types].xml") {
            EXPECT_EQ(orig->Bytes(part), again->Bytes(part)) << part;
        }
    }
}

TEST(Package, ResolvesAndWritesTargetsAsTheApplicationDoes) {
    struct Case { const char* source; const char* target; const char* part; };
    for (auto c : std::initializer_list<Case>{
             {"", "xl/workbook.xml", "xl/workbook.xml"},
             {"", "/xl/workbook.xml", "xl/workbook.xml"},
             {"xl/workbook.xml", "worksheets/sheet2.xml", "xl/worksheets/sheet2.xml"},
             {"xl/workbook.xml", "/xl/styles.xml", "xl/styles.xml"},
             {"xl/workbook.xml", "./theme/theme1.xml", "xl/theme/theme1.xml"},
             {"xl/worksheets/sheet1.xml", "../drawings/drawing1.xml", "xl/drawings/drawing1.xml"},
             {"xl/drawings/drawing1.xml", "../media/image1.png", "xl/media/image1.png"},
             {"xl/charts/chart1.xml", "colors1.xml", "xl/charts/colors1.xml"},
             {"xl/charts/chart1.xml", "../drawings/drawing3.xml", "xl/drawings/drawing3.xml"},
             {"xl/worksheets/sheet1.xml", "../../customXml/item1.xml", "customXml/item1.xml"},
         }) {
        EXPECT_EQ(Package::ResolveTarget(c.source, c.target), c.part) << c.source << " -> " << c.target;
    }
    EXPECT_EQ(Package::RelsPartOf(""), "_rels/.rels");
    EXPECT_EQ(Package::RelsPartOf("xl/workbook.xml"), "xl/_rels/workbook.xml.rels");
    EXPECT_EQ(Package::RelsPartOf("xl/worksheets/sheet1.xml"), "xl/worksheets/_rels/sheet1.xml.rels");

    // Relative targets written by AddRel, the form the application writes (no "./", no leading slash).
    auto pkg = Package::Create();
    struct Add { const char* source; const char* part; const char* written; };
    for (auto a : std::initializer_list<Add>{
             {"", "xl/workbook.xml", "xl/workbook.xml"},
             {"xl/workbook.xml", "xl/worksheets/sheet2.xml", "worksheets/sheet2.xml"},
             {"xl/worksheets/sheet2.xml", "xl/drawings/drawing1.xml", "../drawings/drawing1.xml"},
             {"xl/drawings/drawing1.xml", "xl/charts/chart1.xml", "../charts/chart1.xml"},
             {"xl/charts/chart1.xml", "xl/charts/colors1.xml", "colors1.xml"},
             {"xl/worksheets/sheet2.xml", "customXml/item1.xml", "../../customXml/item1.xml"},
         }) {
        std::string id = pkg->AddRel(a.source, std::string(kRelBase) + "x", a.part);
        EXPECT_EQ(pkg->Rels(a.source).back().target, a.written);
        EXPECT_EQ(pkg->Target(a.source, id), a.part);
    }
}

TEST(Package, AddingAndRemovingPartsKeepsTypesAndRelationshipsConsistent) {
    REQUIRE_CORPUS(book, "php_excelChartsTest.xlsx");
    fs::path dir = testsupport::ScratchDir("package-add-remove");
    auto pkg = Package::Open(book.string());

    // A new sheet with a drawing holding a picture.
    auto& sheet = pkg->PutXml("xl/worksheets/sheet2.xml", kWorksheetType);
    auto ws = sheet.append_child("worksheet");
    ws.append_attribute("xmlns") = kMainNs;
    ws.append_attribute("xmlns:r") = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
    ws.append_child("sheetData");
    std::string sheetId = pkg->AddRel("xl/workbook.xml", std::string(kRelBase) + "worksheet", "xl/worksheets/sheet2.xml");
    EXPECT_EQ(sheetId, "rId6");  // one above the highest, though the highest is not listed last
    auto sheets = pkg->Edit("xl/workbook.xml").document_element().child("sheets");
    auto s = sheets.append_child("sheet");
    s.append_attribute("name") = "Added";
    s.append_attribute("sheetId") = "2";
    s.append_attribute("r:id") = sheetId.c_str();

    pkg->Put("xl/drawings/drawing2.xml",
             "<xdr:wsDr xmlns:xdr=\"http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing\" "
             "xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\"/>",
             kDrawingType);
    EXPECT_FALSE(pkg->Has("xl/worksheets/_rels/sheet2.xml.rels"));
    std::string drawingId = pkg->AddRel("xl/worksheets/sheet2.xml", std::string(kRelBase) + "drawing",
                                        "xl/drawings/drawing2.xml");
    EXPECT_EQ(drawingId, "rId1");
    ws.append_child("drawing").append_attribute("r:id") = drawingId.c_str();
    pkg->Put("xl/media/image1.png", std::string("\x89PNG\r\n\x1a\n", 8), "image/png");
    pkg->AddRel("xl/drawings/drawing2.xml", std::string(kRelBase) + "image", "xl/media/image1.png");

    EXPECT_EQ(pkg->ContentType("xl/worksheets/sheet2.xml"), kWorksheetType);
    EXPECT_EQ(pkg->ContentType("xl/media/image1.png"), "image/png");
    EXPECT_EQ(pkg->ContentType("xl/worksheets/_rels/sheet2.xml.rels"),
              "application/vnd.openxmlformats-package.relationships+xml");
    auto types = pkg->Read("[Content_Types].xml").document_element();
    EXPECT_TRUE(types.find_child_by_attribute("Default", "Extension", "png"));
    EXPECT_FALSE(types.find_child_by_attribute("Override", "PartName", "/xl/media/image1.png"));
    EXPECT_TRUE(types.find_child_by_attribute("Override", "PartName", "/xl/worksheets/sheet2.xml"));
    EXPECT_EQ(pkg->Parts().back(), "xl/drawings/_rels/drawing2.xml.rels");

    fs::path added = dir / "added.xlsx";
    pkg->Save(added.string());
    auto reopened = Package::Open(added.string());
    EXPECT_EQ(reopened->Target("xl/workbook.xml", sheetId), "xl/worksheets/sheet2.xml");
    EXPECT_EQ(reopened->Target("xl/worksheets/sheet2.xml", "rId1"), "xl/drawings/drawing2.xml");
    EXPECT_EQ(Inconsistencies(*reopened), std::vector<std::string>{});

    // Taking the sheet out again: Override, relationships part and the workbook's relationship go.
    reopened->RemoveRel("xl/workbook.xml", sheetId);
    auto wbSheets = reopened->Edit("xl/workbook.xml").document_element().child("sheets");
    wbSheets.remove_child(wbSheets.find_child_by_attribute("sheet", "name", "Added"));
    reopened->Remove("xl/worksheets/sheet2.xml");
    reopened->Remove("xl/drawings/drawing2.xml");
    reopened->Remove("xl/media/image1.png");
    EXPECT_FALSE(reopened->Has("xl/worksheets/_rels/sheet2.xml.rels"));
    EXPECT_FALSE(reopened->Has("xl/drawings/_rels/drawing2.xml.rels"));
    EXPECT_EQ(reopened->Target("xl/workbook.xml", sheetId), "");
    EXPECT_EQ(reopened->ContentType("xl/worksheets/sheet2.xml"), "application/xml");  // the Default only

    // The last relationship of a part going takes its relationships part with it.
    auto chartRels = reopened->Rels("xl/charts/chart1.xml");
    ASSERT_EQ(chartRels.size(), 2u);
    reopened->RemoveRel("xl/charts/chart1.xml", chartRels[0].id);
    EXPECT_TRUE(reopened->Has("xl/charts/_rels/chart1.xml.rels"));
    EXPECT_EQ(reopened->Rels("xl/charts/chart1.xml").size(), 1u);
    reopened->RemoveRel("xl/charts/chart1.xml", chartRels[1].id);
    EXPECT_FALSE(reopened->Has("xl/charts/_rels/chart1.xml.rels"));

    fs::path removed = dir / "removed.xlsx";
    reopened->Save(removed.string());
    auto last = Package::Open(removed.string());
    EXPECT_EQ(Inconsistencies(*last), std::vector<std::string>{});
    EXPECT_EQ(last->Parts().size(), Package::Open(book.string())->Parts().size() - 1);
    EXPECT_FALSE(last->Has("xl/worksheets/sheet2.xml"));

    if (!testsupport::HaveValidator()) GTEST_SKIP() << "schema validator unavailable";
    auto v = testsupport::ValidateXlsx({added, removed});
    EXPECT_EQ(v.status, 0) << v.output;
}

TEST(Package, CreateBuildsAWorkbookFromNothing) {
    fs::path dir = testsupport::ScratchDir("package-create");
    auto pkg = Package::Create();
    EXPECT_EQ(pkg->Parts(), std::vector<std::string>{"[Content_Types].xml"});
    EXPECT_EQ(pkg->ContentType("_rels/.rels"), "application/vnd.openxmlformats-package.relationships+xml");

    auto wb = pkg->PutXml("xl/workbook.xml", kWorkbookType).append_child("workbook");
    wb.append_attribute("xmlns") = kMainNs;
    wb.append_attribute("xmlns:r") = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
    EXPECT_EQ(pkg->AddRel("", std::string(kRelBase) + "officeDocument", "xl/workbook.xml"), "rId1");
    auto ws = pkg->PutXml("xl/worksheets/sheet1.xml", kWorksheetType).append_child("worksheet");
    ws.append_attribute("xmlns") = kMainNs;
    ws.append_child("sheetData");
    std::string id = pkg->AddRel("xl/workbook.xml", std::string(kRelBase) + "worksheet", "xl/worksheets/sheet1.xml");
    auto sheet = wb.append_child("sheets").append_child("sheet");
    sheet.append_attribute("name") = "Sheet1";
    sheet.append_attribute("sheetId") = "1";
    sheet.append_attribute("r:id") = id.c_str();
    EXPECT_TRUE(pkg->Changed("xl/workbook.xml"));

    fs::path out = dir / "new.xlsx";
    pkg->Save(out.string());
    struct stat st {};
    ASSERT_EQ(stat(out.c_str(), &st), 0);
    mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(st.st_mode & 0777, 0666 & ~mask);

    auto again = Package::Open(out.string());
    EXPECT_EQ(again->Parts().front(), "[Content_Types].xml");
    EXPECT_EQ(again->Target("", "rId1"), "xl/workbook.xml");
    EXPECT_EQ(again->Target("xl/workbook.xml", id), "xl/worksheets/sheet1.xml");
    EXPECT_EQ(Inconsistencies(*again), std::vector<std::string>{});
    if (!testsupport::HaveValidator()) GTEST_SKIP() << "schema validator unavailable";
    auto v = testsupport::ValidateXlsx({out});
    EXPECT_EQ(v.status, 0) << v.output;
}

TEST(Package, OpenErrorsAreOneClearLine) {
    fs::path dir = testsupport::ScratchDir("package-open-errors");
    auto invalid = [](const fs::path& p) { return "'" + p.string() + "' is not a valid workbook package: "; };

    fs::path missing = dir / "missing.xlsx";
    EXPECT_EQ(ErrorOf([&] { Package::Open(missing.string()); }), "cannot open '" + missing.string() + "': no such file");
    EXPECT_EQ(ErrorOf([&] { Package::Open(dir.string()); }), "cannot open '" + dir.string() + "': it is a folder");

    fs::path text = dir / "text.xlsx";
    WriteFile(text, "just some words, no zip at all\n");
    EXPECT_EQ(ErrorOf([&] { Package::Open(text.string()); }), invalid(text) + "not a zip file");

    fs::path empty = dir / "empty.xlsx";
    WriteFile(empty, "");
    EXPECT_EQ(ErrorOf([&] { Package::Open(empty.string()); }), invalid(empty) + "the file is empty");

    fs::path legacy = dir / "legacy.xlsx";
    WriteFile(legacy, std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + std::string(504, '\0'));
    EXPECT_EQ(ErrorOf([&] { Package::Open(legacy.string()); }),
              invalid(legacy) + "it is password-protected or in the old binary format");

    fs::path noTypes = dir / "no-types.xlsx";
    auto r = testsupport::Python("import zipfile\nwith zipfile.ZipFile(" + PyString(noTypes.string()) +
                                 ", 'w') as z: z.writestr('xl/workbook.xml', '<workbook/>')\n");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(ErrorOf([&] { Package::Open(noTypes.string()); }), invalid(noTypes) + "[Content_Types].xml is missing");

    auto books = testsupport::CorpusWorkbooks();
    if (books.empty()) GTEST_SKIP() << "no corpus";
    std::string whole = ReadFile(books.front());
    fs::path truncated = dir / "truncated.xlsx";
    for (size_t keep : {whole.size() / 2, whole.size() - 10}) {
        WriteFile(truncated, whole.substr(0, keep));
        EXPECT_EQ(ErrorOf([&] { Package::Open(truncated.string()); }),
                  invalid(truncated) + "the zip data is damaged or incomplete");
    }

    // A part whose XML is broken is reported when it is read, naming the part.
    auto pkg = Package::Open(books.front().string());
    pkg->Put("xl/broken.xml", "<a><b></a>", "application/xml");
    std::string broken = ErrorOf([&] { pkg->Read("xl/broken.xml"); });
    EXPECT_EQ(broken.rfind(invalid(books.front()) + "part 'xl/broken.xml' is not well-formed XML (", 0), 0u) << broken;
    EXPECT_EQ(ErrorOf([&] { pkg->Bytes("xl/none.xml"); }), "the workbook package has no part 'xl/none.xml'");

    fs::path locked = dir / "locked.xlsx";
    fs::copy_file(books.front(), locked);
    int fd = open(locked.c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(flock(fd, LOCK_EX), 0);
    EXPECT_EQ(ErrorOf([&] { Package::Open(locked.string()); }),
              "cannot open '" + locked.string() + "': the file is locked by another program");
    close(fd);
    EXPECT_NO_THROW(Package::Open(locked.string()));

    if (geteuid() != 0) {
        chmod(locked.c_str(), 0);
        EXPECT_EQ(ErrorOf([&] { Package::Open(locked.string()); }),
                  "cannot open '" + locked.string() + "': permission denied");
    }
}

TEST(Package, FailedSaveLeavesTheOriginalIntact) {
    REQUIRE_CORPUS(book, "php_excelChartsTest.xlsx");
    fs::path dir = testsupport::ScratchDir("package-failed-save");
    fs::path file = dir / "book.xlsx";
    fs::copy_file(book, file);
    chmod(file.c_str(), 0640);
    const std::string original = ReadFile(file);
    auto entries = [&] {
        std::set<std::string> names;
        for (auto& e : fs::directory_iterator(dir)) names.insert(e.path().filename().string());
        return names;
    };
    const auto before = entries();

    auto pkg = Package::Open(file.string());
    pkg->Edit("xl/workbook.xml").document_element().append_child("extLst");

    fs::path folder = dir / "folder.xlsx";
    fs::create_directory(folder);
    WriteFile(folder / "inside", "x");
    auto folderBefore = entries();
    EXPECT_EQ(ErrorOf([&] { pkg->Save(folder.string()); }), "cannot save '" + folder.string() + "': it is a folder");
    EXPECT_EQ(entries(), folderBefore) << "temporary file left behind";
    EXPECT_EQ(ReadFile(folder / "inside"), "x");

    fs::path underFile = file / "x.xlsx";
    EXPECT_EQ(ErrorOf([&] { pkg->Save(underFile.string()); }),
              "cannot save '" + underFile.string() + "': part of the path is not a folder");
    fs::path noFolder = dir / "nowhere" / "x.xlsx";
    EXPECT_EQ(ErrorOf([&] { pkg->Save(noFolder.string()); }), "cannot save '" + noFolder.string() + "': no such folder");

    int fd = open(file.c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(flock(fd, LOCK_SH), 0);
    EXPECT_EQ(ErrorOf([&] { pkg->Save(file.string()); }),
              "cannot save '" + file.string() + "': the file is locked by another program");
    close(fd);

    if (geteuid() != 0) {
        chmod(dir.c_str(), 0555);
        EXPECT_EQ(ErrorOf([&] { pkg->Save(file.string()); }), "cannot save '" + file.string() + "': permission denied");
        chmod(dir.c_str(), 0755);
    }
    EXPECT_EQ(ReadFile(file), original);
    fs::remove_all(folder);
    EXPECT_EQ(entries(), before);

    // Saving over the file it was opened from works and keeps its permissions.
    pkg->Save(file.string());
    EXPECT_EQ(entries(), before);
    struct stat st {};
    ASSERT_EQ(stat(file.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
    auto again = Package::Open(file.string());
    EXPECT_TRUE(again->Read("xl/workbook.xml").document_element().child("extLst"));
}

TEST(Package, SizesThatLieAndTheInflationCapAreRefusedInOneLine) {
    fs::path dir = testsupport::ScratchDir("package-sizes");
    const size_t size = 4 << 20;
    fs::path zeros = ZerosPackage(dir / "zeros.xlsx", size);
    const std::string zip = ReadFile(zeros);
    ASSERT_LT(zip.size(), 16u << 10);
    EXPECT_EQ(Package::Open(zeros.string())->Bytes("xl/zeros.bin").size(), size);
    auto invalid = [](const fs::path& p) { return "'" + p.string() + "' is not a valid workbook package: "; };

    // A central directory claiming a tebibyte, or anything a deflate stream of this length can't
    // hold, is refused before memory is set aside; one claiming a byte more or less than the part
    // inflates to is refused as it is read.
    fs::path lying = dir / "lying.xlsx";
    for (std::uint64_t claim : {std::uint64_t(1) << 40, std::uint64_t(zip.size()) * 1100}) {
        WriteFile(lying, ClaimingSize(zip, "xl/zeros.bin", claim));
        EXPECT_EQ(ErrorOf([&] { Package::Open(lying.string()); }),
                  invalid(lying) + "part 'xl/zeros.bin' is damaged (its declared size is impossible)")
            << claim;
    }
    for (std::uint64_t claim : {size - 1, size + 1}) {
        WriteFile(lying, ClaimingSize(zip, "xl/zeros.bin", claim));
        EXPECT_EQ(ErrorOf([&] { Package::Open(lying.string()); }), invalid(lying) + "part 'xl/zeros.bin' is damaged")
            << claim;
    }

    // The cap counts every part inflated, and the zip itself.
    auto capped = [&](std::uint64_t limit) {
        return ErrorOf([&] { Package::Open(zeros.string(), {limit}); });
    };
    EXPECT_EQ(capped(size - 1), "cannot open '" + zeros.string() + "': it inflates to more than the limit of " +
                                    std::to_string(size - 1) + " bytes");
    EXPECT_EQ(capped(3 << 20), "cannot open '" + zeros.string() + "': it inflates to more than the limit of 3 MiB");
    EXPECT_EQ(capped(zip.size() - 1), "cannot open '" + zeros.string() + "': it inflates to more than the limit of " +
                                          std::to_string(zip.size() - 1) + " bytes");
    EXPECT_EQ(capped(8 << 20), "(no error)");
}

TEST(Package, OnlyRegularFilesAreOpenedOrSavedOver) {
    fs::path dir = testsupport::ScratchDir("package-not-files");
    auto pkg = Package::Create();
    fs::path fifo = dir / "fifo.xlsx";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    // Nobody writes the pipe: opening it must not wait for a writer.
    EXPECT_EQ(ErrorOf([&] { Package::Open(fifo.string()); }),
              "cannot open '" + fifo.string() + "': it is a pipe, not a file");
    EXPECT_EQ(ErrorOf([&] { Package::Open(fifo.string(), {.writerLock = xlsx::WriterLock::Refuse}); }),
              "cannot open '" + fifo.string() + "': it is a pipe, not a file");
    EXPECT_EQ(ErrorOf([&] { pkg->Save(fifo.string()); }),
              "cannot save '" + fifo.string() + "': it is a pipe, not a file");
    EXPECT_EQ(ErrorOf([&] { Package::Open("/dev/zero"); }), "cannot open '/dev/zero': it is a device, not a file");
    EXPECT_EQ(ErrorOf([&] { Package::Open(dir.string(), {.writerLock = xlsx::WriterLock::Wait}); }),
              "cannot open '" + dir.string() + "': it is a folder");

    fs::path socketPath = dir / "socket.xlsx";
    int sock = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    std::strncpy(addr.sun_path, socketPath.c_str(), sizeof addr.sun_path - 1);
    ASSERT_EQ(bind(sock, reinterpret_cast<sockaddr*>(&addr), sizeof addr), 0);
    EXPECT_EQ(ErrorOf([&] { Package::Open(socketPath.string()); }),
              "cannot open '" + socketPath.string() + "': it is not a regular file");
    close(sock);
    EXPECT_TRUE(fs::is_fifo(fifo));
}

// Another program's save renames its file over ours; an edit in place changes size or time.
// Either way its version stays and ours is refused.
TEST(Package, AFileReplacedOrChangedOnDiskIsNotOverwritten) {
    fs::path dir = testsupport::ScratchDir("package-replaced");
    fs::path file = ZerosPackage(dir / "book.xlsx", 1000);
    auto entries = [&] {
        std::set<std::string> names;
        for (auto& e : fs::directory_iterator(dir)) names.insert(e.path().filename().string());
        return names;
    };

    auto pkg = Package::Open(file.string());
    pkg->Put("xl/mine.bin", "mine", "application/octet-stream");
    ZerosPackage(dir / "theirs.xlsx", 2000);
    const std::string theirs = ReadFile(dir / "theirs.xlsx");
    fs::rename(dir / "theirs.xlsx", file);
    const std::string refused = "cannot save '" + file.string() +
                                "': another program replaced or changed it since it was opened; its version stays";
    EXPECT_EQ(ErrorOf([&] { pkg->Save(file.string()); }), refused);
    EXPECT_EQ(ReadFile(file), theirs);
    EXPECT_EQ(entries(), std::set<std::string>{"book.xlsx"});

    // Saving elsewhere is no overwrite; saving over what it saved itself, twice, is ours to do.
    auto again = Package::Open(file.string());
    again->Save(file.string());
    again->Put("xl/mine.bin", "mine", "application/octet-stream");
    again->Save(file.string());
    EXPECT_EQ(Package::Open(file.string())->Bytes("xl/mine.bin"), "mine");
    std::ofstream(file, std::ios::binary | std::ios::app) << "appended by someone";
    const std::string appended = ReadFile(file);
    EXPECT_EQ(ErrorOf([&] { again->Save(file.string()); }), refused);
    EXPECT_EQ(ReadFile(file), appended);
    pkg->Save((dir / "copy.xlsx").string());
    EXPECT_EQ(Package::Open((dir / "copy.xlsx").string())->Bytes("xl/mine.bin"), "mine");
    fs::remove(file);
    EXPECT_EQ(ErrorOf([&] { again->Save(file.string()); }), refused);
    EXPECT_FALSE(fs::exists(file));
}

// One writer at a time holds the file the path names, its lock moving to the file each save makes.
TEST(Package, WritersTakeTurnsAndTheLockFollowsTheSave) {
    fs::path dir = testsupport::ScratchDir("package-writers");
    fs::path file = ZerosPackage(dir / "book.xlsx", 1000);
    const std::string busy = "cannot open '" + file.string() + "': another plotsmith (or program) is writing it";
    const std::string locked = "cannot open '" + file.string() + "': the file is locked by another program";
    const xlsx::OpenOptions writer{.writerLock = xlsx::WriterLock::Refuse};

    auto first = Package::Open(file.string(), writer);
    EXPECT_EQ(ErrorOf([&] { Package::Open(file.string(), writer); }), busy);
    EXPECT_EQ(ErrorOf([&] { Package::Open(file.string()); }), locked);
    first->Put("xl/first.bin", "1", "application/octet-stream");
    first->Save(file.string());  // its own lock doesn't stop it
    EXPECT_EQ(ErrorOf([&] { Package::Open(file.string(), writer); }), busy);
    first->Put("xl/first.bin", "2", "application/octet-stream");
    first->Save(file.string());

    // A writer waiting meanwhile reads what the first saved last, not the file it waited on.
    std::unique_ptr<Package> second;
    std::string waitError;
    std::thread waiting([&] {
        waitError = ErrorOf([&] { second = Package::Open(file.string(), {.writerLock = xlsx::WriterLock::Wait}); });
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    first->Put("xl/first.bin", "3", "application/octet-stream");
    first->Save(file.string());
    first.reset();
    waiting.join();
    ASSERT_TRUE(second) << waitError;
    EXPECT_EQ(second->Bytes("xl/first.bin"), "3");
    EXPECT_EQ(ErrorOf([&] { Package::Open(file.string(), writer); }), busy);
    second.reset();
    EXPECT_EQ(ErrorOf([&] { Package::Open(file.string(), writer); }), "(no error)");

    // A lock of another program of either kind.
    int fd = open(file.c_str(), O_RDWR);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(flock(fd, LOCK_SH), 0);
    EXPECT_EQ(ErrorOf([&] { Package::Open(file.string(), writer); }), busy);
    EXPECT_EQ(ErrorOf([&] { Package::Open(file.string()); }), "(no error)");
    flock(fd, LOCK_UN);
    pid_t child = fork();
    if (child == 0) {
        struct flock fl {};
        fl.l_type = F_WRLCK;
        fl.l_whence = SEEK_SET;
        fcntl(fd, F_SETLKW, &fl);
        pause();
        _exit(0);
    }
    ASSERT_GT(child, 0);
    struct flock probe {};
    for (int i = 0; i < 5000 && probe.l_type != F_WRLCK; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        probe = {};
        probe.l_type = F_WRLCK;
        probe.l_whence = SEEK_SET;
        fcntl(fd, F_GETLK, &probe);
    }
    EXPECT_EQ(probe.l_type, F_WRLCK);
    EXPECT_EQ(ErrorOf([&] { Package::Open(file.string(), writer); }), locked);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(fd);
}

TEST(Package, ASaveRemovesTheTemporaryFilesOfKilledSaves) {
    fs::path dir = testsupport::ScratchDir("package-stale");
    fs::path file = ZerosPackage(dir / "book.xlsx", 1000);
    for (auto name : {".book.xlsx.AbC123", ".book.xlsx.Zz9999", ".book.xlsx.keep", ".book.xlsx.AbC12",
                      ".other.xlsx.AbC123", "book.xlsx.AbC123"})
        WriteFile(dir / name, "left over");
    fs::create_symlink("book.xlsx", dir / ".book.xlsx.Link00");
    // A save under way holds a lock on its temporary file.
    int live = open((dir / ".book.xlsx.Zz9999").c_str(), O_RDONLY);
    ASSERT_GE(live, 0);
    ASSERT_EQ(flock(live, LOCK_EX), 0);

    Package::Open(file.string())->Save(file.string());
    std::set<std::string> names;
    for (auto& e : fs::directory_iterator(dir)) names.insert(e.path().filename().string());
    EXPECT_EQ(names, (std::set<std::string>{"book.xlsx", ".book.xlsx.Zz9999", ".book.xlsx.keep", ".book.xlsx.AbC12",
                                            ".other.xlsx.AbC123", "book.xlsx.AbC123", ".book.xlsx.Link00"}));
    close(live);
}

}  // namespace
