#include "ui/common/dialog_service.h"

#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

#include "ui/common/theme.h"

namespace tarnwick {
namespace {

QMessageBox* makeBox(QWidget* parent, const QString& title, const QString& message) {
  auto* box = new QMessageBox(parent);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setWindowModality(Qt::WindowModal);
  box->setWindowTitle(title);
  box->setTextFormat(Qt::PlainText);
  box->setText(title);
  box->setInformativeText(message);
  return box;
}

void lookDestructive(QPushButton& button) {
  QPalette palette = button.palette();
  palette.setColor(QPalette::ButtonText, colorFor(ColorRole::red, palette));
  button.setPalette(palette);
}

QFileDialog* makePanel(QWidget* parent, const PanelOptions& options) {
  auto* panel = new QFileDialog(parent, options.title, options.folder);
  panel->setAttribute(Qt::WA_DeleteOnClose);
  panel->setWindowModality(Qt::WindowModal);
  if (!options.acceptTitle.isEmpty()) {
    panel->setLabelText(QFileDialog::Accept, options.acceptTitle);
  }
  return panel;
}

void openPanel(QFileDialog* panel, std::function<void(QStringList)> done) {
  QObject::connect(panel, &QDialog::finished, panel, [panel, done = std::move(done)](int result) {
    done(result == QDialog::Accepted ? panel->selectedFiles() : QStringList());
  });
  panel->open();
}

std::optional<QString> onlyOne(const QStringList& paths) {
  return paths.isEmpty() ? std::nullopt : std::optional(paths.first());
}

}  // namespace

void QtDialogService::confirm(QWidget* parent, const Confirmation& question,
                              std::function<void(bool)> done) {
  QMessageBox* box = makeBox(parent, question.title, question.message);
  const bool destructive = question.kind == ConfirmationKind::destructive;
  box->setIcon(destructive ? QMessageBox::Warning : QMessageBox::Question);
  QPushButton* confirming = box->addButton(
      question.confirmTitle, destructive ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole);
  QPushButton* cancel = box->addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
  box->setEscapeButton(cancel);
  box->setDefaultButton(destructive ? cancel : confirming);
  if (destructive) lookDestructive(*confirming);
  QObject::connect(box, &QDialog::finished, box, [box, confirming, done = std::move(done)](int) {
    done(box->clickedButton() == confirming);
  });
  box->open();
}

void QtDialogService::tell(QWidget* parent, const QString& title, const QString& message,
                           std::function<void()> done) {
  QMessageBox* box = makeBox(parent, title, message);
  box->setIcon(QMessageBox::Information);
  box->setStandardButtons(QMessageBox::Ok);
  QObject::connect(box, &QDialog::finished, box, [done = std::move(done)](int) {
    if (done) done();
  });
  box->open();
}

void QtDialogService::chooseFolder(QWidget* parent, const PanelOptions& options,
                                   std::function<void(std::optional<QString>)> done) {
  QFileDialog* panel = makePanel(parent, options);
  panel->setFileMode(QFileDialog::Directory);
  panel->setOption(QFileDialog::ShowDirsOnly);
  openPanel(panel, [done = std::move(done)](const QStringList& paths) { done(onlyOne(paths)); });
}

void QtDialogService::openFiles(QWidget* parent, const PanelOptions& options, OpenKind kind,
                                std::function<void(QStringList)> done) {
  QFileDialog* panel = makePanel(parent, options);
  panel->setFileMode(kind == OpenKind::oneFile ? QFileDialog::ExistingFile
                                               : QFileDialog::ExistingFiles);
  openPanel(panel, std::move(done));
}

void QtDialogService::saveFile(QWidget* parent, const PanelOptions& options,
                               std::function<void(std::optional<QString>)> done) {
  QFileDialog* panel = makePanel(parent, options);
  panel->setAcceptMode(QFileDialog::AcceptSave);
  panel->setFileMode(QFileDialog::AnyFile);
  panel->selectFile(options.proposedName);
  openPanel(panel, [done = std::move(done)](const QStringList& paths) { done(onlyOne(paths)); });
}

}  // namespace tarnwick
