#include "win32/Accessible.h"

// Its identifiers are made here.
#include <initguid.h>

#include <oleacc.h>

namespace zv::win32 {

/// RAII owner of the system's annotation service, kept no longer than a Naming: the thread may have left COM
/// afterwards.
class Naming::Service {
public:
    Service()
    {
        entered_ = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        if (FAILED(CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER,
                                    IID_IAccPropServices, reinterpret_cast<void**>(&service_))))
            service_ = nullptr;
    }
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;
    ~Service()
    {
        if (service_ != nullptr)
            service_->Release();
        if (entered_)
            CoUninitialize();
    }
    void set(HWND window, const MSAAPROPID& property, const String& text) const
    {
        if (service_ != nullptr && !text.empty())
            service_->SetHwndPropStr(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, property,
                                     wide(text));
    }
    void setRole(HWND window, LONG role) const
    {
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_I4;
        value.lVal = role;
        if (service_ != nullptr)
            service_->SetHwndProp(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_ROLE,
                                  value);
    }

private:
    IAccPropServices* service_ = nullptr;
    bool entered_ = false;
};

thread_local Naming::Service* Naming::current_ = nullptr;

Naming::Naming()
{
    if (current_ == nullptr) {
        own_ = std::make_unique<Service>();
        current_ = own_.get();
    }
}

Naming::~Naming()
{
    if (own_)
        current_ = nullptr;
}

void tellName(HWND window, const String& name, const String& description)
{
    if (name.empty() && description.empty())
        return;
    const Naming naming;
    Naming::current_->set(window, PROPID_ACC_NAME, name);
    Naming::current_->set(window, PROPID_ACC_DESCRIPTION, description);
}

void tellGroup(HWND window, const String& name)
{
    const Naming naming;
    Naming::current_->set(window, PROPID_ACC_NAME, name);
    Naming::current_->setRole(window, ROLE_SYSTEM_GROUPING);
}

} // namespace zv::win32
