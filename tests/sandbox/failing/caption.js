// SPDX-FileCopyrightText: 2026 the OverlayEditor authors
// SPDX-License-Identifier: MIT

include("../lib/probe.js");
open();
probe.press("Pull");
