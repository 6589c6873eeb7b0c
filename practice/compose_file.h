#pragma once

#include <string>
#include <string_view>

#include "practice/state.h"

namespace tarnwick::practice {

/// Reads the compose files that Tarnwick writes: block mappings and lists, plain and double-quoted
/// scalars, comments. Not YAML at large. `project` is the one given on the command line; empty
/// takes the file's own name. Throws Refusal with status 1 and a message that names the line.
ContainerRequest readComposeFile(std::string_view text, std::string project);

/// "127.0.0.1:3100:3000" into the field of `request` that container port 3000 or 3001 stands for.
/// Anything that is not published on 127.0.0.1 is refused with `status`.
void publishPort(ContainerRequest& request, const std::string& text, int status);

/// "name:/config" or "/host/folder:/config/MacShare" into the volume or the shared folder.
void mountVolume(ContainerRequest& request, const std::string& text, int status);

/// "NAME=value" or "NAME"; the values of the sign-in variables are dropped.
void addEnvironment(ContainerRequest& request, const std::string& text);

}  // namespace tarnwick::practice
