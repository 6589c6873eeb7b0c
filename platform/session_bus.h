#pragma once

#include <chrono>
#include <string>

namespace tarnwick {

/// Where the session bus is said to be: the environment's word, or the bus of the user's runtime
/// folder if there is one. Empty when nobody names one; libraries that are asked then would start a
/// bus of their own, on which there is nobody. Any thread.
[[nodiscard]] std::string sessionBusAddress();

/// Whether somebody takes connections at this D-Bus address, or list of addresses, and does not say
/// a word within `limit`. A bus that is not there, or that is no socket of this machine, is not
/// silent. Any thread; blocks up to `limit`.
[[nodiscard]] bool busIsSilent(const std::string& address, std::chrono::milliseconds limit);

/// Libraries that this process uses wait for ever for the greeting of a session bus, on the thread
/// that asks. Where the bus is silent, this process goes without one from here on. A bus that is
/// well costs less than a millisecond. To be called before any thread is started.
void forgoSilentSessionBus(std::chrono::milliseconds limit = std::chrono::seconds(2));

}  // namespace tarnwick
