#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>
#include <functional>

struct xcb_connection_t;

namespace tarnwick {

/// Tells whether the X server's session has somebody who embeds tray icons. Where the program is
/// not on X11 there is nobody. Interface thread.
class X11TrayWatch final : public QAbstractNativeEventFilter {
 public:
  /// `changed` is called whenever one comes or goes.
  explicit X11TrayWatch(std::function<void()> changed);
  X11TrayWatch(const X11TrayWatch&) = delete;
  X11TrayWatch& operator=(const X11TrayWatch&) = delete;
  ~X11TrayWatch() override;

  [[nodiscard]] bool isThere() const { return owner_ != 0; }

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  void look();

  std::function<void()> changed_;
  xcb_connection_t* x11_ = nullptr;  ///< the toolkit's; none without X11
  std::uint32_t selection_ = 0;
  std::uint32_t manager_ = 0;  ///< the atom of the message by which a tray announces itself
  std::uint32_t owner_ = 0;    ///< the tray's window
};

}  // namespace tarnwick
