#pragma once

#include <QImage>
#include <QString>

namespace sandbox {

class Host;

/// A picture as it stands on the screen: the "view", the "window" with its dialogs over it (with a title
/// bar each, as a window manager would draw it), or the dialog of a title, or its group
/// box of the title `group`. Null when there is none.
QImage takePicture(Host& host, const QString& what, const QString& group);

}  // namespace sandbox
