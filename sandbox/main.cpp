#include <QApplication>
#include <QCommandLineParser>
#include <QStyleFactory>
#include <QSurfaceFormat>
#include <QTimer>
#include <cstdio>
#include <string_view>
#include <vector>

#include "sandbox/Host.h"
#include "sandbox/script/ScriptRun.h"
#include "sandbox/view/GlobeView.h"

namespace {

struct Options {
    QString plugin;
    QString settings;
    QString script;
    QSize size{1280, 800};
    bool verbose = false;
    QStringList overlays;
    QStringList scriptArguments;
};

/// "1600x1000"; an invalid size for any other text.
QSize readSize(const QString& text) {
    const QStringList parts = text.split('x');
    if (parts.size() != 2) return {};
    return {parts[0].toInt(), parts[1].toInt()};
}

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

/// Leaves the program with a message when the command line is wrong.
Options readCommandLine(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "A stand-in host: loads a plug-in and shows its work on a globe. Overlay files that are named on the "
        "command line are opened; with --script they are the script's arguments instead.");
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption plugin("plugin", "Plug-in to load; \"none\" for none.", "file",
                                    QApplication::applicationDirPath() + "/../lib/OverlayEditor.so");
    const QCommandLineOption settings("settings", "Settings file instead of the user's own.", "file");
    const QCommandLineOption script("script", "Script to run; see docs/scripting.md.", "file.js");
    const QCommandLineOption size("size", "Size of the window, such as 1600x1000.", "WxH", "1280x800");
    const QCommandLineOption verbose("verbose", "Copy the log to standard error.");
    parser.addOptions({plugin, settings, script, size, verbose});
    parser.addPositionalArgument("arguments", "Overlay files, or the script's arguments.", "[arguments...]");
    parser.process(arguments);

    Options options;
    options.plugin = parser.value(plugin);
    options.settings = parser.value(settings);
    options.script = parser.value(script);
    options.size = readSize(parser.value(size));
    options.verbose = parser.isSet(verbose);
    (options.script.isEmpty() ? options.overlays : options.scriptArguments) = parser.positionalArguments();
    if (options.size.width() < 320 || options.size.height() < 240) {
        std::fprintf(stderr, "--size %s: expected WIDTHxHEIGHT, at least 320x240\n",
                     qPrintable(parser.value(size)));
        std::exit(2);
    }
    return options;
}

}  // namespace

int main(int argc, char** argv) {
    QSurfaceFormat::setDefaultFormat(sandbox::GlobeView::surfaceFormat());
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
    std::vector<char*> qtArguments = argumentsForQt(argc, argv);
    int qtArgumentCount = static_cast<int>(qtArguments.size()) - 1;
    QApplication application(qtArgumentCount, qtArguments.data());
    QApplication::setOrganizationName("OverlayEditor");
    QApplication::setApplicationName("halvis-sandbox");
    QApplication::setApplicationVersion(SANDBOX_VERSION);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    const Options options = readCommandLine(arguments);

    sandbox::Host host(options.settings);
    host.log().setEcho(options.verbose);
    host.window().resize(options.size);
    host.window().show();
    if (options.plugin != "none") host.openPlugin(options.plugin.toStdString());
    for (const QString& overlay : options.overlays) host.openOverlay(overlay.toStdString());
    if (options.script.isEmpty()) return QApplication::exec();

    sandbox::ScriptRun run(host, options.script, options.scriptArguments);
    QTimer::singleShot(0, &host, [&run] { QApplication::exit(run.execute()); });
    return QApplication::exec();
}
