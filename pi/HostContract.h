#pragma once

/// The contract between a host and its plug-ins, whole: somebody who has this header and those that it
/// includes can write another host.
///
/// Both sides are C++20, built with compilers that share one ABI and one standard library: records hold
/// std::string and std::vector.
#include "pi/HostCallback.h"
#include "pi/HostObservers.h"
#include "pi/HostStructures.h"
#include "pi/PIClientFunctions.h"
#include "pi/PIDataRecords.h"
#include "pi/PIEvents.h"
#include "pi/PIFunctionParams.h"
#include "pi/PIServerFunctions.h"
#include "pi/PIServiceTable.h"

// WHEN A CALL MAY BE MADE
//
//   [ui thread]       only on the thread that drives the plug-ins. Everything here is [ui thread].
//   [any time]        once the library is loaded.
//   [after init]      between HPI_InitializeFunctionMap and HPI_CleanUpPlugin.
//   [after start-up]  from the dispatch of StartUp (from inside it on) until the dispatch of Close returns.
//
// No exception crosses the boundary in either direction. A service that throws all the same has refused.
//
// LIFE OF A PLUG-IN
//
//   1. The host loads the library and finds the nine exports below. A plug-in that lacks one, that is written
//      for another major version than 1, or whose HPI_MinimumVersion is above the host's build number, is
//      refused by name. A library is one plug-in in a process: one that is loaded already is refused, too.
//   2. HPI_InitializeFunctionMap(table, instance): the plug-in keeps the service table and the host's
//      handle for this instance, and makes its object. Nothing else happens yet. An instance that lives is
//      closed first, through the table that it has; one that is at work goes on, and nothing else happens.
//   3. Dispatch of StartUp. From now on the plug-in calls services and the host dispatches events. With a
//      Status other than 0 it has not started: what it had made is taken down, and nothing that is dispatched
//      does anything but Close, with which the host goes on.
//   4. Dispatch of Close, never from within another dispatch, callback or service call, also not of another
//      plug-in, which may be calling this one: the plug-in takes down what it made; its object is gone when
//      this returns. Events dispatched meanwhile do nothing.
//      What it still owns in the host (widgets, icons, actions, timeouts, observers, overlays from streams,
//      platforms, screen texts, lines, services, a grabbed mouse) the host drops then, and says so. Overlay
//      files are the host's and stay.
//   5. HPI_CleanUpPlugin: callback objects are freed and the service table is forgotten. The host must
//      not call a callback from here on. The library can be unloaded, and loaded again. An instance that was
//      not closed is closed first.
//
// EXPORTS (C linkage)                                                                          [any time]
//
//   double  HPI_VersionInfo()                    interface version in the legacy encoding, 1.902 for 1.20.0
//   int32_t HPI_VersionInfoEx(int32_t selector)  1 minor, 2 revision, any other value major
//   int32_t HPI_MinimumVersion()                 smallest host build number that will do
//   int32_t HPI_GetCompilerVersion()             release of the compiler as one number
//   int32_t HPI_GetBitWidth()                    64
//   int32_t HPI_IsDebugMode()                    0 (PluginVersions.h defines these six)
//   void    HPI_InitializeFunctionMap(PIServiceTable*, void* instance)
//   int32_t HPI_PluginDispatchFunction(int32_t number, void* a1, void* a2, void* a3, void* a4, void* a5)
//           a1 is the event's PIFunctionParams_t*; numbers are PIClientFunctions_t. Returns 0, always: what
//           there is to answer stands in the record. Unknown numbers, a null record (but a Close's) and a
//           plug-in that was closed do nothing; the Status of StartUp, Close, Callback and of
//           ConfigureCommandLine is kStatusClosed then. A zero-filled block of sizeof(PIFunctionParams_t)
//           bytes is a valid empty record; PIFunctionParamsC.h makes, fills and reads them in C. [after init]
//   void    HPI_CleanUpPlugin()
//
// EVENTS
//
//   Arguments and results stand in the slots of PIParameterName_t. StartUp, Close, ListenToEvents,
//   PreDrawOnRefresh and HandleMouseEvent are what a host has to dispatch. Name, Description, Author,
//   Version, URL and ContactInfo are answered from init to Close. The others are for hosts that have what
//   they are about: Callback when the user chooses the plug-in in a list of plug-ins; DrawOnRefresh once a
//   frame, after the scene, otherwise as PreDrawOnRefresh; once, after StartUp, the LoadIn... that names the
//   program which the host is (those with a 10: from its version 10 on); ConfigureCommandLine before StartUp.
//
//   HandleMouseEvent takes the event type in integer EventCode and a PIGUI::PIMouseEvent in pointer
//   EventData; its result is integer Status: non-zero when the plug-in consumed the event, and the host does
//   nothing with it then. The host sends every mouse event of the view, in its order, while the plug-in is
//   started:
//
//   Motion          the mouse has moved, with a button or without. While a button is held that was pressed in
//                   the view also beyond its edges. One is due at the place of each press before the press.
//   LeftPress, MiddlePress, RightPress and their releases   to each press there is one release, wherever, and
//                   whatever the press was answered. Press, motion and release belong together: what a host
//                   does with them itself it does when the press was not consumed, and a release that is not
//                   consumed is no click of its own. No menu opens on a right press, nor on its release when
//                   the mouse was grabbed at the press. What the host keeps for itself, a drag with some key
//                   held, it sends neither press nor release of.
//   LeftDoubleClick in place of the LeftPress with which the user clicks twice. When it is answered with 0
//   the
//                   LeftPress is due after all, or a fast click is lost. Hosts may do without this event.
//   Wheel           wheelDelta 120 for a notch. With a modifier parts of a notch add up to whole ones.
//   Leave           the mouse is no longer in the view, at its last position.
//
//   PreDrawOnRefresh is dispatched once a frame, before the scene is drawn, with the view's size in the
//   pixels of mouse events in integers Width and Height (OpenGL's viewport is in device pixels). A legacy-
//   compatible OpenGL context is current; modelview and projection map earth-centred, earth-fixed metres (x
//   to 0N 0E, y to 0N 90E, z to the pole) relative to the eye. Subtract the eye position in double precision
//   before anything becomes a float. What is drawn in the hook goes to a layer of its own that ends up on
//   top of overlays; the globe's depth is not there, so what lies behind the globe must be left out by
//   computation. The host saves and restores all OpenGL state. Overlays may be loaded and unloaded in the
//   hook; this frame shows them, and no other frame is scheduled because of it. OpenGL objects may be made
//   and deleted only in the hook, and in Close, for which the context is made current.
//
//   While it serves a call of the plug-in's the host may dispatch events, and call callbacks and observers.
//   One entry is handled at a time: callbacks and ListenToEvents are handled when the entry that made the
//   call is over, just before it returns, equal ones once; a callback answers 1 then. That goes for
//   calls from within a callback, too, and for what comes while a file dialog is open: it is handled before
//   what the dialog was asked for. A mouse event is not consumed, though the release of the left button is
//   handled then, too; no context menu item is added. PreDrawOnRefresh draws nothing, unless the call is a
//   file dialog, and another frame is asked for.
//
//   Callbacks: the host calls FunctorTwoParams__::Call(sender, data) with the wrapper bound to the widget
//   as sender; that of an action, a timeout or a context menu item is null. `data` is null but for actions
//   (const std::int32_t*: the check state asked for) and timeouts (the user data given). A change made
//   through a service never calls a callback back.
//
// SERVICES
//
//   The plug-in calls PIServiceTable::handle(identity, number, record). Below: number, operation, record
//   with its arguments -> results. `record` points at the class named here, and so does every pointer in
//   it. "Returns" speaks of the call's own result: 0 is nothing or failure; where nothing is said, 1 when it
//   was done.
//   In a catch-all record (CATCHALL) arguments are listed by list: i integers, d doubles, s strings,
//   p pointers. The host leaves the arguments alone and appends its results to the list of their type.
//   Where several operations share a number the first integer is the selector (PISelector), written
//   [name]. Handles are the host's; a handle, index, name, number or selector that it does not know gives 0,
//   and a message. Captions: text, tab, tooltip. Text is UTF-8. Ids are 64-bit, 0 means none.
//   Angles are radians, lengths metres. All services are [ui thread & after start-up] unless marked.
//
//   Identity                                                                     [ui thread & after init]
//   16   CATCHALL i[Query]           -> p identity pushed last (none when the stack is empty)
//        CATCHALL i[Push] p identity    later calls carry it until it is popped
//        CATCHALL i[Pop] p null
//        Always called with a null identity.
//
//   Widgets. A creating service returns the handle of the new widget, which is shown and enabled, but for
//   dialogs. Children stand in their parent in the order of creation. Destroying a widget destroys its
//   descendants, so the plug-in destroys children first. `callback` may be null; it stays the plug-in's
//   until clean-up.
//   100  bind       POINTER_AND_POINTER widget, wrapper (PIObject*); a null wrapper unbinds the widget and
//                   destroys it: widget, dialog, menu item. Returns 1.
//   105  menu item  POINTER_STRING_AND_FUNCTION parent (null: the plug-in menu), caption, callback
//   113  switcher   POINTER_AND_OPTS parent, PIGUI::PILayout bits
//   114  dialog     POINTER_AND_STRING parent window or null, title; hidden until 115
//   115  show       the bare dialog handle; shows the dialog and raises it. Returns 1.
//   118  button     POINTER_STRING_AND_FUNCTION parent, caption, callback. Becomes a toggle button at the
//                   first 145; its callback is then called after it has changed.
//   119  text field POINTER_INT_AND_FUNCTION parent, PITextFieldStyle, callback (text changed by the user and
//                   Enter pressed or the field left)
//   121  radio button, 122 check button  POINTER_STRING_AND_FUNCTION parent, caption, callback; radio
//                   buttons of one parent exclude each other. The callback finds the button changed.
//   123  colour well POINTER_INT_AND_FUNCTION parent, PIColorWellStyle, callback; its value is the integer
//                   0xRRGGBBAA, as the bits of the 32-bit integer of 152: opaque red is negative
//   124  option menu POINTER_STRING_AND_FUNCTION parent, caption, callback; its value is the chosen index.
//                   The user changes it in the opened menu alone: neither wheel nor keys change a closed one.
//   125  spinner    POINTER_INT_AND_FUNCTION parent, PISpinnerStyle, callback. Whole numbers from 0 to 9999,
//                   signed from -9999, until 911 sets other limits.
//   126  list       POINTER_INT_AND_STRING parent, PIListStyle, column headers separated by tabs, as the
//                   columns of an item's text are; its callback (146) is called when the user changes the
//                   selection
//   139  add option POINTER_INT_AND_STRING menu, index (behind the last: append), text. Returns 1.
//   141  switcher's current child   CATCHALL i index p switcher, child (null: by index). Returns 1.
//   143  show or hide, 144 enable or disable, 145 check or uncheck   POINTER_AND_BOOL widget, value.
//        Returns 1. For an action's check mark see 319.
//   146  map callback POINTER_AND_FUNCTION widget, callback or null. Returns 1.
//   148  shown      the bare widget handle. Returns 1 when it can be seen, its parents being shown.
//   152, 153, 154  set value   POINTER_AND_INT, POINTER_AND_DOUBLE, POINTER_AND_STRING widget, value.
//        A text field shows a number's text; an option menu and a list take an index (-1: none), an
//        option menu also an option's text; labels, buttons, group boxes and dialogs take a caption,
//        of which one without a tab leaves the tooltip as it is. Returns 1.
//   155  mouse      CATCHALL i[Grab] or i[Ungrab]. Grabs nest; while grabbed the view shows it by its cursor.
//                   While a button is held events come also for positions outside of the view's edges.
//                   Other windows can be used all the time. Returns 1.
//   158  icon       CATCHALL i[LoadPng], size p bytes -> p icon
//                   CATCHALL i[SetDialogIcon] p dialog, icon. CATCHALL i[SetMenuItemIcon] p item, icon.
//                   CATCHALL i[Destroy] p icon. What shows the icon keeps its picture.
//   159  option text POINTER_INT_AND_STRING menu, index -> the record's text. Returns 1.
//   160  close observer POINTER_AND_POINTER dialog, PIGUI::PICloseObserver* or null (removes). The observer
//                   is called after the user closed the dialog, which is hidden then.
//   163  file dialogs  CATCHALL i[Load | Save | Directory] s title, settings group, settings key, start
//                   directory, filter rows... -> s chosen path; nothing, and 0, when cancelled. A filter row
//                   is a text, a tab, and patterns separated by blanks. The path is remembered under group
//                   and key, and is where the next dialog with them begins; the start directory is for the
//                   first one. Group SETTINGS is the one of 101 and 102, which read it under the key; that of
//                   another group they find under "GROUP/KEY". Modal: events and timeouts go on. A save
//                   dialog asks before an existing file. It may give a name without a suffix that of the
//                   first pattern; a plug-in that needs one does so otherwise.
//   901  canvas, 902 horizontal frame, 903 vertical frame  POINTER_AND_OPTS parent, PILayout bits
//   904  horizontal matrix POINTER_AND_INT parent, columns: filled row by row
//   905  vertical matrix   POINTER_AND_INT parent, rows: filled column by column
//   906  group box  POINTER_INT_AND_STRING parent, PILayout bits, title
//   907  label      POINTER_AND_STRING parent, caption
//   908  value      CATCHALL i[Text] p widget -> s text, of a caption without its tooltip.
//                   i[Integer] -> i value.  i[Real] -> d value.
//                   i[Checked] -> i 0 or 1. A field whose text is no number reads as 0.
//   909  list items CATCHALL p list, then
//                   i[Append] p item data s text -> i index. The data is the plug-in's and never followed.
//                   i[AppendHeader] s text.  i[Remove], index.  i[Clear].  i[Count] -> i count.
//                   i[Selected] -> i first selected index, -1 when none.  i[Select], index.  i[DeselectAll].
//                   i[GetText], index -> s text.  i[SetText], index s text.  i[GetData], index -> p data.
//
//   Settings, kept between runs; also                                            [ui thread & after init]
//   101  store      POINTER_STRING_AND_STRING null, key, value. Returns 1.
//   102  read       POINTER_AND_STRING null, key -> the record's text becomes the value, empty when unset.
//                   Returns 1.
//
//   Scenario
//   200  initialized  CATCHALL. Returns 1 when there is a scenario.
//   207  reference year CATCHALL -> i year
//   220  platforms  CATCHALL -> i ids, in the host's order
//   246  clock      CATCHALL i[Begin] or i[VisualTime] -> d seconds since the start of the reference year
//   248  create     CATCHALL i[Platform] p PIData::CreatePlatformRequest* -> i id
//   250  header     STRUCT PIData::HeaderRequest*; the host fills `header`. Returns 1 when the id is known.
//   252  frame      CATCHALL -> i PIData::CoordReferenceFrame
//   253  remove     CATCHALL i id. Returns 1. The host dispatches EntityRemoved from inside the call.
//                   Overlays that were attached to the platform stay loaded, attached to none.
//   256  data point STRUCT PIData::DataPointRequest*; the host fills `point`. Returns 1 when the platform has
//                   data at that time.
//
//   Application
//   317  timeout    CATCHALL i[Create], milliseconds p callback, user data -> p timeout. Fires once; the host
//                   forgets it then.   CATCHALL i[Cancel] p timeout
//   319  action     CATCHALL i[Create] s owner, label p callback -> p action. Shown in the actions menu.
//                   CATCHALL i[SetChecked], 0 or 1 s owner, label: choosing an action never changes its mark,
//                   this does; the first time gives it one. CATCHALL i[Destroy] p action
//   322  service    CATCHALL i[Register] s name p interface. Returns 0 when the name is taken.
//                   CATCHALL i[Unregister] s name p interface.  CATCHALL i[Find] s name -> p interface
//   325  notify     CATCHALL i[Message], severity s source, text. Severities: 0 always shown,
//                   1 fatal, 2 error, 3 warning, 4 notice, 5 information, 6 for debugging.
//                   CATCHALL i[Debug], 0 s source, text                          [ui thread & after init]
//
//   Scene
//   411  animated line CATCHALL i[Create], from id, to id, colour 0xRRGGBBAA -> p line. i[Remove] p line
//   418  camera     CATCHALL i[EyePosition] -> d latitude, longitude, altitude. Returns 1.
//                   CATCHALL i[SetCenter] d latitude, longitude, altitude. Returns 1.
//                   CATCHALL i[SetRangeAzimuthElevation] d range, azimuth clockwise from north, elevation
//                   (pi/2 looks straight down). Returns 1.
//   424  cursor     CATCHALL i[LlaAtPixel], x, y, PIVerticalDatum_t -> d latitude, longitude, altitude.
//                   CATCHALL i[LlaAtCursor], PIVerticalDatum_t -> the same for the cursor's own pixel. Return
//                   0 when the pixel misses the earth, or the mouse the view. The position is where the
//                   view ray meets the WGS-84 ellipsoid, its altitude 0. CATCHALL i[PlatformAtCursor] -> i
//                   id, 0 when none
//   428  overlay files, the host's once loaded; `overlay` is a handle
//                   i[LoadFile], platform id, shown s path -> p overlay; nothing when it cannot be opened,
//                   holds no shape, or the platform is unknown. i[LoadStream], platform id p std::istream* ->
//                   p overlay, in no list; the stream is read during the call. i[Unload] p overlay.  i[Show],
//                   0 or 1 p overlay.  i[FindByFileName] s path -> p overlay. i[FileName] p overlay -> s
//                   path.  i[Host] p overlay -> i platform id. i[SerializeToStream] p overlay, std::ostream*.
//                   Returns 1 when all was written. i[RegisterObserver] and i[RemoveObserver] p
//                   PIHALVIS::ZELEventObserver*: called from inside the call that loads or unloads a file,
//                   and not for streams.
//   432  screen text CATCHALL i[Add] s record -> p text. The record's lines are "ScreenText", then
//                   "Enabled FLOAT64 1.0", "Text STRING ...", "Font STRING file size", "PosX FLOAT64 n",
//                   "PosY FLOAT64 n" (pixels from the corner that the alignment names), "TextColor STRING
//                   0xAABBGGRR", "HAlign STRING L|C|R", "VAlign STRING T|C|B". A font that the host does not
//                   have is replaced.   CATCHALL i[Remove] p text
//   439  overlay lists CATCHALL i[Unattached] -> p overlays.  CATCHALL i[Attached], platform id -> p overlays
//   440  context menus CATCHALL i[Register] or i[Remove] p PIHALVIS::ContextMenuCallbackV3*: asked before a
//                   menu opens.  CATCHALL i[AddItem], position, enabled p menu, callback s label: items stand
//                   in the order of their positions, among those of the host
//                   [ui thread, inside menuRequested]
//   910  redraw     null record. One frame soon, however often it is asked. Plug-ins ask when what they draw
//                   in the hook has changed; of what it draws itself (overlays loaded, shown and unloaded,
//                   platforms and what is attached to them, screen texts) the host knows. Returns 1.
//   911  looks      CATCHALL. What a host may lack: it refuses the number then, and plug-ins do without.
//                   i[Room], columns, rows p widget: keeps room for so many letters of usual width and so
//                   many lines, whatever it holds: lines of a label, which breaks its text when it has
//                   several; rows of a list; rows of text fields in a container. A label and a check button
//                   take no more for a longer text, a label with 0 columns the width that is left; what is
//                   cut can be read as its tooltip. A text field wants no more width, and takes what is
//                   left. 0 rows, or columns of others: as the contents need.
//                   i[Mark], 0 or 1 p text field or spinner: shows that its text is not accepted. While
//                   marked it calls back also when it is left, or Enter pressed, without a change.
//                   i[Limits], least, most p spinner: what it takes. A text that is no whole number between
//                   stays, its callback is called, and 908 tells the text; the number is the one before.
//                   i[Chosen] p list, callback or null: called when the user double-clicks a row or presses
//                   Enter on it.
//                   i[Line] p text field, callback or null: makes it a line that is entered. The callback of
//                   119 is called when Enter is pressed, whatever it holds, and only then; this one at each
//                   change of the user's.
//                   Returns 1.
