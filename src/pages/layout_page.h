#pragma once
// What the four layout pages share: the column names of the source table, the axis boxes that
// follow the chosen columns until the user types into them, the comment box that takes Enter, the
// number format box with its live sample, the focus highlight, the enabled look, and the pieces of
// the chart document that every page reads and writes.
#include <initializer_list>
#include <string>
#include <vector>

#include "dom/document.h"
#include "pages/page.h"

namespace ps {

class PSLayoutPage : public PSWizardPage {
public:
    using PSWizardPage::PSWizardPage;

protected:
    // ---- design: controls inside a frame (nullptr: on the form), placed one under the other
    forms::Frame& AddFrame(const std::string& name, const std::string& caption);
    // The frames added after this stand in the next column of the page.
    void NextColumn() { ++iColumn_; }
    forms::TextBox& AddTextBox(const std::string& name, forms::Control* frame, long lMaxLength);
    forms::ComboBox& AddComboBox(const std::string& name, forms::Control* frame, long lStyle);
    forms::ListBox& AddListBox(const std::string& name, forms::Control* frame, long lMultiSelect);
    forms::CheckBox& AddCheckBox(const std::string& name, forms::Control* frame, const std::string& caption);
    forms::OptionButton& AddOption(const std::string& name, int index, forms::Control* frame,
                                   const std::string& caption);
    forms::Label& AddLabel(const std::string& name, forms::Control* frame, const std::string& caption);
    forms::Image& AddImage(const std::string& name, forms::Control* frame = nullptr);
    // The title box of frame 1.
    forms::TextBox& AddTitleBox(forms::Control* frame);
    // The two axis boxes with their captions, txtHAxis and txtVAxis: an edit makes the box's sticky
    // flag True for the rest of the page's life.
    void AddAxisBoxes(forms::Control* frame);
    // The multi-line comment box: while it has the focus, Enter is a new line, not cmdNext.
    forms::TextBox& AddCommentBox(forms::Control* frame);
    // The editable number format box under its caption, then "Example" and the sample
    // lblMaskExample, which the box's click and validate refresh. The pages name the row's first
    // three controls each their own way.
    forms::ComboBox& AddNumberFormatRow(forms::Control* frame, const std::string& sCaptionName,
                                        const std::string& sBoxName, const std::string& sExampleName);
    // The buttons that clear the focus highlight; cmdHelp on some pages only.
    void HighlightOffOnButtons(bool bHelpToo);

    // ---- handlers under the plain error block
    template <class F>
    void OnClick(forms::Control& ctl, F fn) {
        ctl.Click = [this, fn] { Handle(fn); };
    }

    // ---- shared steps
    void LoadColumnNames();
    void FillNumberFormats();
    void ShowNumberExample();
    bool NumberFormatRefused() const;
    // Selects each entry whose text equals sName without regard to case: the current entry of a
    // combo box or single-selection list, one more selected item of a multi-selection list.
    static void SelectMatching(forms::ListControl& ctl, const std::string& sName);
    static void ClearSelections(forms::ListBox& lst);
    static std::vector<std::string> SelectedItems(const forms::ListBox& lst);
    // Of the named images, the one called sVisible shows and all others hide.
    void ShowOnly(const std::vector<std::string>& aImages, const std::string& sVisible);
    // Fills a list with the given names; a combo then takes its first entry when it has one.
    static void FillList(forms::ListControl& ctl, const std::vector<std::string>& aItems, bool bSelectFirst);

    // ---- the chart document
    dom::Element ChartElement() const;
    std::string Attr(const dom::Element& e, const std::string& sName) const;
    static void RemoveChildren(const dom::Element& oChart, std::initializer_list<const char*> aNames);
    dom::Element AppendElement(const dom::Element& oParent, const std::string& sName) const;
    void AppendColumn(const dom::Element& oParent, const std::string& sName) const;
    void AppendAxis(const dom::Element& oAxes, const std::string& sType, const std::string& sLabel, bool bSticky) const;
    void AppendComment(const dom::Element& oChart, const std::string& sText) const;
    // The saved comment with its line ends as a text box wants them.
    std::string RestoredComment(const dom::Element& oChart) const;
    // The `name` of each `column` child of the first element sPath finds; none without it.
    std::vector<std::string> ColumnNames(const dom::Element& oChart, const std::string& sPath) const;

    // Runs a procedure under the named error block: sWhere, CR LF, the description.
    template <class F>
    void Named(const std::string& sWhere, F&& body) {
        try {
            body();
        } catch (const std::exception&) {
            ReportNamedError(sWhere);
        }
    }
    void ReportNamedError(const std::string& sWhere);

    std::vector<std::string> colLabelColumns;
    std::vector<std::string> colNumberColumns;
    std::string sPriorAxisText;
    bool bHAxisSticky = false;
    bool bVAxisSticky = false;
    forms::TextBox *txtHAxis = nullptr, *txtVAxis = nullptr;  // on the pages with axis labels

private:
    forms::TextBox& AddAxisBox(const std::string& name, forms::Control* frame, bool& bSticky);
    // Puts a control under the last one of its frame, a frame under the last frame.
    void Place(forms::Control& ctl, forms::Control* frame, double dHeight);
    int iColumn_ = 0;
    forms::ComboBox* cboMask_ = nullptr;
};

}  // namespace ps
