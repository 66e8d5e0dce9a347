#pragma once
// The embedded workbook engine's front door: an application object that opens, creates and saves
// .xlsx workbooks and answers the host object model over them.
#include <functional>
#include <string>
#include <vector>

#include "host/workbook.h"
#include "xlsx/package.h"

namespace xlsx {

struct EngineOptions {
    std::string version = "16.0";  // what Application.Version answers
    std::uint64_t maxInflatedSize = kDefaultMaxInflatedSize;  // a workbook's parts together, inflated
    // Taken on every workbook Open reads, by a host that will save it.
    WriterLock writerLock = WriterLock::None;
};

// A macro the host offers by name to Application.Run.
using MacroHandler = std::function<host::Variant(const std::vector<host::Variant>& args)>;

class EngineApplication : public host::Application {
public:
    // Throws xlsx::PackageError (one clear line) for a missing, locked, corrupt or too big file.
    virtual host::Ref<host::Workbook> Open(const std::string& path) = 0;
    // A new workbook with one empty worksheet "Sheet1"; it becomes the active workbook.
    virtual host::Ref<host::Workbook> NewWorkbook() = 0;
    // Whether saving would change what the workbook's file holds: a part added or removed, or an
    // edited part whose XML now differs from the file's (a scratch cell written and cleared again
    // is no change). True for a workbook never saved.
    virtual bool Changed(host::Ref<host::Workbook> workbook) = 0;
    // Closes a workbook without saving; the active workbook becomes Nothing when it was this one.
    virtual void Close(host::Ref<host::Workbook> workbook) = 0;
    // Installs a macro under a name such as "VEXEvents.VEXChartRefreshStarted".
    virtual void SetMacro(const std::string& name, MacroHandler handler) = 0;
    // Marks a workbook as shared among users (MultiUserEditing), as a legacy shared workbook is.
    virtual void SetMultiUserEditing(host::Ref<host::Workbook> workbook, bool shared) = 0;
    // While the user edits a cell the application refuses changes of Interactive, as it does.
    virtual void SetCellEditMode(bool editing) = 0;
};

host::Ref<EngineApplication> NewApplication(EngineOptions options = {});

}  // namespace xlsx
