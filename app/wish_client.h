#pragma once

#include <chrono>
#include <string>

#include "app/wish.h"

namespace tarnwick {

/// How long the process that is asked may take.
struct AnswerLimits {
  std::chrono::milliseconds sign = std::chrono::seconds(5);  ///< to any sign of life
  std::chrono::milliseconds work = std::chrono::minutes(5);  ///< to the answer, once it is at work
  /// To its end when it takes no requests any more: quitting may include a stop of Colima.
  std::chrono::milliseconds quit = std::chrono::seconds(75);
};

enum class Contact {
  answered,
  unreachable,  ///< nobody listens there, or the listener went without an answer
  silent        ///< somebody listens, and gives no sign of life in time
};

struct Reached {
  Contact contact = Contact::unreachable;
  Answer answer;  ///< when answered; one that tells of it when the work takes too long
};

/// Puts a request to the process that listens at the socket `path`. Blocks, at most for the limits.
/// Any thread.
[[nodiscard]] Reached ask(const std::string& path, const Request& request, AnswerLimits limits);

}  // namespace tarnwick
