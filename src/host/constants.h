#pragma once
// The application's automation constants, under their automation names.

namespace host {

// Sheets
inline constexpr long xlSheetVisible = -1;
inline constexpr long xlSheetHidden = 0;
inline constexpr long xlSheetVeryHidden = 2;
inline constexpr long xlWorksheet = -4167;
inline constexpr long xlChart = -4109;

// Calculation and the pointer
inline constexpr long xlCalculationAutomatic = -4105;
inline constexpr long xlCalculationManual = -4135;
inline constexpr long xlCalculationSemiautomatic = 2;
inline constexpr long xlDefault = -4143;
inline constexpr long xlWait = 2;

// Ranges
inline constexpr long xlUp = -4162;
inline constexpr long xlDown = -4121;
inline constexpr long xlToLeft = -4159;
inline constexpr long xlToRight = -4161;
inline constexpr long xlShiftUp = -4162;
inline constexpr long xlShiftDown = -4121;
inline constexpr long xlAscending = 1;
inline constexpr long xlDescending = 2;
inline constexpr long xlGuess = 0;
inline constexpr long xlYes = 1;
inline constexpr long xlNo = 2;
inline constexpr long xlTopToBottom = 1;
inline constexpr long xlLeftToRight = 2;

// Colours, fills and lines
inline constexpr long xlNone = -4142;
inline constexpr long xlAutomatic = -4105;
inline constexpr long xlColorIndexNone = -4142;
inline constexpr long xlColorIndexAutomatic = -4105;
inline constexpr long xlSolid = 1;
inline constexpr long xlContinuous = 1;
inline constexpr long xlDash = -4115;
inline constexpr long xlDot = -4118;
inline constexpr long xlLineStyleNone = -4142;
inline constexpr long xlHairline = 1;
inline constexpr long xlThin = 2;
inline constexpr long xlMedium = -4138;
inline constexpr long xlThick = 4;
inline constexpr long xlUnderlineStyleNone = -4142;
inline constexpr long xlUnderlineStyleSingle = 2;
inline constexpr long xlUnderlineStyleDouble = -4119;

// Cell error values, as Variant error codes
inline constexpr long xlErrDiv0 = 2007;
inline constexpr long xlErrNA = 2042;
inline constexpr long xlErrName = 2029;
inline constexpr long xlErrNull = 2000;
inline constexpr long xlErrNum = 2036;
inline constexpr long xlErrRef = 2023;
inline constexpr long xlErrValue = 2015;

}  // namespace host

// Shape and chart constants are in host/chart_constants.h.
