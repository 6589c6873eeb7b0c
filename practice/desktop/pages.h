#pragma once

#include <string_view>

namespace tarnwick::practice {

/// The pages as they stand in desktop.html and lab.html, made part of the program by the build.
extern const std::string_view kDesktopPage;
extern const std::string_view kLabPage;

}  // namespace tarnwick::practice
