#pragma once

#include <QStringList>

namespace sandbox {

/// Runs "--render": overlay files become a picture, without a window. The arguments are the whole command
/// line. Messages go to standard error as FILE:LINE: TEXT.
///
/// \return 0; 1 when the picture was written but a file had messages or could not be read; 2 when there is
/// no picture
int runRenderCommand(const QStringList& arguments);

}  // namespace sandbox
