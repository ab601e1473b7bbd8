#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <utility>

#include "pi/PIClientFunctions.h"

class PIFunctionParams_t;

namespace PIApp {
class PIApplication_v1_24;
}

/// A static adapter: (the plug-in object, the event's record) -> status.
using PIClientHandler = std::int32_t (*)(void* object, PIFunctionParams_t* params);
/// An adapter and the object that it is called with.
using PIClientFuncAndData_t = std::pair<PIClientHandler, void*>;

/// The client function map, through which the host's events reach the plug-in object.
extern std::map<PIClientFunctions_t, PIClientFuncAndData_t> g_ClientMessageMap;

namespace ClientFunctionMap {

/// Enters all 31 adapters with the plug-in object, in the order of their numbers. The map's object lives
/// until the host's Close; one that was entered before and never closed is destroyed now.
void replaceApplication(std::unique_ptr<PIApp::PIApplication_v1_24> application);

/// Destroys the object that the host has not closed, as a Close without a record does.
void closeApplication();

/// Frees what outlives Close: wrappers and callbacks. An object that was not closed is closed first, as it
/// holds some of them. While others are at work all that waits for them, but no entry finds the object.
void cleanUp();

/// Makes every entry that holds `object` hold null: the adapters then do nothing.
void forget(void* object);

/// Calls the adapter entered under `number`; 0 when there is none. Where the object is closed already the
/// record's status says so. While others are at work (see EntryScope)
/// a mouse event is not consumed and a frame is made up for by another one; Close and ListenToEvents wait.
std::int32_t dispatch(std::int32_t number, PIFunctionParams_t* params);

}  // namespace ClientFunctionMap
