#include "pages/layout_page.h"

#include <algorithm>

#include "common/common_functions.h"
#include "common/errors.h"
#include "host/collection.h"

namespace ps {

namespace {
constexpr const char* kInvalidFormat = "(invalid format)";
constexpr double kFrameWidth = 330;
constexpr double kGap = 4;
}  // namespace

// ---------------------------------------------------------------- design

void PSLayoutPage::Place(forms::Control& ctl, forms::Control* frame, double dHeight) {
    double dTop = frame ? 16 : kGap;
    for (auto& other : Controls()) {
        if (other.get() == &ctl) continue;
        bool bSibling = frame ? other->Container() == frame
                              : (ctl.kind() == forms::Kind::Frame && other->kind() == forms::Kind::Frame &&
                                 other->Column == ctl.Column);
        if (bSibling) dTop = std::max(dTop, other->Top + other->Height + kGap);
    }
    ctl.Left = frame ? 8 : kGap + ctl.Column * (kFrameWidth + kGap);
    ctl.Top = dTop;
    ctl.Width = frame ? kFrameWidth - 16 : kFrameWidth;
    ctl.Height = dHeight;
    // A frame grows around what it holds.
    if (frame) frame->Height = std::max(frame->Height, dTop + dHeight + 8);
}

forms::Frame& PSLayoutPage::AddFrame(const std::string& name, const std::string& caption) {
    auto& f = Add<forms::Frame>(name);
    f.SetCaption(caption);
    f.Column = iColumn_;
    Place(f, nullptr, 24);
    return f;
}

forms::TextBox& PSLayoutPage::AddTextBox(const std::string& name, forms::Control* frame, long lMaxLength) {
    auto& t = Add<forms::TextBox>(name, frame);
    t.MaxLength = lMaxLength;
    t.GotFocus = [this, &t] { Handle([&] { StyleFormControls(*this, t); }); };
    Place(t, frame, 18);
    return t;
}

forms::ComboBox& PSLayoutPage::AddComboBox(const std::string& name, forms::Control* frame, long lStyle) {
    auto& cbo = Add<forms::ComboBox>(name, frame);
    cbo.Style = lStyle;
    cbo.GotFocus = [this, &cbo] { Handle([&] { StyleFormControls(*this, cbo); }); };
    Place(cbo, frame, 18);
    return cbo;
}

forms::ListBox& PSLayoutPage::AddListBox(const std::string& name, forms::Control* frame, long lMultiSelect) {
    auto& lst = Add<forms::ListBox>(name, frame);
    lst.MultiSelect = lMultiSelect;
    lst.GotFocus = [this, &lst] { Handle([&] { StyleFormControls(*this, lst); }); };
    Place(lst, frame, 60);
    return lst;
}

forms::CheckBox& PSLayoutPage::AddCheckBox(const std::string& name, forms::Control* frame, const std::string& caption) {
    auto& chk = Add<forms::CheckBox>(name, frame);
    chk.SetCaption(caption);
    chk.GotFocus = [this, &chk] { Handle([&] { StyleFormControls(*this, chk); }); };
    Place(chk, frame, 16);
    return chk;
}

forms::OptionButton& PSLayoutPage::AddOption(const std::string& name, int index, forms::Control* frame,
                                             const std::string& caption) {
    auto& opt = Add<forms::OptionButton>(name, frame, index);
    opt.SetCaption(caption);
    opt.GotFocus = [this, &opt] { Handle([&] { StyleFormControls(*this, opt); }); };
    Place(opt, frame, 16);
    return opt;
}

forms::Label& PSLayoutPage::AddLabel(const std::string& name, forms::Control* frame, const std::string& caption) {
    auto& lbl = Add<forms::Label>(name, frame);
    lbl.SetCaption(caption);
    Place(lbl, frame, 14);
    return lbl;
}

forms::Image& PSLayoutPage::AddImage(const std::string& name, forms::Control* frame) {
    auto& img = Add<forms::Image>(name, frame);
    img.Picture = name;
    img.SetVisible(false);
    if (frame) {
        // A small sample beside the frame's inputs.
        Place(img, frame, 45);
        img.Width = 60;
    } else {
        // The sample charts share one spot beside the frames.
        img.Left = (iColumn_ + 1) * (kFrameWidth + kGap) + kGap;
        img.Top = kGap;
        img.Width = 160;
        img.Height = 120;
    }
    return img;
}

forms::TextBox& PSLayoutPage::AddTitleBox(forms::Control* frame) {
    auto& t = AddTextBox("txtTitle", frame, 255);
    t.Height = 24;
    t.Font().Size = 12;
    return t;
}

forms::TextBox& PSLayoutPage::AddAxisBox(const std::string& name, forms::Control* frame, bool& bSticky) {
    auto& t = AddTextBox(name, frame, 255);
    t.GotFocus = [this, &t] {
        Handle([&] {
            StyleFormControls(*this, t);
            sPriorAxisText = t.Text();
        });
    };
    t.Validate = [this, &t, &bSticky](bool&) {
        Handle([&] {
            if (t.Text() != sPriorAxisText) bSticky = true;
        });
    };
    return t;
}

forms::TextBox& PSLayoutPage::AddCommentBox(forms::Control* frame) {
    auto& t = AddTextBox("txtComment", frame, 5000);
    t.MultiLine = true;
    t.Height = 60;
    t.GotFocus = [this, &t] {
        Handle([&] {
            StyleFormControls(*this, t);
            Get<forms::CommandButton>("cmdNext").SetDefault(false);
        });
    };
    t.Validate = [this](bool&) { Handle([&] { Get<forms::CommandButton>("cmdNext").SetDefault(true); }); };
    return t;
}

void PSLayoutPage::AddAxisBoxes(forms::Control* frame) {
    AddLabel("lblHAxis", frame, "Horizontal (X-axis)");
    txtHAxis = &AddAxisBox("txtHAxis", frame, bHAxisSticky);
    AddLabel("lblVAxis", frame, "Vertical (Y-axis)");
    txtVAxis = &AddAxisBox("txtVAxis", frame, bVAxisSticky);
}

forms::ComboBox& PSLayoutPage::AddNumberFormatRow(forms::Control* frame, const std::string& sCaptionName,
                                                  const std::string& sBoxName, const std::string& sExampleName) {
    AddLabel(sCaptionName, frame, "Number Format");
    auto& cbo = AddComboBox(sBoxName, frame, forms::ComboBox::vbComboDropdown);
    cbo.Click = [this] { Handle([&] { ShowNumberExample(); }); };
    cbo.Validate = [this](bool&) { Handle([&] { ShowNumberExample(); }); };
    cboMask_ = &cbo;
    AddLabel(sExampleName, frame, "Example");
    AddLabel("lblMaskExample", frame, "(formatted example)");
    return cbo;
}

void PSLayoutPage::HighlightOffOnButtons(bool bHelpToo) {
    std::vector<std::string> aButtons{"cmdCancel", "cmdBack", "cmdNext", "cmdFinish"};
    if (bHelpToo) aButtons.push_back("cmdHelp");
    for (auto& sName : aButtons)
        Get(sName).GotFocus = [this] { Handle([&] { StyleFormControls(*this); }); };
}

// ---------------------------------------------------------------- shared steps

void PSLayoutPage::LoadColumnNames() {
    colLabelColumns.clear();
    colNumberColumns.clear();
    auto oTable = Obj(Obj(c.colTables).Item(c.sTableID)).documentElement();
    for (auto oColumn : oTable.selectNodes("label-column")) colLabelColumns.push_back(Attr(oColumn, "name"));
    for (auto oColumn : oTable.selectNodes("number-column")) colNumberColumns.push_back(Attr(oColumn, "name"));
}

void PSLayoutPage::FillNumberFormats() {
    cboMask_->Clear();
    for (const char* sFormat : {"#;(#);", "#,###;(#,###);", "$#,###;($#,###);"}) cboMask_->AddItem(sFormat);
}

void PSLayoutPage::ShowNumberExample() {
    std::string sFormat = cboMask_->Text();
    Get("lblMaskExample").SetCaption(c.common->FormatSampleNumber(sFormat.empty() ? "General" : sFormat));
}

bool PSLayoutPage::NumberFormatRefused() const { return Get("lblMaskExample").Caption() == kInvalidFormat; }

void PSLayoutPage::SelectMatching(forms::ListControl& ctl, const std::string& sName) {
    std::string sWanted = host::UCase(sName);
    auto* lst = dynamic_cast<forms::ListBox*>(&ctl);
    for (long i = 0; i < ctl.ListCount(); ++i) {
        if (host::UCase(ctl.List(i)) != sWanted) continue;
        if (lst && lst->MultiSelect != forms::ListBox::vbMultiSelectNone) lst->SetSelected(i, true);
        else ctl.SetListIndex(i);
    }
}

void PSLayoutPage::ClearSelections(forms::ListBox& lst) {
    for (long i = 0; i < lst.ListCount(); ++i) lst.SetSelected(i, false);
}

std::vector<std::string> PSLayoutPage::SelectedItems(const forms::ListBox& lst) {
    std::vector<std::string> out;
    for (long i = 0; i < lst.ListCount(); ++i)
        if (lst.Selected(i)) out.push_back(lst.List(i));
    return out;
}

void PSLayoutPage::ShowOnly(const std::vector<std::string>& aImages, const std::string& sVisible) {
    for (auto& sName : aImages) Get(sName).SetVisible(sName == sVisible);
}

void PSLayoutPage::FillList(forms::ListControl& ctl, const std::vector<std::string>& aItems, bool bSelectFirst) {
    ctl.Clear();
    for (auto& sItem : aItems) ctl.AddItem(sItem);
    // An empty list has no first entry to take: the page opens with nothing chosen.
    if (bSelectFirst && ctl.ListCount() > 0) ctl.SetListIndex(0);
}

// ---------------------------------------------------------------- the chart document

dom::Element PSLayoutPage::ChartElement() const { return Obj(c.oChartDoc).documentElement(); }

std::string PSLayoutPage::Attr(const dom::Element& e, const std::string& sName) const {
    return c.common->GetAttributeText(e, sName);
}

void PSLayoutPage::RemoveChildren(const dom::Element& oChart, std::initializer_list<const char*> aNames) {
    for (const char* sName : aNames)
        for (auto oNode : oChart.selectNodes(sName)) oChart.removeChild(oNode);
}

dom::Element PSLayoutPage::AppendElement(const dom::Element& oParent, const std::string& sName) const {
    return oParent.appendChild(Obj(c.oChartDoc).createElement(sName));
}

void PSLayoutPage::AppendColumn(const dom::Element& oParent, const std::string& sName) const {
    AppendElement(oParent, "column").setAttribute("name", sName);
}

void PSLayoutPage::AppendAxis(const dom::Element& oAxes, const std::string& sType, const std::string& sLabel,
                              bool bSticky) const {
    auto oAxis = AppendElement(oAxes, "axis");
    oAxis.setAttribute("type", sType);
    oAxis.setAttribute("label", sLabel);
    oAxis.setAttribute("sticky", bSticky ? "yes" : "no");
}

void PSLayoutPage::AppendComment(const dom::Element& oChart, const std::string& sText) const {
    AppendElement(oChart, "comment").appendChild(Obj(c.oChartDoc).createTextNode(sText));
}

std::string PSLayoutPage::RestoredComment(const dom::Element& oChart) const {
    auto oComment = oChart.selectSingleNode("comment");
    if (!oComment) return {};
    // The parser folds CR LF to LF; a document that never left memory still has its CR.
    std::string sSaved = oComment.text(), sText;
    for (size_t i = 0; i < sSaved.size(); ++i) {
        if (sSaved[i] == '\n' && (i == 0 || sSaved[i - 1] != '\r')) sText += '\r';
        sText += sSaved[i];
    }
    return sText;
}

std::vector<std::string> PSLayoutPage::ColumnNames(const dom::Element& oChart, const std::string& sPath) const {
    std::vector<std::string> out;
    auto oElement = oChart.selectSingleNode(sPath);
    if (!oElement) return out;
    for (auto oColumn : oElement.selectNodes("column")) out.push_back(Attr(oColumn, "name"));
    return out;
}

void PSLayoutPage::ReportNamedError(const std::string& sWhere) { c.common->ReportError(sWhere); }

}  // namespace ps
