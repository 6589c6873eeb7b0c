#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <optional>

namespace tarnwick {

enum class ConfirmationKind {
  ordinary,     ///< confirming is the default
  destructive,  ///< something will be lost: looks so, and Cancel is the default
};

/// A question with two answers.
struct Confirmation {
  QString title;
  QString message;
  QString confirmTitle;
  ConfirmationKind kind = ConfirmationKind::ordinary;
};

/// What a panel for choosing files looks like. Empty texts mean the platform's own.
struct PanelOptions {
  QString title;
  QString acceptTitle;
  QString folder;        ///< where it begins
  QString proposedName;  ///< save panel only
};

enum class OpenKind { oneFile, severalFiles };

/// Dialogs and panels. Every operation returns at once and calls `done` later on the interface
/// thread, exactly once unless `parent` is deleted first, which closes the dialog. All are
/// window-modal to `parent`'s window.
class DialogService {
 public:
  DialogService() = default;
  DialogService(const DialogService&) = delete;
  DialogService& operator=(const DialogService&) = delete;
  virtual ~DialogService() = default;

  /// Asks; true for the confirming button, false for "Cancel" and for closing by any other means.
  virtual void confirm(QWidget* parent, const Confirmation& question,
                       std::function<void(bool)> done) = 0;
  /// Tells something; one button, "OK".
  virtual void tell(QWidget* parent, const QString& title, const QString& message,
                    std::function<void()> done) = 0;
  /// One existing folder, or none when cancelled.
  virtual void chooseFolder(QWidget* parent, const PanelOptions& options,
                            std::function<void(std::optional<QString>)> done) = 0;
  /// Existing files; empty when cancelled.
  virtual void openFiles(QWidget* parent, const PanelOptions& options, OpenKind kind,
                         std::function<void(QStringList)> done) = 0;
  /// Where to save; the panel itself asks before an existing file is replaced.
  virtual void saveFile(QWidget* parent, const PanelOptions& options,
                        std::function<void(std::optional<QString>)> done) = 0;
};

/// The desktop's own dialogs.
class QtDialogService final : public DialogService {
 public:
  void confirm(QWidget* parent, const Confirmation& question,
               std::function<void(bool)> done) override;
  void tell(QWidget* parent, const QString& title, const QString& message,
            std::function<void()> done) override;
  void chooseFolder(QWidget* parent, const PanelOptions& options,
                    std::function<void(std::optional<QString>)> done) override;
  void openFiles(QWidget* parent, const PanelOptions& options, OpenKind kind,
                 std::function<void(QStringList)> done) override;
  void saveFile(QWidget* parent, const PanelOptions& options,
                std::function<void(std::optional<QString>)> done) override;
};

}  // namespace tarnwick
