#include <QPixmap>

#include "sandbox/Host.h"
#include "sandbox/services/FileDialogs.h"
#include "sandbox/services/Services.h"
#include "sandbox/widgets/DialogBox.h"
#include "sandbox/widgets/MenuItem.h"

namespace sandbox {

namespace {

using Id = PIServerFunctions_t;

class Icon final : public HostObject {
  public:
    explicit Icon(const QPixmap& picture) : icon(picture) {}
    QString describe() const override { return "icon"; }
    QIcon icon;
};

void addDialogBox(Host& host) {
    ServiceTable& table = host.services();
    table.add<PI_DATA_POINTER_AND_STRING>(
        Id::CreateDialogBox, "dialog",
        [&host](ServiceCall& call, PI_DATA_POINTER_AND_STRING& record) -> PIServiceResult {
            QWidget* owner = &host.window();
            if (record.pointer) {
                const auto* parent = call.object<HostWidget>(record.pointer, "window");
                if (!parent) return 0;
                if (!parent->widget()) return call.misuse(parent->describe() + " stands in no window");
                owner = parent->widget()->window();
            }
            return asResult(call.keep(std::make_unique<DialogBox>(owner, record.text, host.settings())));
        });
    table.addBare(Id::DialogShow, "show dialog", [](ServiceCall& call, void* handle) -> PIServiceResult {
        auto* dialog = call.object<DialogBox>(handle, "dialog");
        if (!dialog) return 0;
        dialog->open();
        return 1;
    });
    table.add<PI_DATA_POINTER_AND_POINTER>(
        Id::DialogRegisterCloseObserver, "close observer",
        [](ServiceCall& call, PI_DATA_POINTER_AND_POINTER& record) -> PIServiceResult {
            auto* dialog = call.object<DialogBox>(record.pointer, "dialog");
            if (!dialog) return 0;
            dialog->setCloseObserver(static_cast<PIGUI::PICloseObserver*>(record.second));
            return 1;
        });
}

void addIcons(ServiceTable& table) {
    using Selector = PISelector::Icon;
    table.addSelected(Id::Icon, Selector::LoadPng, "load icon", {.integers = 1, .pointers = 1},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          const auto* bytes = arguments.pointer<const uchar>(0);
                          const std::int64_t size = arguments.integer(0);
                          if (!bytes || size <= 0) return call.misuse("no bytes");
                          QPixmap picture;
                          if (!picture.loadFromData(bytes, static_cast<uint>(size), "PNG")) return 0;
                          arguments.give(call.keep(std::make_unique<Icon>(picture))->handle());
                          return 1;
                      });
    table.addSelected(Id::Icon, Selector::SetDialogIcon, "dialog icon", {.pointers = 2},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* dialog = call.object<DialogBox>(arguments.pointer(0), "dialog");
                          auto* icon = call.object<Icon>(arguments.pointer(1), "icon");
                          if (!dialog || !icon) return 0;
                          dialog->widget()->setWindowIcon(icon->icon);
                          return 1;
                      });
    table.addSelected(Id::Icon, Selector::SetMenuItemIcon, "menu item icon", {.pointers = 2},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* item = call.object<MenuItem>(arguments.pointer(0), "menu item");
                          auto* icon = call.object<Icon>(arguments.pointer(1), "icon");
                          if (!item || !icon) return 0;
                          item->action().setIcon(icon->icon);
                          return 1;
                      });
    table.addSelected(Id::Icon, Selector::Destroy, "destroy icon", {.pointers = 1},
                      [](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          if (!call.object<Icon>(arguments.pointer(0), "icon")) return 0;
                          call.handles().remove(arguments.pointer(0));
                          return 1;
                      });
}

void addFileDialogs(Host& host) {
    using Selector = PISelector::FileDialog;
    const auto dialog = [&host](Selector selector, const char* name, FileDialogs::Kind kind) {
        host.services().addSelected(Id::FileDialog, selector, name, {.texts = 4, .moreTexts = true},
                                    [&host, kind](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                                        FileDialogs::Request request{.kind = kind,
                                                                     .title = arguments.string(0),
                                                                     .group = arguments.string(1),
                                                                     .key = arguments.string(2),
                                                                     .startDirectory = arguments.string(3),
                                                                     .filterRows = {}};
                                        for (std::size_t i = 4; i < arguments.textCount(); ++i)
                                            request.filterRows << arguments.string(i);
                                        const QString path = host.fileDialogs().ask(request);
                                        if (path.isEmpty()) return 0;
                                        arguments.give(path.toStdString());
                                        return 1;
                                    });
    };
    dialog(Selector::Load, "load dialog", FileDialogs::Kind::Load);
    dialog(Selector::Save, "save dialog", FileDialogs::Kind::Save);
    dialog(Selector::Directory, "directory dialog", FileDialogs::Kind::Directory);
}

}  // namespace

void addDialogServices(Host& host) {
    addDialogBox(host);
    addIcons(host.services());
    addFileDialogs(host);
}

}  // namespace sandbox
