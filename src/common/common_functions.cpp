#include "common/common_functions.h"

#include <cmath>

#include "common/clock.h"
#include "common/constants.h"
#include "forms/frontend.h"
#include "host/constants.h"
#include "host/workbook.h"

namespace ps {

// ---------------------------------------------------------------- message boxes

void CommonFunctions::ShowMessage(const std::string& sMessage) {
    std::string sText = sMessage.empty() ? c.sPendingMessage : sMessage;
    c.sPendingMessage.clear();
    if (!sText.empty()) c.dialogs.MsgBox(sText, forms::vbOKOnly, sProductTitle);
}

long CommonFunctions::AskOkCancel(const std::string& sMessage) {
    return c.dialogs.MsgBox(sMessage, forms::vbOKCancel, sProductTitle);
}

void CommonFunctions::ShowRuntimeError(const ErrObject& oErr) {
    c.dialogs.MsgBox(std::string("ERROR") + vbCrLf + "Number: " + std::to_string(oErr.Number) + vbCrLf +
                         "Description: " + oErr.Description + vbCrLf + "Source: " + oErr.Source,
                     forms::vbCritical, "");
}

void CommonFunctions::ReportError(const std::string& sWhere) {
    ShowMessage(sWhere + vbCrLf + CurrentError().Description);
}

void CommonFunctions::ReportHandlerError() {
    c.dialogs.MsgBox(CurrentError().Description, forms::vbOKOnly, c.sCustomAppName + " " + sProductTitle);
}

// ---------------------------------------------------------------- strings and XML

std::string CommonFunctions::ReplaceTokens(const std::string& sTemplate, const std::vector<host::Variant>& aTokens) {
    std::string sText = sTemplate;
    const std::string token = sToken;
    for (const auto& v : aTokens) {
        std::string value = host::CStr(v);
        auto pos = sText.find(token);
        if (pos != std::string::npos) sText.replace(pos, token.size(), value);
    }
    for (auto pos = sText.find(token); pos != std::string::npos; pos = sText.find(token, pos))
        sText.erase(pos, token.size());
    return sText;
}

std::string CommonFunctions::GetAttributeText(const dom::Element& oElement, const std::string& sAttribute) {
    host::Variant v = oElement.getAttribute(sAttribute);
    return v.IsNull() ? std::string{} : host::CStr(v);
}

dom::DocumentRef CommonFunctions::NewXMLDocument(const std::optional<host::Variant>& vSelectionNamespaces) {
    dom::DocumentRef oDoc = dom::NewDocument();
    oDoc->setAsync(false);
    oDoc->setValidateOnParse(false);
    oDoc->setResolveExternals(false);
    oDoc->setPreserveWhiteSpace(true);
    if (vSelectionNamespaces) {
        oDoc->setProperty("SelectionLanguage", "XPath");
        oDoc->setProperty("SelectionNamespaces", *vSelectionNamespaces);
    }
    return oDoc;
}

bool CommonFunctions::SafeBool(const host::Variant& vValue) {
    try {
        return host::CBool(vValue);
    } catch (const std::exception&) {
        return false;
    }
}

std::string CommonFunctions::SafeString(const host::Variant& vValue) {
    try {
        return host::CStr(vValue);
    } catch (const std::exception&) {
        return {};
    }
}

bool CommonFunctions::ArrayContains(const host::Variant& vValue, const std::vector<host::Variant>& aValues) {
    try {
        for (const auto& v : aValues)
            if (v == vValue) return true;
    } catch (const std::exception&) {
    }
    return false;
}

// ---------------------------------------------------------------- worksheets

bool CommonFunctions::SheetExists(const host::Variant& vName) {
    std::string sName = host::UCase(host::CStr(vName));
    auto sheets = Obj(c.oWorkbook).Sheets();
    long n = sheets->Count();
    for (long i = 1; i <= n; ++i)
        if (host::UCase(sheets->Item(i)->Name()) == sName) return true;
    return false;
}

bool CommonFunctions::SheetIsVisible(const host::Variant& vName) {
    try {
        auto sheets = Obj(c.oWorkbook).Worksheets();
        bool byIndex = vName.type() == host::Variant::Type::Long || vName.type() == host::Variant::Type::Double;
        auto sheet = byIndex ? sheets->Item(host::CLng(vName)) : sheets->Item(host::CStr(vName));
        return sheet->Visible() != host::xlSheetHidden;
    } catch (const std::exception&) {
        return false;
    }
}

bool CommonFunctions::CreateSheet(const std::string& sName, long lPosition, long lVisible) {
    host::Ref<host::Worksheet> oSheet;
    try {
        auto& wb = Obj(c.oWorkbook);
        auto oActive = wb.ActiveSheet();
        auto sheets = wb.Sheets();
        if (lPosition == 0) oSheet = sheets->Add(sheets->Item(1L));
        else if (lPosition == 1) oSheet = sheets->Add(nullptr, sheets->Item(sheets->Count()));
        else oSheet = sheets->Add();
        oSheet->SetName(sName);
        oSheet->SetVisible(lVisible);
        if (lVisible != host::xlSheetVisible) Obj(oActive).Activate();
        return true;
    } catch (const std::exception&) {
        // Only a sheet that was added is taken away: a workbook that refuses new sheets (its
        // structure protected) leaves none, and the caller words the failure. Not guarded: a
        // failure of the deletion reaches the caller's error block.
        if (oSheet) {
            auto& app = Obj(c.oApplication);
            app.SetDisplayAlerts(false);
            oSheet->Delete();
            app.SetDisplayAlerts(true);
        }
        return false;
    }
}

bool CommonFunctions::DeleteSheetRow(const host::Ref<host::Worksheet>& oSheet, long lRow) {
    try {
        Obj(oSheet).Rows(lRow)->Delete(host::xlUp);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

host::Variant CommonFunctions::InsertSheetRow(const host::Ref<host::Worksheet>& oSheet, long lRow) {
    try {
        Obj(oSheet).Rows(lRow)->Insert();
    } catch (const std::exception&) {
        ReportError("CommonFunctions.InsertSheetRow");
    }
    return {};
}

host::Variant CommonFunctions::GetCellValue(const host::Ref<host::Worksheet>& oSheet, long lRow, long lColumn,
                                            long lKind) {
    try {
        auto cell = Obj(oSheet).Cells(lRow, lColumn);
        host::Variant vValue = cell->Value();
        std::string sText = cell->Text();
        switch (lKind) {
            case 0: return sText;
            case 1: return host::CDbl(vValue);
            case 2:
                // A cell error fails this conversion too, so that callers see "" and not "Error 2007".
                if (vValue.IsError()) host::Raise(host::err::TypeMismatch);
                return host::CStr(vValue);
            default: return {};
        }
    } catch (const std::exception&) {
        switch (lKind) {
            case 0: return std::string{};
            case 1: return 0.0;
            case 2: return std::string{};
            default: return host::Variant::Null();
        }
    }
}

// ---------------------------------------------------------------- other

void CommonFunctions::YieldToHost() {
    double now = c.clock.Timer();
    if (now - static_cast<double>(c.lLastYieldTime) >= 2.0) {
        c.lLastYieldTime = static_cast<long>(std::nearbyint(now));
        c.frontEnd.DoEvents();
    }
}

std::string CommonFunctions::FormatSampleNumber(const std::string& sNumberFormat) {
    try {
        auto cell = Obj(c.oWorkbook).Worksheets()->Item(std::string(sDefinitionSheet))->Cells(1, 2);
        cell->SetValue(12345.6789);
        cell->SetNumberFormat(sNumberFormat);
        std::string sResult = cell->Text();
        cell->Clear();
        cell->SetNumberFormat("General");
        return sResult;
    } catch (const std::exception&) {
        return "(invalid format)";
    }
}

}  // namespace ps
