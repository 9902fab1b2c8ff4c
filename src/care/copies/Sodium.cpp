#include "care/copies/Sodium.h"

#include <sodium.h>

#include <stdexcept>

namespace zv::care {

void useSodium()
{
    if (sodium_init() < 0)
        throw std::runtime_error("No se puede copiar ni comparar: la máquina no da números al azar.");
}

const unsigned char* bytesOf(std::string_view text)
{
    return static_cast<const unsigned char*>(static_cast<const void*>(text.data()));
}

unsigned char* bytesOf(std::string& text)
{
    return static_cast<unsigned char*>(static_cast<void*>(text.data()));
}

} // namespace zv::care
