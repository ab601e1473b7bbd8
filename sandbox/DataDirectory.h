// SPDX-FileCopyrightText: 2026 the OverlayEditor authors
// SPDX-License-Identifier: MIT

#pragma once

namespace sandbox {

/// Tells plug-ins where the host's own files are (the manual in doc/HALVIS, for one): the environment variable
/// HALVIS_DIR. It is share/halvis-sandbox beside the directory of the executable, in a build tree as in an
/// installation, wherever that has been moved to. A value that the user has set stays. Needs a QCoreApplication.
void announceDataDirectory();

}  // namespace sandbox
