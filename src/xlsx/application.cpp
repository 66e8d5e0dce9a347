#include <filesystem>

#include "host/constants.h"
#include "host/error.h"
#include "xlsx/book.h"

namespace xlsx {

void Refuse(const std::string& description) { throw host::Error(host::err::ApplicationDefined, description); }

void NotAvailable(const char* member) { host::Unavailable(member); }

namespace {
// The window shows the active sheet of the active workbook; its switches are that sheet's view,
// saved with it.
class WindowImpl : public host::Window {
public:
    explicit WindowImpl(AppImpl& app) : app_(app) {}
    bool DisplayGridlines() override { return Sheet().ViewFlag("showGridLines"); }
    void SetDisplayGridlines(bool v) override { Sheet().SetViewFlag("showGridLines", v); }
    bool DisplayHeadings() override { return Sheet().ViewFlag("showRowColHeaders"); }
    void SetDisplayHeadings(bool v) override { Sheet().SetViewFlag("showRowColHeaders", v); }

private:
    SheetImpl& Sheet() {
        auto book = app_.ActiveWorkbook();
        if (!book) Refuse("Object variable or With block variable not set");
        return dynamic_cast<SheetImpl&>(*book->ActiveSheet());
    }
    AppImpl& app_;
};
}  // namespace

host::Ref<EngineApplication> NewApplication(EngineOptions options) {
    return std::make_shared<AppImpl>(std::move(options));
}

host::Ref<host::Workbook> AppImpl::ActiveWorkbook() { return active_; }

host::Ref<host::Chart> AppImpl::ActiveChart() { return nullptr; }  // nothing is ever selected headless

host::Ref<host::Window> AppImpl::ActiveWindow() {
    if (!active_) return nullptr;
    if (!window_) window_ = std::make_shared<WindowImpl>(*this);
    return window_;
}

void AppImpl::SetInteractive(bool v) {
    // The application refuses this while a cell is being edited; the component detects edit mode by it.
    if (editing_) Refuse("Method 'Interactive' of object '_Application' failed");
    interactive_ = v;
}

void AppImpl::SetCalculation(long v) {
    if (v != host::xlCalculationAutomatic && v != host::xlCalculationManual && v != host::xlCalculationSemiautomatic)
        Refuse("Unable to set the Calculation property of the Application class");
    if (!active_) Refuse("Method 'Calculation' of object '_Application' failed");
    calculation_ = v;
}

std::string AppImpl::StandardFont() { return active_ ? active_->styles().DefaultFontName() : "Calibri"; }
double AppImpl::StandardFontSize() { return active_ ? active_->styles().DefaultFontSize() : 11; }

host::Variant AppImpl::Run(const std::string& macro, const std::vector<host::Variant>& args) {
    if (args.size() > 30) throw host::Error(host::err::InvalidProcedureCall, "Invalid procedure call or argument");
    auto it = macros_.find(host::UCase(macro));
    if (it == macros_.end())
        Refuse("Cannot run the macro '" + macro +
               "'. The macro may not be available in this workbook or all macros may be disabled.");
    return it->second(args);
}

void AppImpl::SetMacro(const std::string& name, MacroHandler handler) {
    if (handler) macros_[host::UCase(name)] = std::move(handler);
    else macros_.erase(host::UCase(name));
}

host::Ref<host::Workbook> AppImpl::Open(const std::string& path) {
    auto pkg = Package::Open(path, {options_.maxInflatedSize, options_.writerLock});
    active_ = std::make_shared<Book>(*this, std::move(pkg), std::filesystem::absolute(path).string());
    return active_;
}

bool AppImpl::Changed(host::Ref<host::Workbook> workbook) {
    auto* book = dynamic_cast<Book*>(workbook.get());
    if (!book) Refuse("The workbook is not one of this engine's.");
    return book->DiffersFromFile();
}

void AppImpl::Close(host::Ref<host::Workbook> workbook) {
    if (workbook == active_) active_.reset();
}

}  // namespace xlsx
