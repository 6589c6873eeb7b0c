#include "ui/common/dialog_service.h"

#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSpacerItem>
#include <utility>

#include "ui/common/buttons.h"
#include "ui/common/symbols.h"
#include "ui/common/theme.h"

namespace tarnwick {
namespace {

constexpr int boxWidth = 420;
constexpr int boxIconSize = 40;

// A box that is as wide as its buttons breaks its sentences into short lines. The last step before
// the box is shown: a new icon makes it lay itself out anew.
void widen(QMessageBox& box) {
  auto* grid = qobject_cast<QGridLayout*>(box.layout());
  if (!grid) return;
  auto* strut = new QSpacerItem(boxWidth, 0, QSizePolicy::Minimum, QSizePolicy::Fixed);
  grid->addItem(strut, grid->rowCount(), 0, 1, grid->columnCount());
}

void embolden(QMessageBox& box) {
  auto* heading = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  if (heading) heading->setFont(fontFor(FontRole::headline));
}

QMessageBox* makeBox(QWidget* parent, const QString& title, const QString& message) {
  auto* box = new QMessageBox(parent);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setWindowModality(Qt::WindowModal);
  box->setWindowTitle(title);
  box->setTextFormat(Qt::PlainText);
  box->setText(title);
  box->setInformativeText(message);
  embolden(*box);
  return box;
}

void lookDestructive(QPushButton& button) {
  QPalette palette = button.palette();
  palette.setColor(QPalette::WindowText, colorFor(ColorRole::red, palette));
  button.setPalette(palette);
}

QFileDialog* makePanel(QWidget* parent, const PanelOptions& options) {
  const QString folder = options.folder.isEmpty() ? QDir::homePath() : options.folder;
  auto* panel = new QFileDialog(parent, options.title, folder);
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
  if (destructive) {
    const QIcon warning = symbolIcon(Symbol::exclamationmarkTriangleFill, ColorRole::orange);
    box->setIconPixmap(warning.pixmap(QSize(boxIconSize, boxIconSize), box->devicePixelRatio()));
  }
  auto* confirming = new PlainButton(question.confirmTitle);
  auto* cancel = new PlainButton(QStringLiteral("Cancel"));
  box->addButton(confirming, destructive ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole);
  box->addButton(cancel, QMessageBox::RejectRole);
  box->setEscapeButton(cancel);
  box->setDefaultButton(destructive ? cancel : confirming);
  if (destructive) lookDestructive(*confirming);
  QObject::connect(box, &QDialog::finished, box, [box, confirming, done = std::move(done)](int) {
    done(box->clickedButton() == confirming);
  });
  widen(*box);
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
  widen(*box);
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
