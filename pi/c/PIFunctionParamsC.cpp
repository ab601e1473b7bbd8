#include "pi/PIFunctionParamsC.h"

#include <cstddef>
#include <new>

#include "pi/PIEvents.h"
#include "pi/PIFunctionParams.h"

namespace {

using Function = PIClientFunctions_t;
using Slot = PIParameterName_t;

template <typename Named>
constexpr bool is(int number, Named name) {
    return number == static_cast<int>(name);
}
static_assert(is(HPI_StartUp, Function::StartUp) && is(HPI_Close, Function::Close) &&
              is(HPI_Name, Function::Name) && is(HPI_ListenToEvents, Function::ListenToEvents) &&
              is(HPI_PreDrawOnRefresh, Function::PreDrawOnRefresh) &&
              is(HPI_HandleMouseEvent, Function::HandleMouseEvent));
static_assert(is(HPI_Status, Slot::Status) && is(HPI_NameText, Slot::NameText) &&
              is(HPI_EventCode, Slot::EventCode) && is(HPI_EventData, Slot::EventData) &&
              is(HPI_Width, Slot::Width) && is(HPI_Height, Slot::Height));
static_assert(sizeof(HPI_MouseEvent) == sizeof(PIGUI::PIMouseEvent) &&
              offsetof(HPI_MouseEvent, wheelDelta) == offsetof(PIGUI::PIMouseEvent, wheelDelta));

PIFunctionParams_t& record(HPI_Params* params) {
    return *reinterpret_cast<PIFunctionParams_t*>(params);
}
const PIFunctionParams_t& record(const HPI_Params* params) {
    return *reinterpret_cast<const PIFunctionParams_t*>(params);
}

template <typename Map, typename Value>
int set(Map& map, std::int16_t slot, const Value& value) {
    try {
        map[static_cast<Slot>(slot)] = value;
        return 1;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

}  // namespace

HPI_Params* HPI_ParamsMake(void) {
    return reinterpret_cast<HPI_Params*>(new (std::nothrow) PIFunctionParams_t);
}
void HPI_ParamsFree(HPI_Params* params) {
    delete reinterpret_cast<PIFunctionParams_t*>(params);
}
int HPI_ParamsSetInteger(HPI_Params* params, std::int16_t slot, std::int32_t value) {
    return set(record(params).integers, slot, value);
}
int HPI_ParamsSetPointer(HPI_Params* params, std::int16_t slot, void* value) {
    return set(record(params).pointers, slot, value);
}
int HPI_ParamsSetText(HPI_Params* params, std::int16_t slot, const char* value) {
    return set(record(params).strings, slot, value);
}
std::int32_t HPI_ParamsInteger(const HPI_Params* params, std::int16_t slot) {
    return record(params).integer(static_cast<Slot>(slot));
}
void* HPI_ParamsPointer(const HPI_Params* params, std::int16_t slot) {
    return record(params).pointer(static_cast<Slot>(slot));
}
const char* HPI_ParamsText(const HPI_Params* params, std::int16_t slot) {
    const std::string* const text = record(params).strings.find(static_cast<Slot>(slot));
    return text ? text->c_str() : "";
}
