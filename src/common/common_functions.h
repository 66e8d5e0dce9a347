#pragma once
// The small procedures the whole component shares: message boxes and the forms of error report,
// tokens in messages, XML helpers, worksheet helpers and the yield to the host.
#include <optional>
#include <string>
#include <vector>

#include "common/component.h"
#include "common/errors.h"
#include "dom/document.h"
#include "host/collection.h"
#include "host/fwd.h"
#include "host/variant.h"

namespace forms {
class Form;
struct FontAttributes;
}  // namespace forms

namespace ps {

// ---- locale support (locale.cpp): only fonts follow the user's locale, never texts
// The user's default locale identifier, worked out from the POSIX locale of the environment
// (LC_ALL, LC_CTYPE, LANG); 1033 when none names a language.
long GetUserDefaultLCID();
// The character set, and for the East Asian locales the typeface, that fit a locale.
void ApplyLocaleFont(forms::FontAttributes& oFont, long lLCID);
void ApplyLocaleFont(forms::FontAttributes& oFont);
// The system's interface typeface (an empty name) and a least size of 8.
void SetDefaultLocaleFont(forms::FontAttributes& oFont);
// The form's font and those of its controls, grids apart; controls without a font are passed over.
void ApplyLocaleFontsToForm(forms::Form& oForm, long lLCID);
void ApplyLocaleFontsToForm(forms::Form& oForm);

class CommonFunctions {
public:
    explicit CommonFunctions(Component& c) : c(c) {}

    // ---- message boxes
    // Shows sMessage, or the pending message when sMessage is empty; the pending message is
    // cleared in every case.
    void ShowMessage(const std::string& sMessage);
    long AskOkCancel(const std::string& sMessage);  // vbOK or vbCancel
    void ShowRuntimeError(const ErrObject& oErr);

    // ---- error reports, inside a catch block
    // A module procedure's report: "Module.Procedure", CR LF, the description, through ShowMessage.
    void ReportError(const std::string& sWhere);
    // An event handler's report: the bare description, OK only, titled with the host's name.
    void ReportHandlerError();

    // ---- strings and XML
    std::string ReplaceTokens(const std::string& sTemplate, const std::vector<host::Variant>& aTokens);
    std::string GetAttributeText(const dom::Element& oElement, const std::string& sAttribute);
    dom::DocumentRef NewXMLDocument(const std::optional<host::Variant>& vSelectionNamespaces = std::nullopt);
    static bool SafeBool(const host::Variant& vValue);
    static std::string SafeString(const host::Variant& vValue);
    static bool ArrayContains(const host::Variant& vValue, const std::vector<host::Variant>& aValues);
    // Answers False only when the read fails with error 5; any other failure (a Nothing
    // collection among them) leaves True.
    template <class T>
    static bool CollectionHasKey(const std::string& sKey, host::Collection<T>* oCollection) {
        bool bResult = true;
        try {
            if (!oCollection) host::Raise(host::err::ObjectVariableNotSet);
            oCollection->Item(sKey);
        } catch (const host::Error& e) {
            if (e.Number() == host::err::InvalidProcedureCall) bResult = false;
        }
        return bResult;
    }
    template <class T>
    static bool CollectionHasKey(const std::string& sKey, const CollectionRef<T>& oCollection) {
        return CollectionHasKey(sKey, oCollection.get());
    }

    // ---- worksheets of oWorkbook
    bool SheetExists(const host::Variant& vName);
    bool SheetIsVisible(const host::Variant& vName);
    // lPosition 0 before the first sheet, 1 after the last, other values the host's default.
    bool CreateSheet(const std::string& sName, long lPosition, long lVisible);
    bool DeleteSheetRow(const host::Ref<host::Worksheet>& oSheet, long lRow);
    host::Variant InsertSheetRow(const host::Ref<host::Worksheet>& oSheet, long lRow);
    // lKind 0 the displayed text, 1 the value as a Double, 2 the value as text, other Empty.
    host::Variant GetCellValue(const host::Ref<host::Worksheet>& oSheet, long lRow, long lColumn, long lKind);

    // ---- other
    // Lets the host process its messages, at most once per two seconds of the clock.
    void YieldToHost();
    std::string FormatSampleNumber(const std::string& sNumberFormat);

private:
    Component& c;
};

}  // namespace ps
