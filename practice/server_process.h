#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "practice/faults.h"
#include "practice/state.h"

namespace tarnwick::practice {

/// What the caller's environment says for the variables that a request names without a value.
/// Lives in memory only; it reaches the web server through a pipe.
struct SignIn {
  std::string user;
  std::optional<std::string> password;  ///< none: the desktop asks for nothing

  static SignIn fromEnvironment(const ContainerRequest& request);
};

/// Starts the web server of `container` as a process of its own session that keeps none of our
/// descriptors, and notes its pid in `container`. Standard output and error go to the container
/// log. `locked` in the container makes it refuse every sign-in. Throws Refusal when it cannot
/// start.
void startServer(const StateFolder& folder, Container& container, const SignIn& signIn,
                 const Faults& faults);

/// Whether the noted process still lives.
bool serverAlive(const Container& container);

/// Ends the noted process and waits until it is gone (at most about 3 seconds).
void endServer(Container& container);

}  // namespace tarnwick::practice
