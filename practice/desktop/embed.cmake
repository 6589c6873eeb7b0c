# Turns the two pages into a source file: cmake -DDESKTOP=... -DLAB=... -DOUTPUT=... -P embed.cmake
file(READ "${DESKTOP}" desktop)
file(READ "${LAB}" lab)
file(WRITE "${OUTPUT}" "#include \"practice/desktop/pages.h\"

namespace tarnwick::practice {
const std::string_view kDesktopPage = R\"TWPAGE(${desktop})TWPAGE\";
const std::string_view kLabPage = R\"TWPAGE(${lab})TWPAGE\";
}  // namespace tarnwick::practice
")
