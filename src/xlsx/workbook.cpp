// The workbook part: sheets in tab order, visibility, the active sheet, protection, the palette,
// and saving.
#include <algorithm>
#include <filesystem>

#include "host/constants.h"
#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/drawing.h"
#include "xlsx/ooxml.h"

namespace xlsx {

namespace {
const char* kNewContentTypes =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)"
    "\r\n"
    R"(<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">)"
    R"(<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>)"
    R"(<Default Extension="xml" ContentType="application/xml"/></Types>)";

const char* kNewWorkbook =
    R"(<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" )"
    R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)"
    R"(<workbookPr defaultThemeVersion="124226"/><bookViews><workbookView xWindow="240" yWindow="120" )"
    R"(windowWidth="16000" windowHeight="9000"/></bookViews><sheets/><calcPr calcId="191029"/></workbook>)";

const char* kNewStyles =
    R"(<styleSheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">)"
    R"(<fonts count="1"><font><sz val="11"/><color theme="1"/><name val="Calibri"/><family val="2"/>)"
    R"(<scheme val="minor"/></font></fonts><fills count="2"><fill><patternFill patternType="none"/></fill>)"
    R"(<fill><patternFill patternType="gray125"/></fill></fills><borders count="1"><border><left/><right/>)"
    R"(<top/><bottom/><diagonal/></border></borders><cellStyleXfs count="1"><xf numFmtId="0" fontId="0" )"
    R"(fillId="0" borderId="0"/></cellStyleXfs><cellXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" )"
    R"(borderId="0" xfId="0"/></cellXfs><cellStyles count="1"><cellStyle name="Normal" xfId="0" )"
    R"(builtinId="0"/></cellStyles><dxfs count="0"/><tableStyles count="0" )"
    R"(defaultTableStyle="TableStyleMedium2" defaultPivotStyle="PivotStyleLight16"/></styleSheet>)";

void LoadInto(pugi::xml_document& doc, const char* text) {
    doc.reset();
    doc.load_string(text, pugi::parse_default | pugi::parse_declaration);
}
}  // namespace

host::Ref<host::Workbook> AppImpl::NewWorkbook() {
    auto pkg = Package::Create();
    pkg->Put("[Content_Types].xml", kNewContentTypes);
    LoadInto(pkg->PutXml("xl/workbook.xml", ct::kWorkbook), kNewWorkbook);
    pkg->AddRel("", rel::kOfficeDocument, "xl/workbook.xml");
    LoadInto(pkg->PutXml("xl/styles.xml", ct::kStyles), kNewStyles);
    pkg->AddRel("xl/workbook.xml", rel::kStyles, "xl/styles.xml");
    active_ = std::make_shared<Book>(*this, std::move(pkg), std::string{});
    active_->AddSheet(0);
    return active_;
}

// ---------------------------------------------------------------- loading

Book::Book(AppImpl& app, std::unique_ptr<Package> pkg, std::string path)
    : app_(app), pkg_(std::move(pkg)), path_(std::move(path)) {
    for (auto& r : pkg_->Rels(""))
        if (r.type == rel::kOfficeDocument || r.type == rel::kOfficeDocumentStrict)
            wbPart_ = Package::ResolveTarget("", r.target);
    if (wbPart_.empty() || !pkg_->Has(wbPart_))
        throw PackageError(pkg_->Invalid("it has no workbook part"));
    ExpectRoot(wbPart_, "workbook");
    LoadSheets();
    Verify();
}

// ---------------------------------------------------------------- verifying

void Book::Damaged(std::string_view part, const std::string& what) const {
    throw PackageError(pkg_->Invalid("part '" + std::string(part) + "' " + what));
}

const pugi::xml_document& Book::ExpectRoot(const std::string& part, const char* name) {
    auto& doc = pkg_->Read(part);
    std::string_view root = doc.document_element().name();
    if (!HasCanonicalRoot(doc)) Damaged(part, "declares its namespaces in a way that can't be read");
    if (name && root != name) Damaged(part, "has the root element '" + std::string(root) + "' where '" + name + "' belongs");
    return doc;
}

// The part a relationship of the workbook of this type points at; "" when it has none. A required
// one must be in the package.
std::string Book::RelatedPart(const char* type, bool required) {
    for (auto& r : pkg_->Rels(wbPart_)) {
        if (r.type != type) continue;
        std::string part = pkg_->Target(wbPart_, r.id);
        if (required && (part.empty() || !pkg_->Has(part)))
            Damaged(Package::RelsPartOf(wbPart_), "points at '" + (part.empty() ? r.target : part) +
                                                      "', which the package doesn't have");
        return part;
    }
    return {};
}

// Every part the engine reads is parsed here, and what a valid file can't hold is looked for
// where that is cheap: a damaged file then fails Open, before the caller changes anything, and not
// a read inside an operation, whose error handling would take it for a fault of one row or chart.
// The parsed parts stay with the package, so later reads cost nothing more. Cells are checked as
// a sheet is first read (SheetImpl::BuildIndex).
void Book::Verify() {
    if (auto part = RelatedPart(rel::kSharedStrings, true); !part.empty()) ExpectRoot(part, "sst");
    if (auto part = RelatedPart(rel::kStyles, true); !part.empty()) ExpectRoot(part, "styleSheet");
    // The theme only lends colours and fonts: without it the engine takes the defaults.
    if (auto part = RelatedPart(rel::kTheme, false); !part.empty() && pkg_->Has(part)) ExpectRoot(part, "a:theme");
    for (auto& e : sheets_) {
        const std::string& part = e.sheet->Part();
        std::string name = e.node.attribute("name").value();
        if (part.empty())
            Damaged(wbPart_, "names sheet '" + name + "' through relationship '" + RelIdOf(e.node) + "', which '" +
                                 Package::RelsPartOf(wbPart_) + "' doesn't have");
        if (!pkg_->Has(part))
            Damaged(Package::RelsPartOf(wbPart_), "points sheet '" + name + "' at '" + part + "', which the package doesn't have");
        e.sheet->Verify();
    }
    // Chart parts are read by type too (references follow moved rows in all of them).
    for (auto& part : pkg_->Parts())
        if (pkg_->ContentType(part) == ct::kChart) {
            ExpectRoot(part, "c:chartSpace");
            VerifyDrawing(*this, part, true);
        }
}

pugi::xml_node Book::WorkbookRoot(bool edit) {
    return edit ? pkg_->Edit(wbPart_).document_element() : pkg_->Read(wbPart_).document_element();
}

void Book::LoadSheets() {
    auto root = WorkbookRoot(false);
    for (auto s : root.child("sheets").children("sheet")) {
        std::string rid = RelIdOf(s);
        std::string part = pkg_->Target(wbPart_, rid);
        bool chart = false;
        for (auto& r : pkg_->Rels(wbPart_))
            if (r.id == rid) chart = r.type == rel::kChartsheet;
        sheets_.push_back({s, std::make_shared<SheetImpl>(*this, part, chart)});
    }
    activeTab_ = root.child("bookViews").child("workbookView").attribute("activeTab").as_int(0);
    if (activeTab_ < 0 || activeTab_ >= static_cast<long>(sheets_.size())) activeTab_ = 0;
    for (auto& r : pkg_->Rels(wbPart_))
        if (r.type == rel::kRevisionHeaders || r.type == rel::kUsernames) shared_ = true;
}

SharedStrings& Book::strings() {
    if (!strings_) {
        std::string part;
        for (auto& r : pkg_->Rels(wbPart_))
            if (r.type == rel::kSharedStrings) part = pkg_->Target(wbPart_, r.id);
        if (part.empty()) {
            part = "xl/sharedStrings.xml";
            auto& doc = pkg_->PutXml(part, ct::kSharedStrings);
            doc.load_string(R"(<sst xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" count="0" uniqueCount="0"/>)");
            pkg_->AddRel(wbPart_, rel::kSharedStrings, part);
        }
        strings_ = std::make_unique<SharedStrings>(*pkg_, part);
    }
    return *strings_;
}

size_t Book::SharedStringCount() {
    return strings_ || !RelatedPart(rel::kSharedStrings, false).empty() ? strings().Count() : 0;
}

size_t Book::CellStyleCount() { return styles_ || !RelatedPart(rel::kStyles, false).empty() ? styles().Count() : 1; }

Styles& Book::styles() {
    if (!styles_) {
        std::string part;
        for (auto& r : pkg_->Rels(wbPart_))
            if (r.type == rel::kStyles) part = pkg_->Target(wbPart_, r.id);
        if (part.empty()) {
            part = "xl/styles.xml";
            LoadInto(pkg_->PutXml(part, ct::kStyles), kNewStyles);
            pkg_->AddRel(wbPart_, rel::kStyles, part);
        }
        styles_ = std::make_unique<Styles>(*pkg_, part);
    }
    return *styles_;
}

// ---------------------------------------------------------------- sheets

std::shared_ptr<SheetImpl> Book::SheetAt(long index) {
    if (index < 1 || index > static_cast<long>(sheets_.size())) host::Raise(host::err::SubscriptOutOfRange);
    return sheets_[static_cast<size_t>(index - 1)].sheet;
}

std::shared_ptr<SheetImpl> Book::SheetNamed(const std::string& name) {
    std::string want = host::UCase(name);
    for (auto& e : sheets_)
        if (host::UCase(e.node.attribute("name").value()) == want) return e.sheet;
    return nullptr;
}

long Book::IndexOf(const SheetImpl* sheet) {
    for (size_t i = 0; i < sheets_.size(); ++i)
        if (sheets_[i].sheet.get() == sheet) return static_cast<long>(i + 1);
    // A deleted sheet's object lingers in the caller's hands; the application raises for it.
    host::Raise(host::err::ObjectRequired);
}

std::string Book::SheetName(const SheetImpl* sheet) {
    return sheets_[static_cast<size_t>(IndexOf(sheet) - 1)].node.attribute("name").value();
}

void Book::CheckSheetName(const std::string& name, const SheetImpl* except) {
    bool bad = name.empty() || host::Len(name) > 31 || name.front() == '\'' || name.back() == '\'';
    for (char c : name)
        if (c == ':' || c == '\\' || c == '/' || c == '?' || c == '*' || c == '[' || c == ']') bad = true;
    if (bad)
        Refuse("You typed an invalid name for a sheet or chart. Make sure that: The name that you type does not "
               "exceed 31 characters. The name does not contain any of the following characters: : \\ / ? * [ "
               "or ]. You did not leave the name blank.");
    if (host::UCase(name) == "HISTORY") Refuse("'History' is a reserved name.");
    auto other = SheetNamed(name);
    if (other && other.get() != except)
        Refuse("That name is already taken. Try a different one.");
}

void Book::RenameSheet(SheetImpl* sheet, const std::string& name) {
    long i = IndexOf(sheet);
    std::string old = SheetName(sheet);
    if (old == name) return;
    CheckSheetName(name, sheet);
    // References to the sheet follow its new name, as they do in the application.
    RewriteReferencesTo(old, [&](const std::string& f) { return RenameSheetInFormula(f, old, name); });
    WorkbookRoot(true);
    sheets_[static_cast<size_t>(i - 1)].node.attribute("name").set_value(name.c_str());
}

long Book::SheetState(const SheetImpl* sheet) {
    std::string st = sheets_[static_cast<size_t>(IndexOf(sheet) - 1)].node.attribute("state").value();
    if (st == "hidden") return host::xlSheetHidden;
    if (st == "veryHidden") return host::xlSheetVeryHidden;
    return host::xlSheetVisible;
}

void Book::SetSheetState(SheetImpl* sheet, long state) {
    long i = IndexOf(sheet);
    if (state == 1 || state == -1) state = host::xlSheetVisible;  // True means visible, as in the application
    if (state != host::xlSheetVisible && state != host::xlSheetHidden && state != host::xlSheetVeryHidden)
        Refuse("Unable to set the Visible property of the Worksheet class");
    if (state == SheetState(sheet)) return;
    if (state != host::xlSheetVisible) {
        long visible = 0;
        for (auto& e : sheets_)
            if (SheetState(e.sheet.get()) == host::xlSheetVisible) ++visible;
        if (visible <= 1) Refuse("Unable to set the Visible property of the Worksheet class");
    }
    WorkbookRoot(true);
    auto node = sheets_[static_cast<size_t>(i - 1)].node;
    node.remove_attribute("state");
    if (state != host::xlSheetVisible)
        node.append_attribute("state").set_value(state == host::xlSheetHidden ? "hidden" : "veryHidden");
    // A hidden sheet can't stay active: the next visible one takes over, as in the application.
    if (activeTab_ == i - 1) {
        for (size_t k = 0; k < sheets_.size(); ++k) {
            size_t j = (static_cast<size_t>(i - 1) + k) % sheets_.size();
            if (SheetState(sheets_[j].sheet.get()) == host::xlSheetVisible) {
                activeTab_ = static_cast<long>(j);
                break;
            }
        }
    }
}

void Book::ActivateSheet(SheetImpl* sheet) {
    long i = IndexOf(sheet);
    if (SheetState(sheet) != host::xlSheetVisible) Refuse("Activate method of Worksheet class failed");
    activeTab_ = i - 1;
}

host::Ref<host::Sheet> Book::ActiveSheet() { return sheets_.empty() ? nullptr : sheets_[static_cast<size_t>(activeTab_)].sheet; }

std::shared_ptr<SheetImpl> Book::AddSheet(long position) {
    if (ProtectStructure()) Refuse("Workbook is protected and cannot be changed.");
    // A free part name and sheet name, as the application picks them.
    long n = 1;
    while (pkg_->Has("xl/worksheets/sheet" + std::to_string(n) + ".xml")) ++n;
    std::string part = "xl/worksheets/sheet" + std::to_string(n) + ".xml";
    auto& doc = pkg_->PutXml(part, ct::kWorksheet);
    doc.load_string(
        R"(<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" )"
        R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)"
        R"(<dimension ref="A1"/><sheetViews><sheetView workbookViewId="0"/></sheetViews>)"
        R"(<sheetFormatPr defaultRowHeight="15"/><sheetData/>)"
        R"(<pageMargins left="0.7" right="0.7" top="0.75" bottom="0.75" header="0.3" footer="0.3"/></worksheet>)");
    std::string rid = pkg_->AddRel(wbPart_, rel::kWorksheet, part);

    long k = 1;
    while (SheetNamed("Sheet" + std::to_string(k))) ++k;
    long sheetId = 0;
    auto root = WorkbookRoot(true);
    auto sheetsNode = root.child("sheets");
    for (auto s : sheetsNode.children("sheet")) sheetId = std::max<long>(sheetId, s.attribute("sheetId").as_int());

    if (position < 0 || position > static_cast<long>(sheets_.size())) position = static_cast<long>(sheets_.size());
    pugi::xml_node node = position < static_cast<long>(sheets_.size())
                              ? sheetsNode.insert_child_before("sheet", sheets_[static_cast<size_t>(position)].node)
                              : sheetsNode.append_child("sheet");
    node.append_attribute("name").set_value(("Sheet" + std::to_string(k)).c_str());
    node.append_attribute("sheetId").set_value(sheetId + 1);
    node.append_attribute((PrefixFor(root, ns::kRel, "r") + "id").c_str()).set_value(rid.c_str());

    auto sheet = std::make_shared<SheetImpl>(*this, part, false);
    sheets_.insert(sheets_.begin() + position, {node, sheet});
    // Sheet-local names and the active tab count sheets by position.
    for (auto dn : root.child("definedNames").children("definedName")) {
        auto a = dn.attribute("localSheetId");
        if (a && a.as_int() >= position) a.set_value(a.as_int() + 1);
    }
    activeTab_ = position;  // a new sheet is active, as in the application
    return sheet;
}

void Book::DeleteSheet(SheetImpl* sheet) {
    if (ProtectStructure()) Refuse("Workbook is protected and cannot be changed.");
    long i = IndexOf(sheet);
    long visible = 0;
    for (auto& e : sheets_)
        if (SheetState(e.sheet.get()) == host::xlSheetVisible && e.sheet.get() != sheet) ++visible;
    if (visible == 0) Refuse("Delete method of Worksheet class failed");
    std::string name = SheetName(sheet);
    auto root = WorkbookRoot(true);
    auto entry = sheets_[static_cast<size_t>(i - 1)];
    std::string rid = RelIdOf(entry.node);
    root.child("sheets").remove_child(entry.node);
    sheets_.erase(sheets_.begin() + (i - 1));
    pkg_->RemoveRel(wbPart_, rid);
    pkg_->RemoveTree(sheet->Part());  // its drawings, comments and tables go with it
    // Names local to the sheet go; later local ids move down; references to it break.
    auto names = root.child("definedNames");
    for (auto dn = names.first_child(); dn;) {
        auto next = dn.next_sibling();
        auto a = dn.attribute("localSheetId");
        if (a && a.as_int() == i - 1) names.remove_child(dn);
        else if (a && a.as_int() > i - 1) a.set_value(a.as_int() - 1);
        dn = next;
    }
    RewriteReferencesTo(name, [&](const std::string& f) { return BreakSheetInFormula(f, name); });
    if (activeTab_ >= static_cast<long>(sheets_.size()) || activeTab_ == i - 1) {
        activeTab_ = std::min<long>(i - 1, static_cast<long>(sheets_.size()) - 1);
        while (activeTab_ > 0 && SheetState(sheets_[static_cast<size_t>(activeTab_)].sheet.get()) != host::xlSheetVisible)
            --activeTab_;
    } else if (activeTab_ > i - 1) {
        --activeTab_;
    }
}

// ---------------------------------------------------------------- workbook properties

host::Ref<host::Application> Book::Application() { return app_.self(); }

std::string Book::Name() {
    return path_.empty() ? "Book1" : std::filesystem::path(path_).filename().string();
}

std::string Book::FullName() { return path_.empty() ? Name() : path_; }

bool Book::ProtectStructure() {
    auto p = WorkbookRoot(false).child("workbookProtection");
    auto a = p.attribute("lockStructure");
    return a && (std::string(a.value()) == "1" || std::string(a.value()) == "true");
}

void Book::SetProtectStructure(bool on) {
    if (on == ProtectStructure()) return;
    auto root = WorkbookRoot(true);
    auto p = root.child("workbookProtection");
    if (!p) {
        // workbookProtection stands after fileSharing/workbookPr and before bookViews.
        auto before = root.child("bookViews");
        if (!before) before = root.child("sheets");
        p = root.insert_child_before("workbookProtection", before);
    }
    p.remove_attribute("lockStructure");
    if (on) p.append_attribute("lockStructure").set_value("1");
    else if (!p.first_attribute()) root.remove_child(p);
}

void Book::Protect(const std::string& password, bool structure, bool) {
    // Passwords are not kept: the engine has no user to ask for one.
    (void)password;
    if (structure) SetProtectStructure(true);
}

void Book::Unprotect(const std::string&) { SetProtectStructure(false); }

bool Book::MultiUserEditing() { return shared_; }

void AppImpl::SetMultiUserEditing(host::Ref<host::Workbook> workbook, bool shared) {
    auto book = std::dynamic_pointer_cast<Book>(workbook);
    if (!book) host::Raise(host::err::ObjectRequired);
    book->SetMultiUserEditing(shared);
}
void Book::SetMultiUserEditing(bool on) { shared_ = on; }

long Book::Colors(long index) {
    if (index < 1 || index > 56) host::Raise(host::err::SubscriptOutOfRange);
    return styles().Palette(index);
}

void Book::SetColors(long index, long rgb) {
    if (index < 1 || index > 56) host::Raise(host::err::SubscriptOutOfRange);
    styles().SetPalette(index, rgb);
}

void Book::ResetColors() { styles().ResetPalette(); }

void Book::MarkCalcOnLoad() {
    auto root = WorkbookRoot(false);
    if (root.child("calcPr").attribute("fullCalcOnLoad").as_bool()) return;
    root = WorkbookRoot(true);
    auto calc = root.child("calcPr");
    if (!calc) {
        auto after = root.child("definedNames") ? root.child("definedNames") : root.child("sheets");
        calc = root.insert_child_after("calcPr", after);
    }
    if (!calc.attribute("fullCalcOnLoad")) calc.append_attribute("fullCalcOnLoad");
    calc.attribute("fullCalcOnLoad").set_value("1");
}

// ---------------------------------------------------------------- saving

void Book::Save() {
    if (path_.empty()) Refuse("This workbook has never been saved; use SaveAs.");
    SaveAs(path_);
}

bool Book::DiffersFromFile() {
    if (path_.empty()) return true;
    PrepareSave();
    std::unique_ptr<Package> file;
    try {
        file = Package::Open(path_, {app_.Options().maxInflatedSize, WriterLock::None});
    } catch (const PackageError&) {
        return true;
    }
    auto mine = pkg_->Parts(), theirs = file->Parts();
    std::sort(mine.begin(), mine.end());
    std::sort(theirs.begin(), theirs.end());
    if (mine != theirs) return true;
    for (auto& part : mine) {
        if (!pkg_->Changed(part)) continue;
        std::string bytes = pkg_->Bytes(part);
        if (bytes == file->Bytes(part)) continue;
        // An edited part is written from its tree: compare it with the file's part parsed alike.
        try {
            if (bytes != SerializeXml(file->Read(part))) return true;
        } catch (const std::exception&) {
            return true;
        }
    }
    return false;
}

void Book::PrepareSave() {
    // The active tab and the selected sheet view agree, as the application writes them.
    auto view = WorkbookRoot(false).child("bookViews").child("workbookView");
    if (view && view.attribute("activeTab").as_int(0) != activeTab_) {
        auto v = WorkbookRoot(true).child("bookViews").child("workbookView");
        if (!v.attribute("activeTab")) v.append_attribute("activeTab");
        v.attribute("activeTab").set_value(activeTab_);
    }
    for (size_t i = 0; i < sheets_.size(); ++i) sheets_[i].sheet->PrepareSave(static_cast<long>(i) == activeTab_);
    if (strings_) strings_->Flush();
}

void Book::SaveAs(const std::string& path) {
    PrepareSave();
    pkg_->Save(path);
    path_ = std::filesystem::absolute(path).string();
}

}  // namespace xlsx
