#pragma once

#include <QJSEngine>
#include <QObject>
#include <QStringList>
#include <memory>
#include <vector>

class QFileDialog;

namespace sandbox {

class Host;
class ScriptObject;

/// Runs one script against the host; what a script can do is told in docs/scripting.md.
class ScriptRun : public QObject {
    Q_OBJECT

  public:
    ScriptRun(Host& host, const QString& file, const QStringList& arguments);
    ~ScriptRun() override;

    /// Runs the script to its end, closes the plug-ins, and prints what failed.
    /// \return the process's status: 0, or 1 when something failed, 2 when there is no such script
    int execute();

    Host& host() { return host_; }
    const QString& file() const { return file_; }
    const QStringList& arguments() const { return arguments_; }

    /// Ends the script at its next step.
    void interrupt();

    /// Lets everything happen that is waiting to happen now.
    void settle();
    /// Evaluates a further file in the script's global scope. Throws ScriptError.
    void include(const QString& path);

    /// The reply to the next file dialogs, first in, first out.
    struct FileAnswer {
        QString path;           ///< empty: cancel
        bool overwrite = true;  ///< what to answer when asked about an existing file
    };
    void queueAnswer(const FileAnswer& answer) { answers_.push_back(answer); }
    std::size_t unusedAnswers() const { return answers_.size(); }

    /// While true, misuses by plug-ins are gathered in the log and fail nothing.
    void setExpectingMisuse(bool expecting) { expectingMisuse_ = expecting; }
    /// What has gone wrong since the last call, empty when nothing has.
    QString takeProblem();
    void addProblem(const QString& text);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    template <typename Object>
    void expose(const char* name);
    bool evaluate(const QString& text, const QString& name, QString& error);
    void answer(QFileDialog* dialog);
    int finish(QStringList failures);

    Host& host_;
    QString file_;
    QStringList arguments_;
    QJSEngine engine_;
    std::vector<std::unique_ptr<ScriptObject>> objects_;
    std::vector<FileAnswer> answers_;
    QStringList problems_;
    bool expectingMisuse_ = false;
};

}  // namespace sandbox
