#pragma once
// The automation constants of shapes and charts, under their automation names. xlNone,
// xlAutomatic, line styles and border weights are in host/constants.h, included here.
#include "host/constants.h"

namespace host {

// ---------------------------------------------------------------- chart types (XlChartType)

inline constexpr long xlArea = 1;
inline constexpr long xlAreaStacked = 76;
inline constexpr long xlAreaStacked100 = 77;
inline constexpr long xl3DArea = -4098;
inline constexpr long xl3DAreaStacked = 78;
inline constexpr long xl3DAreaStacked100 = 79;

inline constexpr long xlBarClustered = 57;
inline constexpr long xlBarStacked = 58;
inline constexpr long xlBarStacked100 = 59;
inline constexpr long xl3DBarClustered = 60;
inline constexpr long xl3DBarStacked = 61;
inline constexpr long xl3DBarStacked100 = 62;

inline constexpr long xlColumnClustered = 51;
inline constexpr long xlColumnStacked = 52;
inline constexpr long xlColumnStacked100 = 53;
inline constexpr long xl3DColumnClustered = 54;
inline constexpr long xl3DColumnStacked = 55;
inline constexpr long xl3DColumnStacked100 = 56;
inline constexpr long xl3DColumn = -4100;  // columns in depth, one row per series

inline constexpr long xlLine = 4;
inline constexpr long xlLineStacked = 63;
inline constexpr long xlLineStacked100 = 64;
inline constexpr long xlLineMarkers = 65;
inline constexpr long xlLineMarkersStacked = 66;
inline constexpr long xlLineMarkersStacked100 = 67;
inline constexpr long xl3DLine = -4101;

inline constexpr long xlPie = 5;
inline constexpr long xlPieExploded = 69;
inline constexpr long xl3DPie = -4102;
inline constexpr long xl3DPieExploded = 70;
inline constexpr long xlPieOfPie = 68;
inline constexpr long xlBarOfPie = 71;
inline constexpr long xlDoughnut = -4120;
inline constexpr long xlDoughnutExploded = 80;

inline constexpr long xlXYScatter = -4169;
inline constexpr long xlXYScatterSmooth = 72;
inline constexpr long xlXYScatterSmoothNoMarkers = 73;
inline constexpr long xlXYScatterLines = 74;
inline constexpr long xlXYScatterLinesNoMarkers = 75;
inline constexpr long xlBubble = 15;
inline constexpr long xlBubble3DEffect = 87;

inline constexpr long xlRadar = -4151;
inline constexpr long xlRadarMarkers = 81;
inline constexpr long xlRadarFilled = 82;

inline constexpr long xlSurface = 83;
inline constexpr long xlSurfaceWireframe = 84;
inline constexpr long xlSurfaceTopView = 85;
inline constexpr long xlSurfaceTopViewWireframe = 86;

inline constexpr long xlStockHLC = 88;
inline constexpr long xlStockOHLC = 89;
inline constexpr long xlStockVHLC = 90;
inline constexpr long xlStockVOHLC = 91;

inline constexpr long xlCylinderColClustered = 92;
inline constexpr long xlCylinderColStacked = 93;
inline constexpr long xlCylinderColStacked100 = 94;
inline constexpr long xlCylinderBarClustered = 95;
inline constexpr long xlCylinderBarStacked = 96;
inline constexpr long xlCylinderBarStacked100 = 97;
inline constexpr long xlCylinderCol = 98;
inline constexpr long xlConeColClustered = 99;
inline constexpr long xlConeColStacked = 100;
inline constexpr long xlConeColStacked100 = 101;
inline constexpr long xlConeBarClustered = 102;
inline constexpr long xlConeBarStacked = 103;
inline constexpr long xlConeBarStacked100 = 104;
inline constexpr long xlConeCol = 105;
inline constexpr long xlPyramidColClustered = 106;
inline constexpr long xlPyramidColStacked = 107;
inline constexpr long xlPyramidColStacked100 = 108;
inline constexpr long xlPyramidBarClustered = 109;
inline constexpr long xlPyramidBarStacked = 110;
inline constexpr long xlPyramidBarStacked100 = 111;
inline constexpr long xlPyramidCol = 112;

// The chart types of version 16; charts of these kinds live in their own part format.
inline constexpr long xlTreemap = 117;
inline constexpr long xlHistogram = 118;
inline constexpr long xlWaterfall = 119;
inline constexpr long xlSunburst = 120;
inline constexpr long xlBoxwhisker = 121;
inline constexpr long xlPareto = 122;
inline constexpr long xlFunnel = 123;
inline constexpr long xlRegionMap = 140;

// Not a chart type of its own: what a chart or a series of a mixed chart can report as its type.
inline constexpr long xlCombination = -4111;

// ---------------------------------------------------------------- axes

// XlAxisType, XlAxisGroup
inline constexpr long xlCategory = 1;
inline constexpr long xlValue = 2;
inline constexpr long xlSeriesAxis = 3;
inline constexpr long xlPrimary = 1;
inline constexpr long xlSecondary = 2;

// XlAxisCrosses
inline constexpr long xlAxisCrossesAutomatic = -4105;
inline constexpr long xlAxisCrossesCustom = -4114;
inline constexpr long xlAxisCrossesMaximum = 2;
inline constexpr long xlAxisCrossesMinimum = 4;

// XlScaleType; xlLinear and xlLogarithmic are the trend line names of the same numbers.
inline constexpr long xlScaleLinear = -4132;
inline constexpr long xlScaleLogarithmic = -4133;
inline constexpr long xlLinear = -4132;
inline constexpr long xlLogarithmic = -4133;

// XlDisplayUnit; none is xlNone
inline constexpr long xlHundreds = -2;
inline constexpr long xlThousands = -3;
inline constexpr long xlTenThousands = -4;
inline constexpr long xlHundredThousands = -5;
inline constexpr long xlMillions = -6;
inline constexpr long xlTenMillions = -7;
inline constexpr long xlHundredMillions = -8;
inline constexpr long xlThousandMillions = -9;
inline constexpr long xlMillionMillions = -10;
inline constexpr long xlCustom = -4114;

// XlCategoryType, XlTimeUnit
inline constexpr long xlCategoryScale = 2;
inline constexpr long xlTimeScale = 3;
inline constexpr long xlAutomaticScale = -4105;
inline constexpr long xlDays = 0;
inline constexpr long xlMonths = 1;
inline constexpr long xlYears = 2;

// XlTickLabelPosition, XlTickMark
inline constexpr long xlTickLabelPositionHigh = -4127;
inline constexpr long xlTickLabelPositionLow = -4134;
inline constexpr long xlTickLabelPositionNextToAxis = 4;
inline constexpr long xlTickLabelPositionNone = -4142;
inline constexpr long xlTickMarkCross = 4;
inline constexpr long xlTickMarkInside = 2;
inline constexpr long xlTickMarkNone = -4142;
inline constexpr long xlTickMarkOutside = 3;

// XlTickLabelOrientation
inline constexpr long xlTickLabelOrientationAutomatic = -4105;
inline constexpr long xlTickLabelOrientationDownward = -4170;
inline constexpr long xlTickLabelOrientationHorizontal = -4128;
inline constexpr long xlTickLabelOrientationUpward = -4171;
inline constexpr long xlTickLabelOrientationVertical = -4166;

// ---------------------------------------------------------------- text

// XlOrientation: titles and labels; a number from -90 to 90 is an angle in degrees instead.
inline constexpr long xlDownward = -4170;
inline constexpr long xlHorizontal = -4128;
inline constexpr long xlUpward = -4171;
inline constexpr long xlVertical = -4166;

// XlHAlign, XlVAlign
inline constexpr long xlHAlignCenter = -4108;
inline constexpr long xlHAlignCenterAcrossSelection = 7;
inline constexpr long xlHAlignDistributed = -4117;
inline constexpr long xlHAlignFill = 5;
inline constexpr long xlHAlignGeneral = 1;
inline constexpr long xlHAlignJustify = -4130;
inline constexpr long xlHAlignLeft = -4131;
inline constexpr long xlHAlignRight = -4152;
inline constexpr long xlVAlignBottom = -4107;
inline constexpr long xlVAlignCenter = -4108;
inline constexpr long xlVAlignDistributed = -4117;
inline constexpr long xlVAlignJustify = -4130;
inline constexpr long xlVAlignTop = -4160;

// XlBackground: behind a chart text
inline constexpr long xlBackgroundAutomatic = -4105;
inline constexpr long xlBackgroundOpaque = 3;
inline constexpr long xlBackgroundTransparent = 2;

// ---------------------------------------------------------------- legend and labels

// XlLegendPosition
inline constexpr long xlLegendPositionBottom = -4107;
inline constexpr long xlLegendPositionCorner = 2;
inline constexpr long xlLegendPositionCustom = -4161;
inline constexpr long xlLegendPositionLeft = -4131;
inline constexpr long xlLegendPositionRight = -4152;
inline constexpr long xlLegendPositionTop = -4160;

// XlDataLabelPosition
inline constexpr long xlLabelPositionAbove = 0;
inline constexpr long xlLabelPositionBelow = 1;
inline constexpr long xlLabelPositionOutsideEnd = 2;
inline constexpr long xlLabelPositionInsideEnd = 3;
inline constexpr long xlLabelPositionInsideBase = 4;
inline constexpr long xlLabelPositionBestFit = 5;
inline constexpr long xlLabelPositionMixed = 6;
inline constexpr long xlLabelPositionCustom = 7;
inline constexpr long xlLabelPositionCenter = -4108;
inline constexpr long xlLabelPositionLeft = -4131;
inline constexpr long xlLabelPositionRight = -4152;

// XlDataLabelsType
inline constexpr long xlDataLabelsShowNone = -4142;
inline constexpr long xlDataLabelsShowValue = 2;
inline constexpr long xlDataLabelsShowPercent = 3;
inline constexpr long xlDataLabelsShowLabel = 4;
inline constexpr long xlDataLabelsShowLabelAndPercent = 5;
inline constexpr long xlDataLabelsShowBubbleSizes = 6;

// XlChartElementPosition: of titles, legend and plot area
inline constexpr long xlChartElementPositionAutomatic = -4105;
inline constexpr long xlChartElementPositionCustom = -4114;

// ---------------------------------------------------------------- series and groups

// XlMarkerStyle
inline constexpr long xlMarkerStyleAutomatic = -4105;
inline constexpr long xlMarkerStyleCircle = 8;
inline constexpr long xlMarkerStyleDash = -4115;
inline constexpr long xlMarkerStyleDiamond = 2;
inline constexpr long xlMarkerStyleDot = -4118;
inline constexpr long xlMarkerStyleNone = -4142;
inline constexpr long xlMarkerStylePicture = -4147;
inline constexpr long xlMarkerStylePlus = 9;
inline constexpr long xlMarkerStyleSquare = 1;
inline constexpr long xlMarkerStyleStar = 5;
inline constexpr long xlMarkerStyleTriangle = 3;
inline constexpr long xlMarkerStyleX = -4168;

// XlRowCol: PlotBy, and the orientation of a source range
inline constexpr long xlRows = 1;
inline constexpr long xlColumns = 2;

// XlSizeRepresents: bubbles
inline constexpr long xlSizeIsArea = 1;
inline constexpr long xlSizeIsWidth = 2;

// XlDisplayBlanksAs
inline constexpr long xlNotPlotted = 1;
inline constexpr long xlZero = 2;
inline constexpr long xlInterpolated = 3;

// XlBarShape: 3-D columns and bars
inline constexpr long xlBox = 0;
inline constexpr long xlPyramidToPoint = 1;
inline constexpr long xlPyramidToMax = 2;
inline constexpr long xlCylinder = 3;
inline constexpr long xlConeToPoint = 4;
inline constexpr long xlConeToMax = 5;

// ---------------------------------------------------------------- fills (XlPattern, of Interior)

inline constexpr long xlPatternAutomatic = -4105;
inline constexpr long xlPatternChecker = 9;
inline constexpr long xlPatternCrissCross = 16;
inline constexpr long xlPatternDown = -4121;
inline constexpr long xlPatternGray8 = 18;
inline constexpr long xlPatternGray16 = 17;
inline constexpr long xlPatternGray25 = -4124;
inline constexpr long xlPatternGray50 = -4125;
inline constexpr long xlPatternGray75 = -4126;
inline constexpr long xlPatternGrid = 15;
inline constexpr long xlPatternHorizontal = -4128;
inline constexpr long xlPatternLightDown = 13;
inline constexpr long xlPatternLightHorizontal = 11;
inline constexpr long xlPatternLightUp = 14;
inline constexpr long xlPatternLightVertical = 12;
inline constexpr long xlPatternNone = -4142;
inline constexpr long xlPatternSemiGray75 = 10;
inline constexpr long xlPatternSolid = 1;
inline constexpr long xlPatternUp = -4162;
inline constexpr long xlPatternVertical = -4166;
inline constexpr long xlPatternLinearGradient = 4000;
inline constexpr long xlPatternRectangularGradient = 4001;

// ---------------------------------------------------------------- shapes

// XlPlacement: how a shape or chart object follows the cells under it
inline constexpr long xlMoveAndSize = 1;
inline constexpr long xlMove = 2;
inline constexpr long xlFreeFloating = 3;

// MsoTriState
inline constexpr long msoTrue = -1;
inline constexpr long msoFalse = 0;
inline constexpr long msoCTrue = 1;
inline constexpr long msoTriStateMixed = -2;
inline constexpr long msoTriStateToggle = -3;

// MsoShapeType
inline constexpr long msoShapeTypeMixed = -2;
inline constexpr long msoAutoShape = 1;
inline constexpr long msoCallout = 2;
inline constexpr long msoChart = 3;
inline constexpr long msoComment = 4;
inline constexpr long msoFreeform = 5;
inline constexpr long msoGroup = 6;
inline constexpr long msoEmbeddedOLEObject = 7;
inline constexpr long msoFormControl = 8;
inline constexpr long msoLine = 9;
inline constexpr long msoLinkedOLEObject = 10;
inline constexpr long msoLinkedPicture = 11;
inline constexpr long msoOLEControlObject = 12;
inline constexpr long msoPicture = 13;
inline constexpr long msoPlaceholder = 14;
inline constexpr long msoTextEffect = 15;
inline constexpr long msoMedia = 16;
inline constexpr long msoTextBox = 17;
inline constexpr long msoScriptAnchor = 18;
inline constexpr long msoTable = 19;
inline constexpr long msoCanvas = 20;
inline constexpr long msoDiagram = 21;
inline constexpr long msoInk = 22;
inline constexpr long msoInkComment = 23;
inline constexpr long msoSmartArt = 24;
inline constexpr long msoSlicer = 25;
inline constexpr long msoWebVideo = 26;
inline constexpr long msoContentApp = 27;
inline constexpr long msoGraphic = 28;
inline constexpr long msoLinkedGraphic = 29;

// MsoAutoShapeType, the first of them
inline constexpr long msoShapeMixed = -2;
inline constexpr long msoShapeRectangle = 1;
inline constexpr long msoShapeParallelogram = 2;
inline constexpr long msoShapeTrapezoid = 3;
inline constexpr long msoShapeDiamond = 4;
inline constexpr long msoShapeRoundedRectangle = 5;
inline constexpr long msoShapeOctagon = 6;
inline constexpr long msoShapeIsoscelesTriangle = 7;
inline constexpr long msoShapeRightTriangle = 8;
inline constexpr long msoShapeOval = 9;

// MsoTextOrientation: AddTextbox and TextFrame.Orientation
inline constexpr long msoTextOrientationMixed = -2;
inline constexpr long msoTextOrientationHorizontal = 1;
inline constexpr long msoTextOrientationUpward = 2;
inline constexpr long msoTextOrientationDownward = 3;
inline constexpr long msoTextOrientationVerticalFarEast = 4;
inline constexpr long msoTextOrientationVertical = 5;
inline constexpr long msoTextOrientationHorizontalRotatedFarEast = 6;

// MsoAutoSize: TextFrame2.AutoSize
inline constexpr long msoAutoSizeMixed = -2;
inline constexpr long msoAutoSizeNone = 0;
inline constexpr long msoAutoSizeShapeToFitText = 1;
inline constexpr long msoAutoSizeTextToFitShape = 2;

// MsoVerticalAnchor, MsoHorizontalAnchor: TextFrame2
inline constexpr long msoAnchorTop = 1;
inline constexpr long msoAnchorTopBaseline = 2;
inline constexpr long msoAnchorMiddle = 3;
inline constexpr long msoAnchorBottom = 4;
inline constexpr long msoAnchorBottomBaseLine = 5;
inline constexpr long msoAnchorNone = 1;
inline constexpr long msoAnchorCenter = 2;

// MsoZOrderCmd
inline constexpr long msoBringToFront = 0;
inline constexpr long msoSendToBack = 1;
inline constexpr long msoBringForward = 2;
inline constexpr long msoSendBackward = 3;
inline constexpr long msoBringInFrontOfText = 4;
inline constexpr long msoSendBehindText = 5;

// MsoFillType
inline constexpr long msoFillMixed = -2;
inline constexpr long msoFillSolid = 1;
inline constexpr long msoFillPatterned = 2;
inline constexpr long msoFillGradient = 3;
inline constexpr long msoFillTextured = 4;
inline constexpr long msoFillBackground = 5;
inline constexpr long msoFillPicture = 6;

// MsoGradientStyle
inline constexpr long msoGradientMixed = -2;
inline constexpr long msoGradientHorizontal = 1;
inline constexpr long msoGradientVertical = 2;
inline constexpr long msoGradientDiagonalUp = 3;
inline constexpr long msoGradientDiagonalDown = 4;
inline constexpr long msoGradientFromCorner = 5;
inline constexpr long msoGradientFromTitle = 6;
inline constexpr long msoGradientFromCenter = 7;

// MsoColorType
inline constexpr long msoColorTypeMixed = -2;
inline constexpr long msoColorTypeRGB = 1;
inline constexpr long msoColorTypeScheme = 2;
inline constexpr long msoColorTypeCMYK = 3;
inline constexpr long msoColorTypeCMS = 4;
inline constexpr long msoColorTypeInk = 5;

// MsoThemeColorIndex: ColorFormat.ObjectThemeColor
inline constexpr long msoThemeColorMixed = -2;
inline constexpr long msoNotThemeColor = 0;
inline constexpr long msoThemeColorDark1 = 1;
inline constexpr long msoThemeColorLight1 = 2;
inline constexpr long msoThemeColorDark2 = 3;
inline constexpr long msoThemeColorLight2 = 4;
inline constexpr long msoThemeColorAccent1 = 5;
inline constexpr long msoThemeColorAccent2 = 6;
inline constexpr long msoThemeColorAccent3 = 7;
inline constexpr long msoThemeColorAccent4 = 8;
inline constexpr long msoThemeColorAccent5 = 9;
inline constexpr long msoThemeColorAccent6 = 10;
inline constexpr long msoThemeColorHyperlink = 11;
inline constexpr long msoThemeColorFollowedHyperlink = 12;
inline constexpr long msoThemeColorText1 = 13;
inline constexpr long msoThemeColorBackground1 = 14;
inline constexpr long msoThemeColorText2 = 15;
inline constexpr long msoThemeColorBackground2 = 16;

// MsoLineDashStyle, MsoLineStyle
inline constexpr long msoLineDashStyleMixed = -2;
inline constexpr long msoLineSolid = 1;
inline constexpr long msoLineSquareDot = 2;
inline constexpr long msoLineRoundDot = 3;
inline constexpr long msoLineDash = 4;
inline constexpr long msoLineDashDot = 5;
inline constexpr long msoLineDashDotDot = 6;
inline constexpr long msoLineLongDash = 7;
inline constexpr long msoLineLongDashDot = 8;
inline constexpr long msoLineLongDashDotDot = 9;
inline constexpr long msoLineSysDash = 10;
inline constexpr long msoLineSysDot = 11;
inline constexpr long msoLineSysDashDot = 12;
inline constexpr long msoLineStyleMixed = -2;
inline constexpr long msoLineSingle = 1;
inline constexpr long msoLineThinThin = 2;
inline constexpr long msoLineThinThick = 3;
inline constexpr long msoLineThickThin = 4;
inline constexpr long msoLineThickBetweenThin = 5;

// MsoPatternType: FillFormat.Patterned and ChartFillFormat.Patterned
inline constexpr long msoPatternMixed = -2;
inline constexpr long msoPattern5Percent = 1;
inline constexpr long msoPattern10Percent = 2;
inline constexpr long msoPattern20Percent = 3;
inline constexpr long msoPattern25Percent = 4;
inline constexpr long msoPattern30Percent = 5;
inline constexpr long msoPattern40Percent = 6;
inline constexpr long msoPattern50Percent = 7;
inline constexpr long msoPattern60Percent = 8;
inline constexpr long msoPattern70Percent = 9;
inline constexpr long msoPattern75Percent = 10;
inline constexpr long msoPattern80Percent = 11;
inline constexpr long msoPattern90Percent = 12;
inline constexpr long msoPatternDarkHorizontal = 13;
inline constexpr long msoPatternDarkVertical = 14;
inline constexpr long msoPatternDarkDownwardDiagonal = 15;
inline constexpr long msoPatternDarkUpwardDiagonal = 16;
inline constexpr long msoPatternSmallCheckerBoard = 17;
inline constexpr long msoPatternTrellis = 18;
inline constexpr long msoPatternLightHorizontal = 19;
inline constexpr long msoPatternLightVertical = 20;
inline constexpr long msoPatternLightDownwardDiagonal = 21;
inline constexpr long msoPatternLightUpwardDiagonal = 22;  // the crosshatch of an unavailable chart
inline constexpr long msoPatternSmallGrid = 23;
inline constexpr long msoPatternDottedDiamond = 24;
inline constexpr long msoPatternWideDownwardDiagonal = 25;
inline constexpr long msoPatternWideUpwardDiagonal = 26;
inline constexpr long msoPatternDashedUpwardDiagonal = 27;
inline constexpr long msoPatternDashedDownwardDiagonal = 28;
inline constexpr long msoPatternNarrowVertical = 29;
inline constexpr long msoPatternNarrowHorizontal = 30;
inline constexpr long msoPatternDashedVertical = 31;
inline constexpr long msoPatternDashedHorizontal = 32;
inline constexpr long msoPatternLargeConfetti = 33;
inline constexpr long msoPatternLargeGrid = 34;
inline constexpr long msoPatternHorizontalBrick = 35;
inline constexpr long msoPatternLargeCheckerBoard = 36;
inline constexpr long msoPatternSmallConfetti = 37;
inline constexpr long msoPatternZigZag = 38;
inline constexpr long msoPatternSolidDiamond = 39;
inline constexpr long msoPatternDiagonalBrick = 40;
inline constexpr long msoPatternOutlinedDiamond = 41;
inline constexpr long msoPatternPlaid = 42;
inline constexpr long msoPatternSphere = 43;
inline constexpr long msoPatternWeave = 44;
inline constexpr long msoPatternDottedGrid = 45;
inline constexpr long msoPatternDivot = 46;
inline constexpr long msoPatternShingle = 47;
inline constexpr long msoPatternWave = 48;
inline constexpr long msoPatternHorizontal = 49;
inline constexpr long msoPatternVertical = 50;
inline constexpr long msoPatternCross = 51;
inline constexpr long msoPatternDownwardDiagonal = 52;
inline constexpr long msoPatternUpwardDiagonal = 53;
inline constexpr long msoPatternDiagonalCross = 54;

}  // namespace host
