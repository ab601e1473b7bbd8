#!/usr/bin/env bash
# tests/pi/exports.sh LIBRARY: the nine entry points are the library's only visible symbols.
set -euo pipefail
expected="HPI_CleanUpPlugin
HPI_GetBitWidth
HPI_GetCompilerVersion
HPI_InitializeFunctionMap
HPI_IsDebugMode
HPI_MinimumVersion
HPI_PluginDispatchFunction
HPI_VersionInfo
HPI_VersionInfoEx"
found=$(nm -D --defined-only "$1" | awk '{print $3}' | sort)
[ "$found" = "$expected" ] || { printf 'visible symbols are not the nine entry points:\n%s\n' "$found"; exit 1; }
