#include "win32/stage/Png.h"

#include "runtime/Errors.h"

#include <memory>

// Its identifiers are made here.
#include <initguid.h>

#include <wincodec.h>

namespace zv::win32 {

namespace {

struct Released {
    template <class T>
    void operator()(T* object) const
    {
        object->Release();
    }
};
template <class T>
using Com = std::unique_ptr<T, Released>;

/// Out parameter: calls with a place for the object that is asked for. Fails with a RuntimeError.
template <class T, class Call>
Com<T> asked(const Call& call)
{
    T* object = nullptr;
    if (FAILED(call(&object)) || object == nullptr)
        throw RuntimeError(failure::invalidCall, u"Este Windows no escribe imágenes PNG.");
    return Com<T>(object);
}

/// RAII owner of a copy of what stands on the screen.
class Copy {
public:
    Copy(std::initializer_list<HWND> windows)
    {
        RECT whole{};
        for (const HWND window : windows) {
            RECT own{};
            GetWindowRect(window, &own);
            UnionRect(&whole, &whole, &own);
        }
        const SIZE size{whole.right - whole.left, whole.bottom - whole.top};
        bitmap_ = CreateCompatibleBitmap(screen_, size.cx, size.cy);
        const HGDIOBJ before = SelectObject(device_, bitmap_);
        const RECT all{0, 0, size.cx, size.cy};
        FillRect(device_, &all, GetSysColorBrush(COLOR_APPWORKSPACE));
        for (const HWND window : windows) {
            RECT own{};
            GetWindowRect(window, &own);
            BitBlt(device_, own.left - whole.left, own.top - whole.top, own.right - own.left,
                   own.bottom - own.top, screen_, own.left, own.top, SRCCOPY | CAPTUREBLT);
        }
        SelectObject(device_, before);
    }
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;
    ~Copy()
    {
        DeleteDC(device_);
        DeleteObject(bitmap_);
        ReleaseDC(nullptr, screen_);
    }
    HBITMAP bitmap() const { return bitmap_; }

private:
    HDC screen_ = GetDC(nullptr);
    HDC device_ = CreateCompatibleDC(screen_);
    HBITMAP bitmap_ = nullptr;
};

} // namespace

void savePicture(std::initializer_list<HWND> windows, const std::filesystem::path& file)
{
    const Copy copy(windows);
    const auto factory = asked<IWICImagingFactory>([](IWICImagingFactory** to) {
        return CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_IWICImagingFactory, reinterpret_cast<void**>(to));
    });
    const auto drawn = asked<IWICBitmap>([&](IWICBitmap** to) {
        return factory->CreateBitmapFromHBITMAP(copy.bitmap(), nullptr, WICBitmapIgnoreAlpha, to);
    });
    const auto colours = asked<IWICFormatConverter>(
        [&](IWICFormatConverter** to) { return factory->CreateFormatConverter(to); });
    const auto stream = asked<IWICStream>([&](IWICStream** to) { return factory->CreateStream(to); });
    const auto encoder = asked<IWICBitmapEncoder>(
        [&](IWICBitmapEncoder** to) { return factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, to); });
    bool written =
        SUCCEEDED(colours->Initialize(drawn.get(), GUID_WICPixelFormat24bppBGR, WICBitmapDitherTypeNone,
                                      nullptr, 0, WICBitmapPaletteTypeCustom)) &&
        SUCCEEDED(stream->InitializeFromFilename(file.c_str(), GENERIC_WRITE)) &&
        SUCCEEDED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache));
    if (written) {
        const auto frame = asked<IWICBitmapFrameEncode>(
            [&](IWICBitmapFrameEncode** to) { return encoder->CreateNewFrame(to, nullptr); });
        written = SUCCEEDED(frame->Initialize(nullptr)) &&
                  SUCCEEDED(frame->WriteSource(colours.get(), nullptr)) && SUCCEEDED(frame->Commit()) &&
                  SUCCEEDED(encoder->Commit());
    }
    if (!written)
        throw RuntimeError(failure::invalidCall, u"No se puede escribir " + file.u16string() +
                                                     u": mire si la carpeta existe y hay sitio.");
}

} // namespace zv::win32
