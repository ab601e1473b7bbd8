#pragma once

/* The record of a dispatch for hosts that are written in C. They compile PIFunctionParamsC.cpp, which is
 * installed beside the headers, with the C++ compiler that their plug-ins need anyway; CMake's target
 * OverlayEditor::c does so by itself. A service table can be made in C, but what comes through it are C++
 * records, so that serving them needs C++. */
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A PIFunctionParams_t: what HPI_PluginDispatchFunction takes behind the number. */
typedef struct HPI_Params HPI_Params;

/* Numbers of the dispatches that a host cannot do without; PIClientFunctions.h has them all. */
enum {
    HPI_StartUp = 0,
    HPI_Close = 2,
    HPI_Name = 3,
    HPI_ListenToEvents = 9,
    HPI_PreDrawOnRefresh = 15,
    HPI_HandleMouseEvent = 16
};
/* Slots of theirs, see PIParameterName_t. */
enum {
    HPI_Status = 0,     /* integer, a result */
    HPI_NameText = 0,   /* text, a result */
    HPI_EventCode = 11, /* integer */
    HPI_EventData = 12, /* pointer, of HandleMouseEvent to an HPI_MouseEvent */
    HPI_Width = 13,     /* integer */
    HPI_Height = 14     /* integer */
};
/* See PIGUI::PIMouseEvent. */
typedef struct HPI_MouseEvent {
    int32_t x;
    int32_t y;
    uint32_t modifiers;
    int32_t wheelDelta;
} HPI_MouseEvent;

/* An empty record, to be freed by the caller; null without memory. */
HPI_Params* HPI_ParamsMake(void);
void HPI_ParamsFree(HPI_Params* params);

/* Sets a slot. Returns 1, or 0 without memory. A text is copied; a pointer is kept as it is. */
int HPI_ParamsSetInteger(HPI_Params* params, int16_t slot, int32_t value);
int HPI_ParamsSetPointer(HPI_Params* params, int16_t slot, void* value);
int HPI_ParamsSetText(HPI_Params* params, int16_t slot, const char* value);

/* What a slot holds; 0, null or an empty text when it is absent. The text is good until the record changes.
 */
int32_t HPI_ParamsInteger(const HPI_Params* params, int16_t slot);
void* HPI_ParamsPointer(const HPI_Params* params, int16_t slot);
const char* HPI_ParamsText(const HPI_Params* params, int16_t slot);

#ifdef __cplusplus
}
#endif
