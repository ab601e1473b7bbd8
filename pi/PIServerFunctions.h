#pragma once

#include <cstdint>

/// Numbers of the host's services. Those below 900 are the host's own and fixed; those from 900 up are
/// additions of this contract for operations to which the host's table gives no number.
enum class PIServerFunctions_t : std::int32_t {
    IdentityOverride = 16,

    BindWidget = 100,
    RegistrySetValue = 101,
    RegistryGetValue = 102,
    CreateMenuItem = 105,
    CreateSwitcher = 113,
    CreateDialogBox = 114,
    DialogShow = 115,
    CreateButton = 118,
    CreateTextField = 119,
    CreateRadioButton = 121,
    CreateCheckButton = 122,
    CreateColorWell = 123,
    CreateOptionMenu = 124,
    CreateSpinner = 125,
    CreateList = 126,
    OptionMenuAppendOption = 139,
    SwitcherSetCurrent = 141,
    WindowShow = 143,
    WindowEnable = 144,
    WindowCheck = 145,
    WindowMapFunction = 146,
    WindowShown = 148,
    WindowSetInt = 152,
    WindowSetDouble = 153,
    WindowSetString = 154,
    MouseGrab = 155,
    Icon = 158,
    OptionMenuGetOptionText = 159,
    DialogRegisterCloseObserver = 160,
    FileDialog = 163,

    IsScenarioInitialized = 200,
    GetReferenceYear = 207,
    GetPlatformList = 220,
    Clock = 246,
    CreateEntity = 248,
    GetHeader = 250,
    GetScenarioCoordReferenceFrame = 252,
    RemoveEntity = 253,
    GetDataPoint = 256,

    Timeout = 317,
    Action = 319,
    Service = 322,
    Notify = 325,

    AnimatedLine = 411,
    Camera = 418,
    Cursor = 424,
    OverlayFiles = 428,
    ScreenText = 432,
    OverlayLists = 439,
    ContextMenu = 440,

    CreateCanvas = 901,
    CreateHorizontalFrame = 902,
    CreateVerticalFrame = 903,
    CreateHorizontalMatrix = 904,
    CreateVerticalMatrix = 905,
    CreateGroupBox = 906,
    CreateLabel = 907,
    WidgetValue = 908,
    ListItems = 909,
    ForceRedraw = 910,
    WidgetLooks = 911,
};

/// Selectors: the first integer of the catch-all record of a service number that several operations
/// share.
namespace PISelector {

enum class IdentityOverride : std::int64_t { Query = 0, Push = 1, Pop = 2 };
enum class MouseGrab : std::int64_t { Grab = 0, Ungrab = 1 };
enum class Icon : std::int64_t { LoadPng = 0, SetDialogIcon = 1, SetMenuItemIcon = 2, Destroy = 3 };
enum class FileDialog : std::int64_t { Load = 0, Save = 1, Directory = 2 };
enum class Clock : std::int64_t { Begin = 0, VisualTime = 1 };
enum class CreateEntity : std::int64_t { Platform = 0 };
enum class Timeout : std::int64_t { Create = 0, Cancel = 1 };
enum class Action : std::int64_t { Create = 0, SetChecked = 1, Destroy = 2 };
enum class Service : std::int64_t { Register = 0, Unregister = 1, Find = 2 };
enum class Notify : std::int64_t { Message = 0, Debug = 1 };
enum class AnimatedLine : std::int64_t { Create = 0, Remove = 1 };
enum class Camera : std::int64_t { EyePosition = 0, SetCenter = 1, SetRangeAzimuthElevation = 2 };
enum class Cursor : std::int64_t { LlaAtPixel = 0, LlaAtCursor = 1, PlatformAtCursor = 2 };
enum class OverlayFiles : std::int64_t {
    LoadFile = 0,
    LoadStream = 1,
    Unload = 2,
    Show = 3,
    FindByFileName = 4,
    FileName = 5,
    Host = 6,
    SerializeToStream = 7,
    RegisterObserver = 8,
    RemoveObserver = 9,
};
enum class ScreenText : std::int64_t { Add = 0, Remove = 1 };
enum class OverlayLists : std::int64_t { Unattached = 0, Attached = 1 };
enum class ContextMenu : std::int64_t { Register = 0, Remove = 1, AddItem = 2 };
enum class WidgetValue : std::int64_t { Text = 0, Integer = 1, Real = 2, Checked = 3 };
enum class ListItems : std::int64_t {
    Append = 0,
    AppendHeader = 1,
    Remove = 2,
    Clear = 3,
    Count = 4,
    Selected = 5,
    Select = 6,
    DeselectAll = 7,
    GetText = 8,
    SetText = 9,
    GetData = 10,
};

enum class WidgetLooks : std::int64_t { Room = 0, Mark = 1, Limits = 2, Chosen = 3, Line = 4 };

}  // namespace PISelector
