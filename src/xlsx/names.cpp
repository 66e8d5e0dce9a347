// Defined names of the workbook part, and the sheet collections.
#include "host/constants.h"
#include "host/error.h"
#include "xlsx/book.h"

namespace xlsx {

namespace {

class NameImpl : public host::Name {
public:
    NameImpl(std::shared_ptr<Book> book, pugi::xml_node node) : book_(std::move(book)), node_(node) {}

    std::string Name_() override {
        std::string n = node_.attribute("name").value();
        auto local = node_.attribute("localSheetId");
        if (local) return QuoteSheetName(book_->SheetAt(local.as_int() + 1)->Name()) + "!" + n;
        return n;
    }
    void SetName(const std::string& v) override {
        CheckName(v);
        Edit().attribute("name").set_value(v.c_str());
    }
    std::string RefersTo() override { return "=" + std::string(node_.text().get()); }
    void SetRefersTo(const std::string& v) override {
        std::string text = !v.empty() && v[0] == '=' ? v.substr(1) : v;
        Edit().text().set(text.c_str());
    }
    host::Ref<host::Range> RefersToRange() override {
        std::string sheet;
        long r1, c1, r2, c2;
        std::string text = node_.text().get();
        if (!ParseAreaRef(text, sheet, r1, c1, r2, c2) || sheet.empty()) Refuse("Application-defined or object-defined error");
        auto ws = book_->SheetNamed(sheet);
        if (!ws || ws->IsChartsheet()) Refuse("Application-defined or object-defined error");
        return MakeRange(ws, r1, c1, r2, c2);
    }
    bool Visible() override { return !node_.attribute("hidden").as_bool(false); }
    void Delete() override {
        book_->WorkbookRoot(true);
        auto parent = node_.parent();
        parent.remove_child(node_);
        if (!parent.first_child()) parent.parent().remove_child(parent);
    }

    static void CheckName(const std::string& n) {
        // The application's rules: a letter, underscore or backslash first; no blanks; not a cell reference.
        bool ok = !n.empty() && host::Len(n) <= 255;
        if (ok) {
            unsigned char f = static_cast<unsigned char>(n[0]);
            ok = std::isalpha(f) || f == '_' || f == '\\' || f >= 0x80;
            for (unsigned char ch : n)
                if (!(std::isalnum(ch) || ch == '_' || ch == '.' || ch == '\\' || ch == '?' || ch >= 0x80)) ok = false;
            std::string u = host::UCase(n);
            if (u == "R" || u == "C" || ParseCellRef(n)) ok = false;
        }
        if (!ok) Refuse("The name that you entered is not valid.");
    }

private:
    pugi::xml_node Edit() {
        book_->WorkbookRoot(true);
        return node_;
    }
    std::shared_ptr<Book> book_;
    pugi::xml_node node_;
};

class NamesImpl : public host::Names {
public:
    explicit NamesImpl(std::shared_ptr<Book> book) : book_(std::move(book)) {}

    long Count() override { return static_cast<long>(Nodes().size()); }
    host::Ref<host::Name> Item(long index) override {
        auto nodes = Nodes();
        if (index < 1 || index > static_cast<long>(nodes.size())) host::Raise(host::err::InvalidProcedureCall);
        return std::make_shared<NameImpl>(book_, nodes[static_cast<size_t>(index - 1)]);
    }
    host::Ref<host::Name> Item(const std::string& name) override {
        // A workbook-level name first; "Sheet1!Local" finds a sheet-level one.
        std::string want = host::UCase(name);
        for (auto n : Nodes()) {
            auto item = std::make_shared<NameImpl>(book_, n);
            if (host::UCase(item->Name_()) == want) return item;
        }
        host::Raise(host::err::InvalidProcedureCall);
    }
    host::Ref<host::Name> Add(const std::string& name, const std::string& refersTo) override {
        NameImpl::CheckName(name);
        auto root = book_->WorkbookRoot(true);
        auto list = root.child("definedNames");
        if (!list) {
            // definedNames follows sheets (and functionGroups / externalReferences).
            pugi::xml_node after = root.child("sheets");
            for (const char* n : {"functionGroups", "externalReferences"})
                if (root.child(n)) after = root.child(n);
            list = root.insert_child_after("definedNames", after);
        }
        for (auto n : list.children("definedName"))
            if (!n.attribute("localSheetId") && host::EqualsNoCase(n.attribute("name").value(), name)) {
                n.text().set((!refersTo.empty() && refersTo[0] == '=' ? refersTo.substr(1) : refersTo).c_str());
                return std::make_shared<NameImpl>(book_, n);
            }
        // Names are kept in order without regard to case, as the application writes them.
        pugi::xml_node before;
        for (auto n : list.children("definedName"))
            if (host::UCase(n.attribute("name").value()) > host::UCase(name)) {
                before = n;
                break;
            }
        auto node = before ? list.insert_child_before("definedName", before) : list.append_child("definedName");
        node.append_attribute("name").set_value(name.c_str());
        node.text().set((!refersTo.empty() && refersTo[0] == '=' ? refersTo.substr(1) : refersTo).c_str());
        return std::make_shared<NameImpl>(book_, node);
    }

private:
    std::vector<pugi::xml_node> Nodes() {
        std::vector<pugi::xml_node> out;
        for (auto n : book_->WorkbookRoot(false).child("definedNames").children("definedName")) out.push_back(n);
        return out;
    }
    std::shared_ptr<Book> book_;
};

template <class Base, class Elem>
class SheetsImpl : public Base {
public:
    SheetsImpl(std::shared_ptr<Book> book, bool worksheetsOnly) : book_(std::move(book)), only_(worksheetsOnly) {}

    long Count() override { return static_cast<long>(List().size()); }
    host::Ref<Elem> Item(long index) override {
        auto list = List();
        if (index < 1 || index > static_cast<long>(list.size())) host::Raise(host::err::SubscriptOutOfRange);
        return list[static_cast<size_t>(index - 1)];
    }
    host::Ref<Elem> Item(const std::string& name) override {
        for (auto& s : List())
            if (host::EqualsNoCase(s->Name(), name)) return s;
        host::Raise(host::err::SubscriptOutOfRange);
    }
    host::Ref<host::Worksheet> Add(host::Ref<host::Sheet> before, host::Ref<host::Sheet> after) override {
        if (before && after) Refuse("Add method of Sheets class failed");
        long pos;
        if (before) pos = before->Index() - 1;
        else if (after) pos = after->Index();
        else pos = book_->ActiveSheet() ? book_->ActiveSheet()->Index() - 1 : 0;
        return book_->AddSheet(pos);
    }

private:
    std::vector<std::shared_ptr<SheetImpl>> List() {
        std::vector<std::shared_ptr<SheetImpl>> out;
        for (auto& e : book_->SheetList())
            if (!only_ || !e.sheet->IsChartsheet()) out.push_back(e.sheet);
        return out;
    }
    std::shared_ptr<Book> book_;
    bool only_;
};

}  // namespace

host::Ref<host::Names> Book::Names() { return std::make_shared<NamesImpl>(shared_from_this()); }
host::Ref<host::Sheets> Book::Sheets() {
    return std::make_shared<SheetsImpl<host::Sheets, host::Sheet>>(shared_from_this(), false);
}
host::Ref<host::Worksheets> Book::Worksheets() {
    return std::make_shared<SheetsImpl<host::Worksheets, host::Worksheet>>(shared_from_this(), true);
}

}  // namespace xlsx
