#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>
#include <string>

namespace tarnwick {

/// The ids of the windows.
inline constexpr const char* mainWindowId = "main";
inline constexpr const char* logsWindowId = "logs";
inline constexpr const char* settingsWindowId = "settings";

/// Opens windows, each of which exists at most once. Interface thread only.
class WindowOpener {
 public:
  WindowOpener() = default;
  WindowOpener(const WindowOpener&) = delete;
  WindowOpener& operator=(const WindowOpener&) = delete;
  virtual ~WindowOpener() = default;

  /// Shows the window with this id, or brings it to the front. Unknown ids are ignored.
  virtual void openWindow(const std::string& id) = 0;
};

/// The application's windows: made when first asked for, and again after one was deleted.
class Windows final : public WindowOpener {
 public:
  Windows() = default;
  ~Windows() override;

  /// `make` gives a new top-level window, which this object owns from then on. A window that should
  /// start afresh each time sets Qt::WA_DeleteOnClose.
  void add(const std::string& id, std::function<QWidget*()> make);
  void openWindow(const std::string& id) override;
  /// Deletes all windows.
  void closeAll();

  /// The window when it exists, shown or not.
  [[nodiscard]] QWidget* find(const std::string& id) const;

 private:
  struct Entry {
    std::function<QWidget*()> make;
    QPointer<QWidget> window;
  };
  std::map<std::string, Entry> entries_;
};

}  // namespace tarnwick
