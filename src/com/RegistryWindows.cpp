#include "com/Registry.h"

#include "com/OwnLibrary.h"

#include <windows.h>

#include <oleauto.h>

namespace zv::com {

namespace {

/// The proxies that the system makes from a library of types, for calls between apartments.
constexpr wchar_t proxies[] = L"{00020424-0000-0000-C000-000000000046}";
constexpr const wchar_t* platform = sizeof(void*) == 8 ? L"win64" : L"win32";

std::wstring wide(StringView text) { return {text.begin(), text.end()}; }

/// A key below keys.
std::wstring keyOf(std::initializer_list<std::wstring_view> names)
{
    std::wstring result;
    for (const std::wstring_view name : names)
        (result.empty() ? result : result.append(1, L'\\')).append(name);
    return result;
}

std::wstring textOf(const GUID& id)
{
    wchar_t text[40] = {};
    StringFromGUID2(id, text, 40);
    return text;
}

/// A person's classes or those of the machine, below one key.
class Branch {
public:
    explicit Branch(HKEY hive) : hive_(hive)
    {
        const LSTATUS opened = RegCreateKeyExW(hive, L"Software\\Classes", 0, nullptr, 0,
                                               KEY_READ | KEY_WRITE | DELETE, nullptr, &root_, nullptr);
        expect(opened);
    }
    Branch(const Branch&) = delete;
    Branch& operator=(const Branch&) = delete;
    ~Branch() { RegCloseKey(root_); }

    bool isPersons() const { return hive_ == HKEY_CURRENT_USER; }
    void write(const std::wstring& key, const std::wstring& text, const wchar_t* name = nullptr) const
    {
        const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
        expect(RegSetKeyValueW(root_, key.c_str(), name, REG_SZ, text.c_str(), bytes));
    }
    /// The key and all below it.
    void remove(const std::wstring& key) const
    {
        const LSTATUS removed = RegDeleteTreeW(root_, key.c_str());
        if (removed != ERROR_FILE_NOT_FOUND)
            expect(removed);
    }
    /// The key, if nothing is in it any more; whether it is gone.
    bool removeIfEmpty(const std::wstring& key) const
    {
        DWORD keys = 0;
        DWORD values = 0;
        HKEY open = nullptr;
        if (RegOpenKeyExW(root_, key.c_str(), 0, KEY_READ, &open) != ERROR_SUCCESS)
            return true;
        const LSTATUS asked = RegQueryInfoKeyW(open, nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                                               &values, nullptr, nullptr, nullptr, nullptr);
        RegCloseKey(open);
        return asked == ERROR_SUCCESS && keys == 0 && values == 0 &&
               RegDeleteKeyW(root_, key.c_str()) == ERROR_SUCCESS;
    }

private:
    static void expect(LSTATUS status)
    {
        if (status != ERROR_SUCCESS)
            throw Refusal{HRESULT_FROM_WIN32(static_cast<DWORD>(status))};
    }
    HKEY hive_;
    HKEY root_ = nullptr;
};

/// A library of types, as the registry has it.
struct Types {
    explicit Types(ITypeLib& types)
    {
        TLIBATTR* read = nullptr;
        if (FAILED(types.GetLibAttr(&read)))
            throw Refusal{ZV_E_REGISTRATION};
        id = textOf(read->guid);
        version.append(std::to_wstring(read->wMajorVerNum))
            .append(1, L'.')
            .append(std::to_wstring(read->wMinorVerNum));
        language = std::to_wstring(read->lcid);
        types.ReleaseTLibAttr(read);
        BSTR words = nullptr;
        if (FAILED(types.GetDocumentation(MEMBERID_NIL, nullptr, &words, nullptr, nullptr)))
            throw Refusal{ZV_E_REGISTRATION};
        title.assign(words, SysStringLen(words));
        SysFreeString(words);
        for (UINT i = 0; i < types.GetTypeInfoCount(); ++i)
            addInterface(types, i);
    }
    std::wstring key() const { return keyOf({L"TypeLib", id, version}); }

    std::wstring id, version, language, title;
    std::vector<std::pair<std::wstring, std::wstring>> interfaces; ///< Identifier and name.

private:
    void addInterface(ITypeLib& types, UINT index)
    {
        ITypeInfo* place = nullptr;
        TYPEATTR* read = nullptr;
        BSTR name = nullptr;
        if (FAILED(types.GetTypeInfo(index, &place)))
            throw Refusal{ZV_E_REGISTRATION};
        const System<ITypeInfo> info(place);
        if (FAILED(info->GetTypeAttr(&read)))
            throw Refusal{ZV_E_REGISTRATION};
        const bool dual = read->typekind == TKIND_DISPATCH && (read->wTypeFlags & TYPEFLAG_FDUAL) != 0;
        const std::wstring interfaceId = textOf(read->guid);
        info->ReleaseTypeAttr(read);
        if (!dual || FAILED(info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr)))
            return;
        interfaces.emplace_back(interfaceId, name);
        SysFreeString(name);
    }
};

std::vector<Types> described()
{
    std::vector<Types> result;
    if (const System<ITypeLib> types = ownTypes())
        result.emplace_back(*types);
    return result;
}

void writeClass(const Branch& branch, const Creatable& each, const std::wstring& file)
{
    const std::wstring name = wide(each.progId);
    const std::wstring versioned = name + L".1";
    const std::wstring id = textOf(reinterpret_cast<const GUID&>(each.classId));
    for (const std::wstring& progId : {name, versioned}) {
        branch.write(progId, name);
        branch.write(keyOf({progId, L"CLSID"}), id);
    }
    branch.write(keyOf({name, L"CurVer"}), versioned);
    const std::wstring key = keyOf({L"CLSID", id});
    branch.write(key, name);
    branch.write(keyOf({key, L"ProgID"}), versioned);
    branch.write(keyOf({key, L"VersionIndependentProgID"}), name);
    branch.write(keyOf({key, L"Programmable"}), {});
    branch.write(keyOf({key, L"InprocServer32"}), file);
    branch.write(keyOf({key, L"InprocServer32"}), L"Apartment", L"ThreadingModel");
    for (const Types& types : described()) {
        branch.write(keyOf({key, L"TypeLib"}), types.id);
        branch.write(keyOf({key, L"Version"}), types.version);
    }
}

void writeTypes(const Branch& branch, const Types& types, const std::wstring& file)
{
    branch.write(types.key(), types.title);
    branch.write(keyOf({types.key(), types.language, platform}), file);
    branch.write(keyOf({types.key(), L"FLAGS"}), L"0");
    branch.write(keyOf({types.key(), L"HELPDIR"}), file.substr(0, file.rfind(L'\\')));
    for (const auto& [id, name] : types.interfaces) {
        const std::wstring key = keyOf({L"Interface", id});
        branch.write(key, name);
        branch.write(keyOf({key, L"ProxyStubClsid32"}), proxies);
        branch.write(keyOf({key, L"TypeLib"}), types.id);
        branch.write(keyOf({key, L"TypeLib"}), types.version, L"Version");
    }
}

void writeAll(const Branch& branch, std::span<const Creatable> classes)
{
    const std::wstring file = ownFile();
    for (const Creatable& each : classes)
        writeClass(branch, each, file);
    for (const Types& types : described())
        writeTypes(branch, types, file);
}

void removeAll(const Branch& branch, std::span<const Creatable> classes)
{
    for (const Creatable& each : classes) {
        branch.remove(wide(each.progId));
        branch.remove(wide(each.progId) + L".1");
        branch.remove(keyOf({L"CLSID", textOf(reinterpret_cast<const GUID&>(each.classId))}));
    }
    for (const Types& types : described()) {
        for (const auto& [id, name] : types.interfaces)
            branch.remove(keyOf({L"Interface", id}));
        // The library of the other width has its line beside ours.
        const std::wstring language = keyOf({types.key(), types.language});
        branch.remove(keyOf({language, platform}));
        if (branch.removeIfEmpty(language)) {
            branch.remove(types.key());
            branch.removeIfEmpty(keyOf({L"TypeLib", types.id}));
        }
    }
    // A person has these keys from the first class of his own on.
    for (const wchar_t* key : {L"CLSID", L"Interface", L"TypeLib"})
        if (branch.isPersons())
            branch.removeIfEmpty(key);
}

ZvResult enrolled(HKEY hive, std::span<const Creatable> classes)
{
    return guarded([&] {
        const Branch branch(hive);
        const ZvResult done = guarded([&] { writeAll(branch, classes); });
        if (done < 0) {
            guarded([&] { removeAll(branch, classes); });
            throw Refusal{done};
        }
    });
}

ZvResult withdrawn(HKEY hive, std::span<const Creatable> classes)
{
    return guarded([&] { removeAll(Branch(hive), classes); });
}

} // namespace

ZvResult registerServer(std::span<const Creatable> classes) { return enrolled(HKEY_LOCAL_MACHINE, classes); }

ZvResult unregisterServer(std::span<const Creatable> classes)
{
    return withdrawn(HKEY_LOCAL_MACHINE, classes);
}

} // namespace zv::com

// What `regsvr32 /n /i:user` calls: for the person alone, which needs no rights. Without the word it is the
// machine.
extern "C" ZvResult ZV_CALL DllInstall(std::int32_t install, const wchar_t* words)
{
    using namespace zv::com;
    const bool person = words != nullptr && zv::sameName(reinterpret_cast<const char16_t*>(words), u"user");
    // A word that is not understood registers for nobody, rather than for everybody.
    if (words != nullptr && *words != L'\0' && !person)
        return E_INVALIDARG;
    const HKEY hive = person ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    return install != 0 ? enrolled(hive, ownClasses()) : withdrawn(hive, ownClasses());
}
