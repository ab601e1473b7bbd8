#pragma once

#include <QString>

namespace sandbox {

/// Where the program's own files lie. They are found from the running program, so that a build tree and an
/// installation may be moved as a whole, to any name. The application object must exist.

/// Tells plug-ins where the host's own files are (the manual at "doc/HALVIS/Overlay_Editor_Plugin.pdf", for
/// one): the environment variable HALVIS_DIR. A value that the user has set stays.
void announceDataDirectory();

/// The plug-in that is loaded unless another is named: the one built beside the program, else the installed
/// one. An absolute path; it need not exist.
QString defaultPlugin();

}  // namespace sandbox
