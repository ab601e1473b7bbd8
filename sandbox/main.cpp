#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QScreen>
#include <QStyleFactory>
#include <QSurfaceFormat>
#include <QTimer>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "common/Printable.h"
#include "globe/GlobeView.h"
#include "sandbox/EndSignals.h"
#include "sandbox/Host.h"
#include "sandbox/InstalledFiles.h"
#include "sandbox/Palette.h"
#include "sandbox/PlainText.h"
#include "sandbox/RenderCommand.h"
#include "sandbox/Session.h"
#include "sandbox/SizeText.h"
#include "sandbox/UserFiles.h"
#include "sandbox/script/ScriptRun.h"

namespace {

struct Options {
    QString plugin;
    QString settings;
    QString script;
    QString trace;
    QSize size{1280, 800};
    bool hasSize = false;
    bool verbose = false;
    QStringList overlays;
    QStringList scriptArguments;
};

/// The command line without --plugin, which Qt would take for an option of its own.
std::vector<char*> argumentsForQt(int argc, char** argv) {
    std::vector<char*> kept;
    for (int i = 0; i < argc; ++i) {
        const std::string_view argument(argv[i]);
        if (argument == "--plugin")
            ++i;
        else if (!argument.starts_with("--plugin="))
            kept.push_back(argv[i]);
    }
    kept.push_back(nullptr);
    return kept;
}

/// Whether nothing but a text is wanted, for which there need not be a screen.
bool asksForText(const QStringList& arguments) {
    const auto options = arguments.mid(0, arguments.indexOf("--"));
    return std::ranges::any_of(QStringList{"-h", "--help", "--help-all", "-v", "--version"},
                               [&](const QString& word) { return options.contains(word); });
}

/// Pictures are drawn in software, the same on every machine. Where there is no screen, the program starts
/// again on a virtual one.
void prepareRendering(char** argv) {
    setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
    unsetenv("QT_SCALE_FACTOR");
    if (getenv("DISPLAY") || getenv("WAYLAND_DISPLAY")) return;
    const char* const screen[] = {"xvfb-run", "-a", "-s", "-screen 0 640x480x24 -noreset +extension GLX"};
    std::vector<char*> command;
    for (const char* word : screen) command.push_back(const_cast<char*>(word));
    for (char** word = argv; *word; ++word) command.push_back(*word);
    command.push_back(nullptr);
    execvp(command.front(), command.data());
    std::fprintf(stderr, "--render needs a screen, or xvfb-run for a virtual one\n");
    std::exit(2);
}

/// A word of the command line, as a terminal may show it.
std::string shown(const QString& word) {
    return UTILS::printable(word.toStdString());
}

/// Leaves the program with a message when the command line is wrong.
Options readCommandLine(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "A stand-in host: loads a plug-in and shows its work on a globe. Overlay files that are named on the "
        "command line are opened; with --script they are the script's arguments instead.");
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption plugin("plugin", "Plug-in to load; \"none\" for none.", "file",
                                    sandbox::defaultPlugin());
    const QCommandLineOption settings("settings", "Settings file instead of the user's own.", "file");
    const QCommandLineOption script("script", "Script to run; see docs/scripting.md.", "file.js");
    const QCommandLineOption size("size", "Size of the window, such as 1600x1000.", "WxH", "1280x800");
    const QCommandLineOption palette("palette", "Colours of the windows: light, dark or system.", "name",
                                     "system");
    const QCommandLineOption verbose("verbose", "Copy the log to standard error.");
    const QCommandLineOption trace("trace", "Write every service call and event to a file.", "file");
    const QCommandLineOption render("render", "Draw overlay files as a picture; see --render --help.");
    parser.addOptions({plugin, settings, script, size, palette, verbose, trace, render});
    parser.addPositionalArgument("arguments", "Overlay files, or the script's arguments.", "[arguments...]");
    parser.process(arguments);

    Options options;
    options.plugin = parser.value(plugin);
    options.settings = parser.value(settings);
    options.script = parser.value(script);
    options.trace = parser.value(trace);
    options.size = sandbox::readSize(parser.value(size));
    options.hasSize = parser.isSet(size);
    options.verbose = parser.isSet(verbose);
    (options.script.isEmpty() ? options.overlays : options.scriptArguments) = parser.positionalArguments();
    if (options.size.width() < 320 || options.size.height() < 240) {
        std::fprintf(stderr, "--size %s: expected WIDTHxHEIGHT, at least 320x240\n",
                     shown(parser.value(size)).c_str());
        std::exit(2);
    }
    if (const QFileInfo file(options.settings); file.exists() && !file.isFile()) {
        std::fprintf(stderr, "--settings %s: not a regular file\n", shown(options.settings).c_str());
        std::exit(2);
    }
    if (!sandbox::choosePalette(parser.value(palette))) {
        std::fprintf(stderr, "--palette %s: expected light, dark or system\n",
                     shown(parser.value(palette)).c_str());
        std::exit(2);
    }
    return options;
}

/// Platforms come first, so that what is attached to them finds them. The view turns to everything; but if
/// platforms are named first, to them and what is attached to them.
void openFiles(sandbox::Host& host, QStringList files) {
    if (files.isEmpty()) return;
    const bool platformsFirst = sandbox::UserFiles::isPlatformFile(files.front());
    const auto others = std::ranges::stable_partition(files, sandbox::UserFiles::isPlatformFile);
    struct Coming {
        std::ptrdiff_t platforms;
        std::ptrdiff_t files;
        bool turned = false;
    };
    const auto coming = std::make_shared<Coming>(Coming{others.begin() - files.begin(), files.size()});
    for (const QString& file : files)
        host.files().openSoon(file, [&host, platformsFirst, coming](bool shown) {
            coming->turned = coming->turned || (platformsFirst && coming->platforms > 0 && shown);
            const bool areAll = --coming->files == 0;
            if (--coming->platforms == 0 ? coming->turned || areAll : areAll && !coming->turned)
                host.showEverything();
        });
}

}  // namespace

int main(int argc, char** argv) {
    // What is larger than the user may write is a message, no end.
    std::signal(SIGXFSZ, SIG_IGN);
    // The view has its own samples and depth, which the window would have for nothing.
    QSurfaceFormat window = sandbox::GlobeView::surfaceFormat();
    window.setSamples(0);
    window.setDepthBufferSize(0);
    window.setStencilBufferSize(0);
    QSurfaceFormat::setDefaultFormat(window);
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
    const bool render = arguments.contains("--render");
    const bool lacksScreen =
        !render && !getenv("DISPLAY") && !getenv("WAYLAND_DISPLAY") && !getenv("QT_QPA_PLATFORM");
    if (asksForText(arguments) || lacksScreen)
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    else if (render)
        prepareRendering(argv);
    std::vector<char*> qtArguments = argumentsForQt(argc, argv);
    int qtArgumentCount = static_cast<int>(qtArguments.size()) - 1;
    QApplication application(qtArgumentCount, qtArguments.data());
    QApplication::setOrganizationName("OverlayEditor");
    QApplication::setApplicationName("halvis-sandbox");
    QApplication::setApplicationVersion(SANDBOX_VERSION);
    QApplication::setDesktopFileName("org.overlayeditor.HalvisSandbox");
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    new sandbox::PlainText;
    if (render) return sandbox::runRenderCommand(arguments);
    sandbox::announceDataDirectory();
    const Options options = readCommandLine(arguments);
    if (lacksScreen) {
        std::fprintf(
            stderr,
            "there is no screen (DISPLAY is not set): xvfb-run gives a virtual one, --render needs none\n");
        return 2;
    }

    sandbox::Host host(options.settings);
    host.log().setEcho(options.verbose);
    if (!options.trace.isEmpty()) {
        if (const QString error = host.trace().open(options.trace); !error.isEmpty()) {
            std::fprintf(stderr, "--trace %s: %s\n", shown(options.trace).c_str(), qPrintable(error));
            return 2;
        }
    }
    sandbox::ScriptRun* running = nullptr;
    const sandbox::EndSignals endSignals([&running, &host](int number) {
        if (running) running->interrupt();
        host.session().finish();
        QApplication::exit(number == 0 ? 0 : 128 + number);
    });
    host.window().resize(options.size);
    if (!options.hasSize && options.script.isEmpty()) {
        // What a window manager's frame takes, there is nothing to ask yet.
        constexpr int kFrame = 40;
        const QSize room = host.window().screen()->availableGeometry().size() - QSize(0, kFrame);
        host.window().resize(options.size.boundedTo(room));
    }
    host.window().show();
    if (options.plugin != "none") host.openPlugin(options.plugin.toStdString());
    if (options.script.isEmpty()) {
        host.greet();
        if (options.hasSize) host.window().resize(options.size);
        // Who names files wants these; who names none goes on where the last session ended.
        if (options.overlays.isEmpty()) host.session().restore();
        openFiles(host, options.overlays);
        host.session().begin();
        return QApplication::exec();
    }

    // A blinking mark in a field would make every picture another one.
    QApplication::setCursorFlashTime(0);
    sandbox::ScriptRun run(host, options.script, options.scriptArguments);
    running = &run;
    QTimer::singleShot(0, &host, [&run] { QApplication::exit(run.execute()); });
    return QApplication::exec();
}
