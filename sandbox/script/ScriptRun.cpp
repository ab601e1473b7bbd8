#include "sandbox/script/ScriptRun.h"

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QWindow>
#include <cstdio>

#include "globe/GlobeView.h"
#include "sandbox/Host.h"
#include "sandbox/script/FileDialogAnswer.h"
#include "sandbox/script/Prelude.h"
#include "sandbox/script/ScriptScene.h"
#include "sandbox/script/ScriptTools.h"
#include "sandbox/script/ScriptView.h"
#include "sandbox/script/ScriptWidgets.h"
#include "sandbox/services/FileDialogs.h"

namespace sandbox {

namespace {

/// The script's own line in a stack trace, as "file:line: ".
QString placeOf(const QJSValue& error, const QString& file) {
    for (const QString& frame : error.property("stack").toString().split('\n')) {
        const auto at = frame.indexOf(file + ':');
        if (at < 0) continue;
        const QString line = frame.mid(at + file.size() + 1).section(':', 0, 0);
        return QString("%1:%2: ").arg(QFileInfo(file).fileName(), line);
    }
    return QString("%1:%2: ").arg(QFileInfo(error.property("fileName").toString()).fileName(),
                                  error.property("lineNumber").toString());
}

}  // namespace

ScriptRun::ScriptRun(Host& host, const QString& file, const QStringList& arguments)
    : host_(host), file_(file), arguments_(arguments) {
    engine_.installExtensions(QJSEngine::ConsoleExtension);
    expose<ScriptWidgets>("$widgets");
    expose<ScriptView>("$view");
    expose<ScriptScene>("$scene");
    expose<ScriptTools>("$tools");
    connect(&host.fileDialogs(), &FileDialogs::opening, this, &ScriptRun::answer);
    // The pointer of the screen must not play along: a script's events go to the widgets themselves.
    QCoreApplication::instance()->installEventFilter(this);
}

ScriptRun::~ScriptRun() = default;

template <typename Object>
void ScriptRun::expose(const char* name) {
    auto object = std::make_unique<Object>(*this);
    QJSEngine::setObjectOwnership(object.get(), QJSEngine::CppOwnership);
    engine_.globalObject().setProperty(name, engine_.newQObject(object.get()));
    objects_.push_back(std::move(object));
}

bool ScriptRun::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::Enter:
        case QEvent::Leave:
            return qobject_cast<QWindow*>(watched) != nullptr;
        default:
            return false;
    }
}

void ScriptRun::interrupt() {
    addProblem("ended from outside");
    engine_.setInterrupted(true);
}

void ScriptRun::settle() {
    // What has been done is in the picture.
    QCoreApplication::processEvents();
    while (host_.followsClock()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const GlobeView& view = host_.view();
    for (const auto frames = view.frameCount(); view.gathers() && view.frameCount() == frames;)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

QString ScriptRun::takeProblem() {
    if (!expectingMisuse_)
        for (const QString& misuse : host_.log().takeMisuses()) addProblem("misuse of the host by " + misuse);
    const QString text = problems_.join("; ");
    problems_.clear();
    return text;
}

void ScriptRun::addProblem(const QString& text) {
    problems_ << text;
}

void ScriptRun::answer(QFileDialog* dialog) {
    if (answers_.empty()) {
        addProblem(QString("file dialog \"%1\" opened, and the script has no answer to it")
                       .arg(dialog->windowTitle()));
        QMetaObject::invokeMethod(dialog, &QDialog::reject, Qt::QueuedConnection);
        return;
    }
    const FileAnswer answer = answers_.front();
    answers_.erase(answers_.begin());
    new FileDialogAnswer(*dialog, answer.path, answer.overwrite,
                         [this](const QString& problem) { addProblem(problem); });
}

bool ScriptRun::evaluate(const QString& text, const QString& name, QString& error) {
    const QJSValue result = engine_.evaluate(text, name);
    if (!result.isError()) return true;
    error = placeOf(result, name) + result.toString();
    return false;
}

void ScriptRun::include(const QString& path) {
    const QString whole = QFileInfo(QFileInfo(file_).absoluteDir(), path).filePath();
    QFile file(whole);
    if (!file.open(QIODevice::ReadOnly)) throw ScriptError{whole + ": " + file.errorString()};
    QString error;
    if (!evaluate(QString::fromUtf8(file.readAll()), whole, error)) throw ScriptError{error};
}

int ScriptRun::execute() {
    QFile file(file_);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(file_), qPrintable(file.errorString()));
        return 2;
    }
    settle();
    QStringList failures;
    QString error;
    if (!evaluate(kPrelude, "prelude", error) || !evaluate(QString::fromUtf8(file.readAll()), file_, error))
        failures << error;
    return finish(failures);
}

int ScriptRun::finish(QStringList failures) {
    expectingMisuse_ = false;
    settle();
    const std::size_t before = host_.log().entries().size();
    for (const auto& plugin : std::vector<Plugin*>([this] {
             std::vector<Plugin*> open;
             for (const auto& entry : host_.plugins()) open.push_back(entry.get());
             return open;
         }())) {
        const QString name = plugin->name();
        if (!host_.closePlugin(*plugin)) failures << name + " cannot be unloaded";
    }
    for (std::size_t i = before; i < host_.log().entries().size(); ++i) {
        const LogEntry& entry = host_.log().entries()[i];
        if (entry.text.contains("left behind")) std::fprintf(stderr, "%s\n", qPrintable(entry.text));
    }
    if (const QString problem = takeProblem(); !problem.isEmpty()) failures << problem;
    if (!answers_.empty()) failures << QString("%1 file dialog(s) never came").arg(answers_.size());
    for (const QString& failure : failures) std::fprintf(stderr, "FAILED: %s\n", qPrintable(failure));
    return failures.isEmpty() ? 0 : 1;
}

}  // namespace sandbox
