#include "com/Screen.h"

#include "win32/Win32Desktop.h"

namespace zv::com {

namespace {

/// Windows live no longer than the call that opens them, and belong to its thread: any thread may call next.
class Win32Screen final : public Screen {
public:
    Win32Screen()
    {
        desktop_.rememberZoom();
        desktop_.keepDrafts();
    }
    Desktop& desktop() override { return desktop_; }
    Reach reach() const override { return Reach::here; }

private:
    win32::Win32Desktop desktop_;
};

/// Services have windows that nobody sees.
bool seen()
{
    USEROBJECTFLAGS flags{};
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) ==
               0 ||
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

} // namespace

std::unique_ptr<Screen> openScreen(const std::function<void()>& /*ended*/)
{
    return seen() ? std::make_unique<Win32Screen>() : nullptr;
}

} // namespace zv::com
