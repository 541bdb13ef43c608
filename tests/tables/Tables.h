#pragma once
// The tables as the design gives them, written out by hand for the tests:
// the 90 calls, the window, the board, the display panel, the command
// buttons, the flash timer, the order of each kind's stream entries and the
// menu bar. Nothing here is read from the program, so a wrong value in the
// program shows as a difference from these.
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "toolkit/PropertyStream.h"

namespace tables {

// The value types of the streams: i8, u1, c and s (b and f4 are bool and float).
using I = tk::Integer;
using U1 = std::uint8_t;
using C = tk::Color;
using S = tk::String;

struct Entry {
  std::string_view name;
  tk::PropertyValue value;
};

// The call of number k at [k - 1], letter for letter.
inline constexpr std::array<std::string_view, 90> kCalls = {
    "Kellys Eye", "One Little Duck", "Dearie Me", "Knock At The Door", "Man Alive",
    "Tom Mix", "Lucky", "Garden Gate", "Doctors Orders", "Downing Street",
    "Legs", "OneDozen", "Unlucky For Some", "Valentines Day", "Young And Keen",
    "Sweet", "Dancing Queen", "Now You Can Vote", "Goobye Teens", "Blind 20",
    "Key To The Door", "Two Little Ducks", "A Duck And A Flea", "Two Dozen", "Duck And Dive",
    "Half A Crown", "A Duck And A Crutch", "Over Weight", "In Your Prime", "Blind 30",
    "Get Up And Run", "Buckle My Shoe", "Dirty Knees", "Ask For More", "Jump And Jive",
    "Three Dozen", "A Flea In Heaven", "Christmas Cake", "All The Steps", "Blind 40",
    "Lifes Begun", "Winnie The Poo", "Down On Your Knees", "All The Fours", "Halfway There",
    "Up To Tricks", "Four And Seven", "Four Dozen", "PC", "Blind 50",
    "Tweak Of The Thumb", "Weeks In A Year", "Stuck In A Tree", "Clean The Floor", "All The Fives",
    "Was She Worth It", "Heinz Varieties", "Make Them Wait", "The Brighton Line", "Blind 60",
    "Bakers Bun", "Tickety Boo", "Tickle Me", "Red Raw", "Old Age Pension",
    "Clickety Click", "Made In Heaven", "Saving Grace", "Any Way Up", "Blind 70",
    "Bang On The Drum", "A Crutch And A Duck", "Queen B", "Candy Store", "Strive And Strive",
    "Was She Worth It", "All The Sevens", "Heavens Gate", "One More Time", "Blind 80",
    "Stop And Run", "Straight On Through", "Time For Tea", "Seven Dozen", "Staying Alive",
    "Between The Sticks", "Torquay In Devon", "Two Fat Ladies", "Nearly There", "Top Of The Shop",
};

// The window's stream, entry by entry in its order.
inline const std::vector<Entry> kWindow = {
    {"Width", I{1036}}, {"Height", I{572}}, {"MinWidth", I{64}}, {"MinHeight", I{64}},
    {"MaxWidth", I{32000}}, {"MaxHeight", I{32000}}, {"Frame", I{0}}, {"Title", S{"Calloquin"}},
    {"CloseButton", false}, {"Resizeable", false}, {"MaximizeButton", false}, {"MinimizeButton", true},
    {"FullScreenButton", false}, {"Composite", false}, {"MacProcID", I{0}}, {"Placement", I{0}},
    {"Visible", true}, {"LiveResize", true}, {"FullScreen", false}, {"HasBackColor", false},
    {"BackColor", C{0xFFFFFF}}, {"MenuBarVisible", true},
};

// The order of the entries in every stream of a label, and of a push button.
inline constexpr std::array<std::string_view, 32> kLabelOrder = {
    "InitialParent", "DataField", "DataSource", "Underline", "Italic", "Bold", "TextUnit", "TextSize",
    "TextFont", "AutoDeactivate", "HelpTag", "Transparent", "Selectable", "Visible", "Enabled", "Multiline",
    "TextColor", "TextAlign", "Text", "TabIndex", "TabPanelIndex", "LockBottom", "LockRight", "LockTop",
    "LockLeft", "Height", "Width", "Top", "Left", "Index", "Name", "TabStop",
};
inline constexpr std::array<std::string_view, 28> kButtonOrder = {
    "InitialParent", "Underline", "Italic", "Bold", "TextUnit", "TextSize", "TextFont", "ButtonStyle",
    "AutoDeactivate", "HelpTag", "Visible", "Enabled", "Cancel", "Default", "Caption", "TabStop",
    "TabIndex", "TabPanelIndex", "LockBottom", "LockRight", "LockTop", "LockLeft", "Height", "Width",
    "Top", "Left", "Index", "Name",
};

// What all 98 labels share.
inline const std::vector<Entry> kLabelsAlike = {
    {"InitialParent", S{}}, {"DataField", S{}}, {"DataSource", S{}}, {"Underline", false}, {"Italic", false},
    {"TextUnit", U1{0}}, {"TextFont", S{"System"}}, {"AutoDeactivate", true}, {"HelpTag", S{}},
    {"Transparent", true}, {"Selectable", false}, {"Visible", true}, {"Enabled", true}, {"Multiline", false},
    {"TextAlign", I{1}}, {"TabPanelIndex", I{0}}, {"LockBottom", false}, {"LockRight", false},
    {"LockTop", true}, {"LockLeft", true}, {"TabStop", true},
};

// What sets a label apart. Text and TextColor are the layout's, before the
// opening repaints the numbers.
struct Label {
  const char* name;
  I left, top, width, height;
  float textSize;  // 0: the toolkit's ordinary size
  bool bold;
  C textColor;
  const char* text;
  I tabIndex;
};

// The display panel.
inline constexpr std::array<Label, 8> kPanel = {{
    {"MainNumber", 671, -10, 345, 324, 230, true, 0xFFFEFE, "88", 0},
    {"LastNumber", 748, 350, 96, 81, 55, true, 0xFF7F00, "88", 1},
    {"LastNumber1", 707, 381, 48, 42, 30, true, 0xFFFF00, "88", 98},
    {"LastNumber2", 671, 394, 35, 31, 18, true, 0xFFFEFE, "88", 99},
    {"NumbersGone", 868, 318, 122, 131, 80, true, 0x22FF0C, "88", 2},
    {"Label1", 678, 439, 153, 20, 0, false, 0xFFFEFE, "Previous 3 Numbers", 3},
    {"Label2", 879, 439, 100, 20, 0, false, 0xFFFEFE, "Numbers Gone", 4},
    {"Label3", 691, 302, 299, 20, 0, false, 0xFFFEFE, "OK - Lets start a new game", 5},
}};

// The board: cell k (n1(k), number k + 1) takes this, with its Left from
// kCellLeft[k % 10], its Top from kCellTop[k / 10][k % 10] and TabIndex k + 8.
inline constexpr Label kCell = {"n1", 0, 0, 42, 36, 30, false, 0x8B8B8B, "88", 8};
inline constexpr std::array<I, 10> kCellLeft = {35, 99, 162, 227, 288, 349, 413, 478, 541, 602};
// Placed by hand: 18 cells stand one pixel off their row.
inline constexpr std::array<std::array<I, 10>, 9> kCellTop = {{
    {32, 31, 31, 31, 31, 31, 31, 31, 31, 31},
    {79, 79, 79, 79, 79, 79, 79, 79, 79, 79},
    {126, 126, 127, 127, 127, 127, 127, 126, 126, 126},
    {175, 174, 175, 174, 175, 175, 175, 175, 175, 175},
    {223, 223, 223, 223, 223, 222, 222, 222, 222, 222},
    {271, 270, 270, 270, 270, 270, 270, 270, 270, 270},
    {320, 319, 319, 319, 319, 319, 319, 320, 319, 319},
    {369, 368, 368, 368, 368, 368, 368, 368, 368, 368},
    {418, 417, 417, 417, 417, 417, 417, 417, 417, 417},
}};

// What the three buttons share.
inline const std::vector<Entry> kButtonsAlike = {
    {"Underline", false}, {"Italic", false}, {"Bold", false}, {"TextUnit", U1{0}}, {"TextSize", 0.0f},
    {"TextFont", S{"System"}}, {"AutoDeactivate", true}, {"HelpTag", S{}}, {"Visible", true},
    {"Enabled", true}, {"TabStop", true}, {"TabPanelIndex", I{0}}, {"LockBottom", false},
    {"LockRight", false}, {"LockTop", true}, {"LockLeft", true}, {"Index", I{tk::kNoIndex}},
};

struct Button {
  const char* name;
  const char* caption;
  I left, top, width, height, tabIndex;
  bool isDefault, cancel;
  I buttonStyle;
  const char* initialParent;  // empty: the window
};
inline constexpr std::array<Button, 3> kButtons = {{
    {"PushButton2", "NEXT NUMBER (Enter/Return)", 663, 483, 353, 69, 7, true, false, 0, ""},
    {"PushButton3", "RESET - New Game", 714, 23, 258, 36, 0, false, false, 0, "MainNumber"},
    {"PushButton1", "BINGO CALLER - OFF", 25, 483, 205, 67, 6, false, false, 7, ""},
}};

// The flash: every 400 ms, repeating.
inline const std::vector<Entry> kTimer = {{"Period", I{400}}, {"Mode", I{2}}};

// The menu bar, top to bottom; a parent of "" is the bar itself. Every item
// has AutoEnable and Visible true. Separators ("-") have no shortcut.
struct MenuRow {
  std::string_view parent, name, text, shortcut, className;
};
inline constexpr std::array<MenuRow, 11> kMenu = {{
    {"", "FileMenu", "&File", "", "MenuItem"},
    {"FileMenu", "FileQuit", "&Quit", "Cmd+Q", "QuitMenuItem"},
    {"", "EditMenu", "&Edit", "", "MenuItem"},
    {"EditMenu", "EditUndo", "&Undo", "Cmd+Z", "MenuItem"},
    {"EditMenu", "EditSeparator1", "-", "", "MenuItem"},
    {"EditMenu", "EditCut", "Cu&t", "Cmd+X", "MenuItem"},
    {"EditMenu", "EditCopy", "&Copy", "Cmd+C", "MenuItem"},
    {"EditMenu", "EditPaste", "&Paste", "Cmd+V", "MenuItem"},
    {"EditMenu", "EditClear", "&Delete", "", "MenuItem"},
    {"EditMenu", "EditSeparator2", "-", "", "MenuItem"},
    {"EditMenu", "EditSelectAll", "Select &All", "Cmd+A", "MenuItem"},
}};

}  // namespace tables
