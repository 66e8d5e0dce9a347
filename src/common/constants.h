#pragma once
// The component's fixed names and texts.

namespace ps {

// The product title of all message boxes and page captions.
inline constexpr const char* sProductTitle = "Brindle Plotsmith";

// The very hidden sheets that carry the definitions and the charts' data blocks.
inline constexpr const char* sDefinitionSheet = "VEX_ChartDefinitions";
inline constexpr const char* sDataSheet = "VEX_ChartData";

// The placeholder of messages with variable parts.
inline constexpr const char* sToken = "/TKN/";

// The host's macros around refreshes.
inline constexpr const char* sMacroRefreshStarted = "VEXEvents.VEXChartRefreshStarted";
inline constexpr const char* sMacroRefreshComplete = "VEXEvents.VEXChartRefreshComplete";

// Line break of messages.
inline constexpr const char* vbCrLf = "\r\n";

}  // namespace ps
