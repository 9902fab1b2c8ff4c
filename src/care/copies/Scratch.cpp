#include "care/copies/Scratch.h"

#include <chrono>
#include <random>
#include <string>
#include <string_view>
#include <thread>

namespace zv::care {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = "zvcopia-";
constexpr std::string_view ending = ".haciendo";
constexpr std::size_t digits = 32;

std::string newName()
{
    constexpr std::string_view all = "0123456789abcdef";
    std::random_device chance;
    std::string result(prefix);
    for (std::size_t i = 0; i < digits; ++i)
        result += all[chance() % all.size()];
    return result.append(ending);
}

bool isOurs(const fs::path& folder)
{
    const std::string name = folder.filename().string();
    return name.size() == prefix.size() + digits + ending.size() && name.starts_with(prefix) &&
           name.ends_with(ending) &&
           name.find_first_not_of("0123456789abcdef", prefix.size()) == prefix.size() + digits;
}

/// The lock on it is held.
void empty(const fs::path& folder)
{
    std::error_code ignored;
    for (const fs::directory_entry& each : fs::directory_iterator(folder, ignored))
        fs::remove_all(each.path(), ignored);
}

void sweep(const fs::path& parent)
{
    std::error_code ignored;
    std::vector<fs::path> found;
    for (const fs::directory_entry& each : fs::directory_iterator(parent, ignored))
        if (isOurs(each.path()))
            found.push_back(each.path());
    for (const fs::path& each : found) {
        FolderLock lock;
        if (lock.take(each) != FolderLock::Result::taken)
            continue;
        empty(each);
        lock.remove(each);
    }
}

} // namespace

void closeToOthers(const fs::path& place, fs::perms owners)
{
    std::error_code ignored;
    fs::permissions(place, owners, ignored);
}

Scratch::Scratch(const std::vector<fs::path>& folders, std::uintmax_t room)
{
    std::error_code error;
    for (const fs::path& each : folders) {
        const fs::path parent = each.empty() ? fs::path(".") : each;
        const fs::space_info space = fs::space(parent, error);
        if (error)
            continue;
        error = std::make_error_code(std::errc::no_space_on_device);
        if (space.available < room)
            continue;
        sweep(parent);
        // Race: another's sweep may take a folder that is not locked yet for one that was left behind, and
        // then removes it soon. On a disk that knows no locks nobody does.
        for (int trial = 0; trial < 10; ++trial) {
            folder_ = parent / newName();
            if (!fs::create_directory(folder_, error))
                break;
            closeToOthers(folder_, fs::perms::owner_all);
            FolderLock::Result result = lock_.take(folder_);
            for (int wait = 0; wait < 50 && result == FolderLock::Result::busy; ++wait) {
                std::this_thread::sleep_for(std::chrono::milliseconds(4));
                result = lock_.take(folder_);
            }
            if (result == FolderLock::Result::taken || fs::exists(folder_, error))
                return;
        }
    }
    throw fs::filesystem_error("no se puede escribir", folders.back(), error);
}

Scratch::~Scratch()
{
    empty(folder_);
    lock_.remove(folder_);
}

fs::path Scratch::file(Database which, const char* name) const { return fileOf(folder_ / name, which); }

String Scratch::url(const char* name) const { return u"sqlite:" + (folder_ / name).u16string(); }

} // namespace zv::care
