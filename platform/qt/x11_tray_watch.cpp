#include "platform/qt/x11_tray_watch.h"

#include <QGuiApplication>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <xcb/xcb.h>

namespace tarnwick {
namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};

xcb_atom_t atomOf(xcb_connection_t* x11, const char* name) {
  const auto length = static_cast<std::uint16_t>(std::strlen(name));
  const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
      xcb_intern_atom_reply(x11, xcb_intern_atom(x11, 0, length, name), nullptr));
  return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_window_t ownerOf(xcb_connection_t* x11, xcb_atom_t selection) {
  const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> reply(
      xcb_get_selection_owner_reply(x11, xcb_get_selection_owner(x11, selection), nullptr));
  return reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
}

}  // namespace

X11TrayWatch::X11TrayWatch(std::function<void()> changed) : changed_(std::move(changed)) {
  const auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (native == nullptr) return;
  x11_ = native->connection();
  // The toolkit, too, puts its icons on the first screen's tray only.
  selection_ = atomOf(x11_, "_NET_SYSTEM_TRAY_S0");
  manager_ = atomOf(x11_, "MANAGER");
  look();
  qGuiApp->installNativeEventFilter(this);
}

X11TrayWatch::~X11TrayWatch() {
  if (x11_ != nullptr) qGuiApp->removeNativeEventFilter(this);
}

void X11TrayWatch::look() {
  owner_ = ownerOf(x11_, selection_);
  if (owner_ == XCB_WINDOW_NONE) return;
  // To be told of its end. It may have ended before it was watched.
  const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(x11_, owner_, XCB_CW_EVENT_MASK, &mask);
  owner_ = ownerOf(x11_, selection_);
}

bool X11TrayWatch::nativeEventFilter(const QByteArray& eventType, void* message,
                                     qintptr* /*result*/) {
  if (eventType != "xcb_generic_event_t") return false;
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  constexpr int sentByAClient = 0x80;
  bool concernsUs = false;
  switch (event->response_type & ~sentByAClient) {
    case XCB_CLIENT_MESSAGE: {
      // The toolkit listens to the root window, to which it is sent.
      const auto* sent = reinterpret_cast<const xcb_client_message_event_t*>(event);
      concernsUs = sent->type == manager_ && sent->data.data32[1] == selection_;
      break;
    }
    case XCB_DESTROY_NOTIFY:
      concernsUs = owner_ != 0 &&
                   reinterpret_cast<const xcb_destroy_notify_event_t*>(event)->window == owner_;
      break;
    default:
      break;
  }
  if (!concernsUs) return false;
  const bool before = isThere();
  look();
  if (isThere() != before) changed_();
  return false;
}

}  // namespace tarnwick
