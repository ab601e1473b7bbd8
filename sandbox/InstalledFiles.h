// SPDX-FileCopyrightText: 2026 the OverlayEditor authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace sandbox {

/// Where the program's own files lie. They are found from the running program, so that a build tree and an
/// installation may be moved as a whole, to any name. The application object must exist.

/// Directory of the program's data: samples, and the manual at "doc/HALVIS/Overlay_Editor_Plugin.pdf".
/// An absolute path; it need not exist.
QString dataDirectory();

/// The plug-in that is loaded unless another is named: the one built beside the program, else the installed
/// one. An absolute path; it need not exist.
QString defaultPlugin();

}  // namespace sandbox
