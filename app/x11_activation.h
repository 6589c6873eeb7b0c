#pragma once

#include <cstdint>
#include <string>

struct xcb_connection_t;

namespace tarnwick {

/// Asks the window manager to bring the window to the front as of the moment that the startup
/// identifier names, which is when the user asked for it, and tells the desktop that this start is
/// complete, so that it shows no busy pointer any more.
void activateX11Window(xcb_connection_t* connection, std::uint32_t window,
                       const std::string& startupId);

}  // namespace tarnwick
