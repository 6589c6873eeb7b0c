#include "platform/curl_http_probe.h"

#include <algorithm>
#include <curl/curl.h>
#include <memory>

namespace tarnwick {
namespace {

constexpr std::size_t mostBytes = 1U << 20U;

/// Counts what arrives and ends the transfer when it is more than enough.
std::size_t discard(char* /*data*/, std::size_t size, std::size_t count, void* user) {
  std::size_t& left = *static_cast<std::size_t*>(user);
  const std::size_t bytes = size * count;
  if (bytes > left) return 0;
  left -= bytes;
  return bytes;
}

void configure(CURL* transfer, const std::string& url, std::chrono::milliseconds limit) {
  constexpr std::chrono::milliseconds shortest(1);
  constexpr std::chrono::milliseconds longest = std::chrono::hours(1);
  const auto milliseconds = static_cast<long>(std::clamp(limit, shortest, longest).count());
  curl_easy_setopt(transfer, CURLOPT_URL, url.c_str());
  curl_easy_setopt(transfer, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(transfer, CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(transfer, CURLOPT_TIMEOUT_MS, milliseconds);
  curl_easy_setopt(transfer, CURLOPT_NOSIGNAL, 1L);
  // An empty proxy also shuts out the ones named in the environment.
  curl_easy_setopt(transfer, CURLOPT_PROXY, "");
  curl_easy_setopt(transfer, CURLOPT_NOPROXY, "*");
  curl_easy_setopt(transfer, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
  curl_easy_setopt(transfer, CURLOPT_FORBID_REUSE, 1L);
  curl_easy_setopt(transfer, CURLOPT_USERAGENT, "Tarnwick");
}

}  // namespace

CurlHttpProbe::CurlHttpProbe() {
  // Once in the life of the process, and never undone: other users may have started it too.
  [[maybe_unused]] static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
}

std::optional<int> CurlHttpProbe::status(const std::string& url, std::chrono::milliseconds limit) {
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> transfer(curl_easy_init(),
                                                                     &curl_easy_cleanup);
  if (!transfer) return std::nullopt;
  configure(transfer.get(), url, limit);
  std::size_t headLeft = mostBytes;
  std::size_t bodyLeft = mostBytes;
  curl_easy_setopt(transfer.get(), CURLOPT_HEADERFUNCTION, &discard);
  curl_easy_setopt(transfer.get(), CURLOPT_HEADERDATA, &headLeft);
  curl_easy_setopt(transfer.get(), CURLOPT_WRITEFUNCTION, &discard);
  curl_easy_setopt(transfer.get(), CURLOPT_WRITEDATA, &bodyLeft);

  const CURLcode outcome = curl_easy_perform(transfer.get());
  const bool bodyWasCut = outcome == CURLE_WRITE_ERROR && bodyLeft < mostBytes;
  if (outcome != CURLE_OK && !bodyWasCut) return std::nullopt;
  long code = 0;
  curl_easy_getinfo(transfer.get(), CURLINFO_RESPONSE_CODE, &code);
  if (code <= 0) return std::nullopt;
  return static_cast<int>(code);
}

}  // namespace tarnwick
