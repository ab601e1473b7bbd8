/* Drives the plug-in as the plainest of hosts would, in C: dlopen, dlsym and raw calls. */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "pi/PIFunctionParamsC.h"

/* dlsym hands out functions as object pointers, as POSIX has it and ISO C does not. */
#pragma GCC diagnostic ignored "-Wpedantic"

#define CHECK(condition) \
    if (!(condition)) return printf("failed: %s (line %d)\n", #condition, __LINE__), 1

typedef int32_t (*Dispatch)(int32_t, void*, void*, void*, void*, void*);

/* A service table: a pointer to two functions. This host serves nothing. */
struct Table {
    void* const* functions;
};
static int served = 0;
static int32_t hostBuildNumber(struct Table* table) {
    return (void)table, 12000;
}
static intptr_t serve(struct Table* table, void* identity, int32_t service, void* record) {
    (void)table, (void)identity, (void)service, (void)record;
    return ++served, 0;
}

/* Zeroed memory is a valid empty record; one for each dispatch, so that what the plug-in puts in stays
 * reachable. */
static char record[31][256];

/* Records that are made, and not only room for them: arguments go in and results come out. */
static int withArguments(Dispatch dispatch) {
    HPI_Params* const params = HPI_ParamsMake();
    HPI_MouseEvent press = {10, 20, 0, 0};
    CHECK(params && HPI_ParamsInteger(params, HPI_Status) == 0 && !*HPI_ParamsText(params, HPI_NameText));
    dispatch(HPI_Name, params, NULL, NULL, NULL, NULL);
    CHECK(strcmp(HPI_ParamsText(params, HPI_NameText), "OverlayEditor") == 0);
    CHECK(HPI_ParamsSetInteger(params, HPI_Status, 7) && HPI_ParamsSetInteger(params, HPI_EventCode, 0));
    CHECK(HPI_ParamsSetPointer(params, HPI_EventData, &press));
    CHECK(HPI_ParamsPointer(params, HPI_EventData) == &press);
    dispatch(HPI_HandleMouseEvent, params, NULL, NULL, NULL, NULL);
    CHECK(HPI_ParamsInteger(params, HPI_Status) == 0); /* nothing is drawn */
    CHECK(HPI_ParamsSetText(params, 7, "key") && strcmp(HPI_ParamsText(params, 7), "key") == 0);
    dispatch(HPI_Close, params, NULL, NULL, NULL, NULL);
    CHECK(HPI_ParamsInteger(params, HPI_Status) == 0);
    dispatch(HPI_StartUp, params, NULL, NULL, NULL, NULL);
    CHECK(HPI_ParamsInteger(params, HPI_Status) == -1); /* it is closed */
    HPI_ParamsFree(params);
    return 0;
}

int main(int count, char** arguments) {
    void* library = count > 1 ? dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL) : NULL;
    if (!library) return printf("%s\n", count > 1 ? dlerror() : "usage: dispatch-from-c LIBRARY"), 2;
    Dispatch dispatch = (Dispatch)dlsym(library, "HPI_PluginDispatchFunction");
    void (*const initialise)(struct Table*, void*) =
        (void (*)(struct Table*, void*))dlsym(library, "HPI_InitializeFunctionMap");
    void (*const cleanUp)(void) = (void (*)(void))dlsym(library, "HPI_CleanUpPlugin");
    void* const functions[] = {(void*)hostBuildNumber, (void*)serve};
    struct Table table = {functions};

    initialise(&table, &table);
    for (int32_t number = 0; number <= 30; ++number)
        if (number != 2) CHECK(dispatch(number, record[number], NULL, NULL, NULL, NULL) == 0);
    CHECK(served > 0);
    if (withArguments(dispatch)) return 1;
    cleanUp();
    const int before = served;
    initialise(NULL, NULL); /* a host without services: the two-line message */
    CHECK(dispatch(0, NULL, NULL, NULL, NULL, NULL) == 0);
    CHECK(dispatch(2, NULL, NULL, NULL, NULL, NULL) == 0);
    cleanUp();
    CHECK(served == before && dlclose(library) == 0);
    return puts("every number answered"), 0;
}
