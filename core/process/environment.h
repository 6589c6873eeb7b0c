#pragma once

#include <map>
#include <string>

namespace tarnwick {

/// Environment variables by name; each name occurs once.
using Environment = std::map<std::string, std::string>;

}  // namespace tarnwick
