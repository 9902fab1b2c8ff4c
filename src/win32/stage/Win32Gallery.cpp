#include "win32/stage/Win32Gallery.h"

#include "runtime/Convert.h"
#include "win32/Win32Desktop.h"
#include "win32/stage/Png.h"

#include <exception>
#include <system_error>
#include <utility>

namespace zv::win32 {

namespace {

constexpr UINT untilPainted = 100; ///< Of a message box, in milliseconds.

/// Desktop that draws each window instead of running it, and closes it.
class DrawingDesktop final : public Win32Desktop {
public:
    explicit DrawingDesktop(std::filesystem::path folder) : folder_(std::move(folder)) {}
    const Gallery& drawn() const { return drawn_; }
    void expect(const Portrait& portrait) { portrait_ = portrait; }

protected:
    void runWindow(FormWindow& window) override
    {
        Form& form = window.form();
        const WindowAct act = [&](const auto& what) { window.act(what); };
        window.ready();
        settle();
        front_ = &window;
        if (portrait_.message)
            pressAccept(form, act);
        else
            draw({window.handle()});
        front_ = nullptr;
        if (mistake_)
            std::rethrow_exception(std::exchange(mistake_, nullptr));
        leadOn(form, portrait_, act);
        if (window.alive())
            form.Unload();
    }
    void shown(HWND box) override
    {
        // It is not there yet. The number of a timer is the program's to choose.
        SetTimer(box, reinterpret_cast<UINT_PTR>(this), untilPainted, &painted);
    }

private:
    static void CALLBACK painted(HWND box, UINT, UINT_PTR number, DWORD)
    {
        KillTimer(box, number);
        auto& desktop = *reinterpret_cast<DrawingDesktop*>(number);
        try {
            if (desktop.front_ != nullptr)
                desktop.draw({desktop.front_->handle(), box});
        } catch (...) {
            desktop.mistake_ = std::current_exception();
        }
        PostMessageW(box, WM_CLOSE, 0, 0);
    }
    void settle()
    {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0)
            DispatchMessageW(&message);
        Window::rethrowHeld();
    }
    void draw(std::initializer_list<HWND> windows)
    {
        drawn_.dots = dotsOf(front_->handle());
        savePicture(windows, folder_ / (front_->form().Name() + u'-' + String(portrait_.state) + u'-' +
                                        decimalText(drawn_.dots) + u".png"));
        ++drawn_.pictures;
    }

    std::filesystem::path folder_;
    Portrait portrait_;
    FormWindow* front_ = nullptr; ///< The one whose picture, or whose message's, is taken.
    Gallery drawn_;
    std::exception_ptr mistake_;
};

} // namespace

Gallery drawGallery(const std::filesystem::path& folder, const School& school)
{
    std::error_code error;
    create_directories(folder, error);
    // The library goes up from a drive that is not there until it has gone too far.
    if (error == std::errc::filename_too_long && !exists(folder.root_path()))
        error = std::make_error_code(std::errc::no_such_file_or_directory);
    if (error)
        throw std::filesystem::filesystem_error("create_directories", folder, error);
    DrawingDesktop desktop(folder);
    const UsingDesktop shown(desktop);
    openForPortraits(school, [&](const Portrait& next) { desktop.expect(next); });
    return desktop.drawn();
}

} // namespace zv::win32
