#pragma once
// The layout page of strategic bucket charts: the bucket table and its buckets, what a block stands
// for, how blocks are coloured and in what order they stand.
#include <string>

#include "host/collection.h"
#include "pages/layout_page.h"

namespace ps {

class frmPSLayoutStrBuck : public PSLayoutPage {
public:
    explicit frmPSLayoutStrBuck(Component& c);
    long HelpTopic() const override { return 18; }
    void ValidSelections(bool& bResult) override;

protected:
    void DesignPage() override;
    void LoadPage() override;
    void UpdateChartMetadata() override;
    void FocusForMessage(const std::string& sMessage) override;

private:
    void FillBucketTables();
    void RestoreChartSelections();
    void ShowBuckets();
    void SizeBucketColumns();

    CollectionRef<dom::DocumentRef> colBucketTables;
    host::Dictionary<long> dicBucketIndex;  // table id to its entry in cboBucketTables
    std::string sBucketTableID, sBucketNameColumn, sBucketValueColumn;

    forms::TextBox *txtTitle = nullptr, *txtComment = nullptr;
    forms::ComboBox *cboBucketTables = nullptr, *cboCategories = nullptr, *cboSeries = nullptr;
    forms::ComboBox *cboBlockSequence = nullptr, *cboDataLabelMask = nullptr;
    forms::Grid* grdBuckets = nullptr;
    forms::OptionButton *optBlockSequence0 = nullptr, *optBlockSequence1 = nullptr;
    forms::CheckBox* chkShowNames = nullptr;
};

}  // namespace ps
