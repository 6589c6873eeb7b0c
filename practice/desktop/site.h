#pragma once

#include <httplib.h>
#include <mutex>
#include <string>

#include "practice/desktop/settings.h"

namespace tarnwick::practice {

/// The desktop's pages and their little storage; the same site is served on both ports, from many
/// threads at once.
class Site {
 public:
  explicit Site(const DesktopSettings& settings);

  /// Installs routes, sign-in and the ordered faults. The site must outlive the server.
  void install(httplib::Server& server);

 private:
  using Request = httplib::Request;
  using Response = httplib::Response;
  using Handled = httplib::Server::HandlerResponse;

  Handled admit(const Request& request, Response& response);
  bool signedIn(const Request& request) const;
  void sendPage(const Request& request, Response& response) const;
  void readNote(Response& response);
  void writeNote(const Request& request, Response& response);
  void installLab(httplib::Server& server) const;

  const DesktopSettings& settings_;
  std::string page_;
  std::string credentials_;  ///< what a right Authorization header says
  std::mutex noteMutex_;
};

}  // namespace tarnwick::practice
