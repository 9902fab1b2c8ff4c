#include <windows.h>

namespace __gnu_cxx {
/// What the compiler's library keeps for exceptions where memory has run out.
void __freeres();
} // namespace __gnu_cxx

/// The compiler's library of threads, which is linked into each of ours, takes a slot of the process when it
/// is first used and keeps it for ever: after a thousand loads a process has none left, and ends. This stands
/// where that library looks for the system's function, remembers the slot, and gives it back as the last
/// thing that is done before the library goes.
namespace {

DWORD slot = TLS_OUT_OF_INDEXES;

DWORD WINAPI takeSlot()
{
    // By its name: the usual way leads here.
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "TlsAlloc");
    slot = reinterpret_cast<DWORD(WINAPI*)()>(reinterpret_cast<void*>(found))();
    return slot;
}

[[gnu::destructor(101)]] void giveSlotBack()
{
    __gnu_cxx::__freeres();
    if (slot != TLS_OUT_OF_INDEXES)
        TlsFree(slot);
}

} // namespace

extern "C" {
#ifdef _WIN64
extern DWORD(WINAPI* const slotTaker)() asm("__imp_TlsAlloc");
#else
extern DWORD(WINAPI* const slotTaker)() asm("__imp__TlsAlloc@0");
#endif
DWORD(WINAPI* const slotTaker)() = takeSlot;
}
