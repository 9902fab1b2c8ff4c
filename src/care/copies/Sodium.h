#pragma once

#include <string>
#include <string_view>

namespace zv::care {

/// Initialises the library; again does no harm. Fails with a std::runtime_error where the machine has no
/// chance.
void useSodium();

/// Characters as the library takes them.
const unsigned char* bytesOf(std::string_view text);
unsigned char* bytesOf(std::string& text);

} // namespace zv::care
