#include "app/x11_activation.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <xcb/xcb.h>

namespace tarnwick {
namespace {

using Event = xcb_client_message_event_t;

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
  const auto request =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
      xcb_intern_atom_reply(connection, request, nullptr), &std::free);
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

Event message(std::uint8_t format, xcb_window_t window, xcb_atom_t type) {
  Event event = {};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = format;
  event.window = window;
  event.type = type;
  return event;
}

void sendToRoot(xcb_connection_t* connection, std::uint32_t mask, const Event& event) {
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  xcb_send_event(connection, 0, root, mask, reinterpret_cast<const char*>(&event));
}

/// The server's time in the identifier, in milliseconds: "_TIME" and digits at its end.
std::optional<std::uint32_t> timeIn(std::string_view startupId) {
  constexpr std::string_view mark = "_TIME";
  const std::size_t at = startupId.rfind(mark);
  if (at == std::string_view::npos) return std::nullopt;
  startupId.remove_prefix(at + mark.size());
  std::uint32_t time = 0;
  const char* end = startupId.data() + startupId.size();
  const auto [stop, error] = std::from_chars(startupId.data(), end, time);
  return error == std::errc() && stop == end ? std::optional(time) : std::nullopt;
}

void activate(xcb_connection_t* connection, xcb_window_t window, std::uint32_t time) {
  constexpr std::uint32_t fromAnApplication = 1;
  Event event = message(32, window, atom(connection, "_NET_ACTIVE_WINDOW"));
  event.data.data32[0] = fromAnApplication;
  event.data.data32[1] = time;
  sendToRoot(connection, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
             event);
}

void completeStartup(xcb_connection_t* connection, xcb_window_t window, const std::string& id) {
  std::string text = "remove: ID=\"";
  for (const char c : id) {
    if (c == '"' || c == '\\') text += '\\';
    text += c;
  }
  text += '"';
  text += '\0';
  // In pieces of the size of a message, of which the first has a type of its own.
  xcb_atom_t type = atom(connection, "_NET_STARTUP_INFO_BEGIN");
  for (std::size_t at = 0; at < text.size(); at += sizeof(Event::data)) {
    Event event = message(8, window, type);
    std::memcpy(event.data.data8, text.data() + at, std::min(sizeof event.data, text.size() - at));
    sendToRoot(connection, XCB_EVENT_MASK_PROPERTY_CHANGE, event);
    type = atom(connection, "_NET_STARTUP_INFO");
  }
}

}  // namespace

void activateX11Window(xcb_connection_t* connection, std::uint32_t window,
                       const std::string& startupId) {
  if (const auto time = timeIn(startupId)) activate(connection, window, *time);
  completeStartup(connection, window, startupId);
  xcb_flush(connection);
}

}  // namespace tarnwick
