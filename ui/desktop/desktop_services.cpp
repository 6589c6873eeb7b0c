#include "ui/desktop/desktop_services.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <utility>

namespace tarnwick {
namespace {

int ask(QDialog& dialog) {
  dialog.setWindowModality(Qt::WindowModal);
  return dialog.exec();
}

}  // namespace

DesktopServices::DesktopServices(SettingsStore& settings, Workspace& workspace,
                                 QString storageFolder, QString cacheFolder)
    : settings_(settings),
      workspace_(workspace),
      storageFolder_(std::move(storageFolder)),
      cacheFolder_(std::move(cacheFolder)) {}

bool DesktopServices::requirePassword() {
  return settings_.requirePassword();
}

std::optional<QString> DesktopServices::password() {
  const std::string& password = settings_.password.get();
  return password.empty() ? std::nullopt : std::optional(QString::fromStdString(password));
}

void DesktopServices::openUrl(const QUrl& url) {
  workspace_.openUrl(url.toString(QUrl::FullyEncoded).toStdString());
}

std::optional<QString> DesktopServices::askSavePath(QWidget* parent, const QString& suggestedName) {
  // On the heap, guarded: the view may be deleted meanwhile, and its dialogs with it.
  const QPointer<QFileDialog> panel = new QFileDialog(parent);
  panel->setAcceptMode(QFileDialog::AcceptSave);
  panel->selectFile(suggestedName);
  const bool accepted = ask(*panel) == QDialog::Accepted;
  if (!panel) return std::nullopt;
  const QStringList files = accepted ? panel->selectedFiles() : QStringList();
  delete panel;
  return files.isEmpty() ? std::nullopt : std::optional(files.first());
}

QStringList DesktopServices::chooseFiles(QWidget* parent, bool allowsMultipleSelection,
                                         bool allowsDirectories) {
  const QPointer<QFileDialog> panel = new QFileDialog(parent);
  if (allowsDirectories) {
    panel->setFileMode(QFileDialog::Directory);
  } else {
    panel->setFileMode(allowsMultipleSelection ? QFileDialog::ExistingFiles
                                               : QFileDialog::ExistingFile);
  }
  const bool accepted = ask(*panel) == QDialog::Accepted;
  if (!panel) return {};
  QStringList files = accepted ? panel->selectedFiles() : QStringList();
  delete panel;
  return files;
}

std::optional<int> DesktopServices::showMessage(QWidget* parent, const QString& text,
                                                const QStringList& buttons) {
  const QPointer<QMessageBox> box = new QMessageBox(parent);
  box->setWindowTitle(QStringLiteral("Tarnwick"));
  // The page's words are no markup.
  box->setTextFormat(Qt::PlainText);
  box->setText(text);
  QList<QAbstractButton*> added;
  for (const QString& title : buttons) {
    QPushButton* button =
        box->addButton(title, added.isEmpty() ? QMessageBox::AcceptRole : QMessageBox::RejectRole);
    if (added.isEmpty()) box->setDefaultButton(button);
    added.append(button);
  }
  ask(*box);
  if (!box) return std::nullopt;
  const auto index = added.indexOf(box->clickedButton());
  delete box;
  return index < 0 ? std::nullopt : std::optional(static_cast<int>(index));
}

}  // namespace tarnwick
