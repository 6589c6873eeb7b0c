#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

#include "core/controller/desktop_controller.h"
#include "ui/common/buttons.h"
#include "ui/common/render_scheduler.h"
#include "ui/common/window_opener.h"
#include "ui/desktop/keys_popover.h"
#include "ui/web/web_desktop_view.h"

namespace tarnwick {

/// The module with the web engine, or one sentence on why there is none.
struct WebModule {
  WebDesktopModule* module = nullptr;
  QString error;
};
/// Asked when a desktop is about to be shown, and not before: loading the engine is costly.
using WebModuleSource = std::function<WebModule()>;

/// The Linux desktop under a slim toolbar. Made each time the desktop is shown, so that its page
/// loads afresh.
class DesktopScreen final : public QWidget {
 public:
  DesktopScreen(DesktopController& controller, WindowOpener& windows, WebDesktopServices& services,
                const WebModuleSource& source, QWidget* parent = nullptr);

  /// Gives the keyboard to the page, or to the toolbar where there is none.
  void focusContent();

 private:
  QWidget* makeToolbar();
  QWidget* makeContent(const WebModuleSource& source);
  void render();
  void openInBrowser();
  void toggleKeys();

  DesktopController& controller_;
  WindowOpener& windows_;
  WebDesktopServices& services_;
  QPointer<WebDesktopView> view_;
  ToolbarButton* keys_ = nullptr;
  KeysPopover* popover_;
  RenderScheduler scheduler_;
};

}  // namespace tarnwick
