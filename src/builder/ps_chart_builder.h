#pragma once
// PSChartBuilder: rebuilds one chart, all charts, or the charts of one table, and holds the
// variables of the chart being built. A build runs validation (validation.cpp), the map
// (pivot_map.cpp, bubble_map.cpp, bucket_map.cpp), the data sheet (data_sheet.cpp), its finishing
// (data_sheet_finishing.cpp) and the drawing, in the order PopulateChart gives; the map variables
// live from one build until the next replaces them.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "builder/map_instruction.h"
#include "common/component.h"
#include "dom/document.h"
#include "host/collection.h"
#include "host/fwd.h"
#include "host/variant.h"

namespace ps {

// A dictionary variable of the builder; null until a map makes it.
using DictionaryRef = std::shared_ptr<host::Dictionary<host::Variant>>;
using MapInstructionRef = std::shared_ptr<CPSMapInstruction>;

// Every map numbers at most this many series, bubbles or bucket items, and says so when it stops.
inline constexpr long lMaxSeries = 254;
inline constexpr const char* sSeriesLimit =
    "This chart type is limited to 254 series.\r\nSome data will be dropped from chart '/TKN/'.";

// The pivoted data of one chart: category index by series index, both from 1; all Empty at first.
class DataRectangle {
public:
    DataRectangle(long lCategories, long lSeries);
    long Categories() const { return lCategories_; }
    long Series() const { return lSeries_; }
    // Raises "Subscript out of range" (9) outside the bounds.
    host::Variant& operator()(long lCategory, long lSeries);

private:
    long lCategories_;
    long lSeries_;
    std::vector<host::Variant> aCells_;
};

// A series' fill, carried from the series to the legend that the component draws itself.
class CPSColor {
public:
    host::Variant Color() const { return vColor_; }
    void SetColor(const host::Variant& v) { vColor_ = v; }
    host::Variant ColorIndex() const { return vColorIndex_; }
    void SetColorIndex(const host::Variant& v) { vColorIndex_ = v; }
    host::Variant Pattern() const { return vPattern_; }
    void SetPattern(const host::Variant& v) { vPattern_ = v; }
    host::Variant PatternColor() const { return vPatternColor_; }
    void SetPatternColor(const host::Variant& v) { vPatternColor_ = v; }
    host::Variant PatternColorIndex() const { return vPatternColorIndex_; }
    void SetPatternColorIndex(const host::Variant& v) { vPatternColorIndex_ = v; }

private:
    host::Variant vColor_, vColorIndex_, vPattern_, vPatternColor_, vPatternColorIndex_;
};

// The group of shapes that the component draws as the legend of bubble and bucket charts.
inline constexpr const char* sDrawnLegend = "VEX_Legend";

// A legend place not stored: the persisted left and top read this until the user drags the legend.
inline constexpr double dUnsetLegendPlace = -1E+50;

class PSChartBuilder {
public:
    explicit PSChartBuilder(Component& c) : c(c) {}

    // ---- the refresh driver
    void PopulateAllCharts();
    void RefreshAllCharts();
    void PopulateModifiedCharts(const std::string& sTableRangeName);
    void RefreshChart(const std::string& sChartID);
    void PopulateChart(const std::string& sChartID);

    // ---- source validation: checks a definition against colTables and carries the table's
    // geometry and column numbers into it; the first failing rule shows its message.
    bool ValidateSourceData(const dom::Element& oChartElement);
    bool ValidateSourceColumn(const dom::Element& oColumnElement, const dom::Element& oTableElement,
                              const std::string& sHeadingsIn);
    // sColumnKind "bucket-name-column" or "bucket-value-column"; 0 when no column fits.
    long BucketColumnPosition(const std::string& sColumnName, const std::string& sColumnKind,
                              const dom::Element& oTableElement);

    // ---- the map: fills the map variables below from a validated definition
    bool BuildPivotMap(const dom::Element& oChartElement);
    // Empty map variables for a new map (every map builder starts here).
    void NewMap();
    // Takes the rectangle's size from a finished map; an empty map is reported from sWhere, in a
    // plain box or through the component's message, and answers false.
    bool CountMap(const std::string& sWhere, bool bPlainBox);

    // ---- the data sheet
    bool PopulateDataSheetOffi2007(const dom::Element& oChartElement);
    // The walk of the map over the table; nothing after an error, which was shown.
    std::optional<DataRectangle> GetSourceData(const dom::Element& oChartElement);
    bool MoveToDataSheet(long lStartRow, const dom::Element& oChartElement, const std::string& sChartID,
                         DataRectangle& aData, const host::Ref<host::Worksheet>& oSheet);
    bool CreateDataSheet();

    // ---- finishing the data sheet
    bool SortDataSheet(const dom::Element& oChartElement);

    // The chart being built.
    std::string mChartType = "unknown";
    host::Ref<host::Chart> mChart;
    bool mNewOrCopiedChart = false;
    long mSavedCalculation = 0;

    // The map: upper-cased text to a 1-based index, and to the text as first seen.
    DictionaryRef mCategoryPositions;
    DictionaryRef mCategoryNames;
    DictionaryRef mSeriesPositions;
    DictionaryRef mSeriesNames;
    CollectionRef<MapInstructionRef> mMapInstructions;
    std::shared_ptr<host::Dictionary<double>> mStrategicBuckets;
    long mCategoryCount = 0;  // rows of the rectangle
    long mSeriesCount = 0;    // columns of the rectangle

    // The look persisted by read-back, loaded before each drawing over the defaults.
    std::string mLegendVisibility = "auto";
    host::Variant mLegendPosition;
    double mLegendLeft = dUnsetLegendPlace;
    double mLegendTop = dUnsetLegendPlace;
    host::Variant mLegendFontName, mLegendFontStyle, mLegendFontSize, mLegendFontColor, mLegendFontAutoScale;
    host::Variant mLabelFontName, mLabelFontStyle, mLabelFontSize, mLabelFontColor, mLabelFontBackgroundColor,
        mLabelFontAutoScale;
    host::Variant mBucketLabelFontName, mBucketLabelFontSize, mBucketLabelFontStyle, mBucketLabelFontColor,
        mBucketLabelFontAutoScale;
    host::Variant mLabelAxisFontName, mLabelAxisFontSize, mLabelAxisFontStyle, mLabelAxisFontColor,
        mLabelAxisFontAutoScale;
    host::Variant mValueAxisFontName, mValueAxisFontSize, mValueAxisFontStyle, mValueAxisFontColor,
        mValueAxisFontAutoScale;

    // The colour of each distinct series name of a bubble or bucket chart, for the drawn legend.
    CollectionRef<std::shared_ptr<CPSColor>> mSeriesColors;

    // ---- drawing, by family; each reports its own failure and leaves what it drew
    void RetrievePersistedProperties(const dom::Element& oChartElement);
    void PopulateABCChart(const dom::Element& oChartElement);
    void SetABCChartAttributes(const dom::Element& oChartElement);
    void ApplyLegendAttributes();
    bool ApplyLegendVisibility();
    // The definition's title, or none; data labels of one type and place in the persisted label font.
    void ApplyTitle(const dom::Element& oChartElement);
    void ApplyTitleAndAxes(const dom::Element& oChartElement, bool bYieldPerAxis);
    void ApplyAxisTitle(bool bLabel, const std::string& sLabel, bool bSizeThroughVal);
    void LabelAllSeries(long lType, long lPosition);
    void PopulatePieChart(const dom::Element& oChartElement);
    void SetPieChartAttributes(const dom::Element& oChartElement);
    void SetChartComment(const dom::Element& oChartElement);
    void PopulateBubbleChart(const dom::Element& oChartElement);
    void SetBubbleChartAttributes(const dom::Element& oChartElement);
    void SetBubbleChartQuadrants(const dom::Element& oChartElement);
    void PopulateStrBuckChart(const dom::Element& oChartElement);
    void SetStrBuckChartAttributes(const dom::Element& oChartElement);
    // Draws the legend of shapes on the chart, or with False takes it away.
    void BuildChartLegend(bool bDraw);

private:
    // A position read from a map dictionary: a key never numbered reads Empty, which counts 0.
    static long Position(const host::Variant& vPosition) { return vPosition.IsEmpty() ? 0 : host::CLng(vPosition); }
    bool OlderHost();  // version 11 or below: no busy window
    void RunRefresh(long lBusyMethod, const std::string& sChartID);
    void EnterRefreshState(bool& bScreenUpdating);
    void LeaveRefreshState(bool bScreenUpdating);
    void DeleteAllSeries();
    void CrosshatchChartArea();

    // Map builders of their own families.
    bool BuildBubbleMap(const dom::Element& oChartElement);
    bool BuildStrBuckMap(const dom::Element& oChartElement);

    // Finishing and drawing by family.
    void AdjustBubbleSizes(const dom::Element& oChartNode);
    void InsertBucketData(const dom::Element& oChartElement);
    // The block's header row on the data sheet, from the definition.
    long StartRow(const dom::Element& oChartElement);
    // "=VEX_ChartData!R": the start of every R1C1 reference into the data block.
    static std::string DataSheetPrefix();
    host::Ref<host::Worksheet> DataSheet();

    // The colours the host gives new series of a bubble or bucket chart, one per distinct name.
    struct SeriesColors {
        host::Collection<std::shared_ptr<CPSColor>> colSeriesColors;  // by "KEY" and the series' number
        host::Collection<std::shared_ptr<CPSColor>> colNamedColors;   // by name
        long lSeriesCount = 0;
        long lColorCount = 0;
    };
    void TakeSeriesColor(host::Series& oSeries, const std::string& sName, SeriesColors& k);
    static void PaintSeries(host::Series& oSeries, const CPSColor& oColor);
    void ApplyFamilyLegend(const std::string& sWhere);

    Component& c;
};

}  // namespace ps
