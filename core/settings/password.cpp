#include "core/settings/password.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <span>
#include <sys/auxv.h>
#include <unistd.h>

namespace tarnwick {

namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";
constexpr std::size_t uuidDigits = 32;

std::string toHex(std::span<const std::uint8_t> bytes) {
  std::string hex;
  for (const std::uint8_t byte : bytes) {
    hex += hexDigits[byte >> 4U];
    hex += hexDigits[byte & 0xFU];
  }
  return hex;
}

std::string digitsFromKernel(const std::string& file) {
  std::ifstream in(file);
  std::string text;
  std::getline(in, text);
  std::erase(text, '-');
  std::ranges::transform(text, text.begin(),
                         [](char c) { return c >= 'A' && c <= 'F' ? char(c - 'A' + 'a') : c; });
  const bool complete =
      text.size() == uuidDigits && text.find_first_not_of(hexDigits) == std::string::npos;
  return complete ? text : std::string();
}

/// One step of the splitmix64 generator.
std::uint64_t nextMixed(std::uint64_t& state) {
  state += 0x9E3779B97F4A7C15U;
  std::uint64_t mixed = state;
  mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
  return mixed ^ (mixed >> 31U);
}

// The kernel gives every process 16 random bytes when it starts; with the clocks and the process id
// they make a version 4 UUID that nobody outside can guess, and a new one at each call.
std::string digitsFromProcessState() {
  std::array<std::uint64_t, 2> seed = {};
  if (const unsigned long address = ::getauxval(AT_RANDOM); address != 0) {
    const void* bytes = nullptr;
    std::memcpy(&bytes, &address, sizeof bytes);
    std::memcpy(seed.data(), bytes, sizeof seed);
  }
  const auto uptime = std::chrono::steady_clock::now().time_since_epoch().count();
  const auto wallClock = std::chrono::system_clock::now().time_since_epoch().count();
  std::uint64_t high = seed[0] ^ static_cast<std::uint64_t>(uptime);
  std::uint64_t low = seed[1] ^ static_cast<std::uint64_t>(wallClock);
  low ^= nextMixed(high) ^ static_cast<std::uint64_t>(::getpid());
  const std::array<std::uint64_t, 2> mixed = {nextMixed(high), nextMixed(low)};
  std::array<std::uint8_t, 16> uuid = {};
  std::memcpy(uuid.data(), mixed.data(), sizeof uuid);
  uuid[6] = static_cast<std::uint8_t>((uuid[6] & 0x0FU) | 0x40U);
  uuid[8] = static_cast<std::uint8_t>((uuid[8] & 0x3FU) | 0x80U);
  return toHex(uuid);
}

}  // namespace

std::string randomUuidDigits(const std::string& kernelFile) {
  std::string digits = digitsFromKernel(kernelFile);
  return digits.empty() ? digitsFromProcessState() : digits;
}

std::string makePassword(RandomSource& random) {
  constexpr std::size_t passwordBytes = 12;
  const auto bytes = random.bytes(passwordBytes);
  if (!bytes || bytes->size() != passwordBytes) return randomUuidDigits();
  return toHex(*bytes);
}

}  // namespace tarnwick
