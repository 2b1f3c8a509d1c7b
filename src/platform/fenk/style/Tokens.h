#pragma once

/// The measures of all windows, in device-independent pixels at 100 %. Painters, widgets and layouts use no
/// other numbers, so that margins agree everywhere. Colours are in Theme.
namespace Fenk::Tokens {

constexpr int Space4 = 4;
constexpr int Space8 = 8;
constexpr int Space12 = 12;
constexpr int Space16 = 16;
constexpr int Space24 = 24;
constexpr int Space32 = 32;

constexpr int RadiusSmall = 4;  ///< parts of a control: check boxes, scroll bar thumbs
constexpr int RadiusControl = 6;
constexpr int RadiusCard = 10;
constexpr int RadiusWindow = 16;

constexpr int ControlHeight = 36;
constexpr int CompactHeight = 28;
constexpr int RowHeight = 44;
constexpr int MenuRowHeight = 32;
constexpr int HeadHeight = 32;
constexpr int TitleBarHeight = 48;
constexpr int TabHeight = 40;

constexpr int FontTitle = 22;
constexpr int FontHeading = 16;
constexpr int FontBody = 14;
constexpr int FontSmall = 12;

constexpr int IconSmall = 16;
constexpr int IconMedium = 20;
constexpr int IconLarge = 24;
constexpr int IconTile = 64;
constexpr int IconBanner = 96;

constexpr double BorderWidth = 1.0;
constexpr double IconStroke = 1.5;
constexpr int RingWidth = 2;
constexpr int RingDistance = 2;
constexpr int RingExtent = RingWidth + RingDistance;  ///< space for the ring outside a control
constexpr int SelectionEdge = 3;

constexpr int SwitchWidth = 40;
constexpr int SwitchHeight = 22;
constexpr int CheckSize = 18;
constexpr int ScrollBarExtent = 12;
constexpr int ScrollBarThumb = 6;
constexpr int ScrollBarThumbMin = 32;
constexpr int ProgressHeight = 6;
constexpr int SliderTrack = 4;
constexpr int SliderHandle = 18;
constexpr int ButtonMinWidth = 80;
constexpr int DialogMinWidth = 400;
constexpr int DialogMaxWidth = 576;
constexpr int MenuMinWidth = 160;
constexpr int ResizeBorder = 6;  ///< distance from an edge within which a press resizes the window

constexpr double VeilOpacity = 0.3;  ///< opacity of black over a window that has a dialog
constexpr int ShadowDrop = 8;
constexpr int ShadowBlur = 24;
constexpr double ShadowLight = 0.12;  ///< opacity of black in the light theme
constexpr double ShadowDark = 0.40;

constexpr int HoverMs = 120;
constexpr int MoveMs = 200;
constexpr int FadeMs = 300;
constexpr int SpinnerDelayMs = 500;
constexpr int SpinnerTurnMs = 1000;
constexpr int ToolTipDelayMs = 500;
constexpr int AlertMs = 3000;

}  // namespace Fenk::Tokens
