#include <cstdlib>
#include <sstream>
#include <string>

namespace {

/// Before any test looks: what the shell has set for other programs.
[[maybe_unused]] const bool taken = [] {
    std::istringstream names(SHELL);
    for (std::string name; std::getline(names, name, ':');)
        unsetenv(name.c_str());
    // What is typed in tests is kept only where one asks for it.
    setenv("ZV_DIARIO", "no", 1);
    return true;
}();

} // namespace
