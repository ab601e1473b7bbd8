#include "sandbox/services/FileDialogs.h"

#include <QDir>
#include <QFileInfo>

#include "sandbox/Settings.h"

namespace sandbox {

namespace {

/// Qt's form of a filter row: "Overlays (*.zel *.ll)".
QString nameFilter(const QString& row) {
    const auto tab = row.indexOf('\t');
    if (tab < 0) return row;
    QString text = row.left(tab);
    // Parentheses of the text would be taken for the patterns.
    text.replace('(', '[').replace(')', ']');
    return QString("%1 (%2)").arg(text, row.mid(tab + 1));
}

/// ".zel" of "Overlay\t*.zel *.ll".
QString suffixOf(const QString& row) {
    const QString pattern = row.section('\t', 1).section(' ', 0, 0);
    return pattern.startsWith("*.") && !pattern.mid(2).contains('*') ? pattern.mid(2) : QString();
}

}  // namespace

QString FileDialogs::ask(const Request& request) {
    // What plug-ins store and read stands in this group, too.
    const bool plain = request.group.isEmpty() || request.group == "SETTINGS";
    const QString settingsKey = plain ? request.key : request.group + '/' + request.key;
    const QString remembered = request.key.isEmpty() ? QString() : settings_.value(settingsKey);

    QFileDialog dialog(&owner_, request.title);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    QStringList filters;
    for (const QString& row : request.filterRows) filters << nameFilter(row);
    switch (request.kind) {
        case Kind::Load:
            dialog.setFileMode(QFileDialog::ExistingFile);
            break;
        case Kind::Save:
            dialog.setAcceptMode(QFileDialog::AcceptSave);
            dialog.setFileMode(QFileDialog::AnyFile);
            dialog.setDefaultSuffix(suffixOf(request.filterRows.value(0)));
            QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& filter) {
                const QString suffix = suffixOf(request.filterRows.value(filters.indexOf(filter)));
                dialog.setDefaultSuffix(suffix);
                // A name of one kind that stands there becomes one of the other.
                const QFileInfo name(dialog.selectedFiles().value(0));
                for (const QString& row : request.filterRows)
                    if (!suffix.isEmpty() && name.suffix() == suffixOf(row))
                        dialog.selectFile(name.completeBaseName() + '.' + suffix);
            });
            break;
        case Kind::Directory:
            dialog.setFileMode(QFileDialog::Directory);
            dialog.setOption(QFileDialog::ShowDirsOnly);
            break;
    }
    if (!filters.isEmpty() && request.kind != Kind::Directory) dialog.setNameFilters(filters);
    if (const QFileInfo last(remembered); !remembered.isEmpty() && last.dir().exists()) {
        dialog.setDirectory(last.dir());
        if (request.kind != Kind::Load || last.exists()) dialog.selectFile(last.fileName());
    } else if (!request.startDirectory.isEmpty()) {
        dialog.setDirectory(request.startDirectory);
    }

    emit opening(&dialog);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    const QString path = dialog.selectedFiles().first();
    if (!request.key.isEmpty()) settings_.setValue(settingsKey, path);
    return path;
}

}  // namespace sandbox
