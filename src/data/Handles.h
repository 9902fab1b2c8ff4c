#pragma once

#include <algorithm>
#include <memory>
#include <vector>

namespace zv {

/// List of a pool's handles (open connections of the driver): as many as there are cursors open at a time,
/// since a handle whose rows are still being read is left to them. `Handle` has a list of its `cursors`.
template <class Handle>
class Handles {
public:
    using Pointer = std::shared_ptr<Handle>;

    /// An idle handle (without cursors), or nullptr. Trims the list: those that many open recordsets once
    /// needed are not kept for ever.
    Pointer idle()
    {
        const auto found = std::ranges::find_if(all_, isIdle);
        if (found == all_.end())
            return nullptr;
        Pointer result = *found;
        trim(result);
        return result;
    }
    void add(Pointer handle) { all_.push_back(std::move(handle)); }
    void drop(const Pointer& handle) { std::erase(all_, handle); }
    void clear() { all_.clear(); }
    const Pointer& front() const { return all_.front(); }
    /// The first handle for which the test is true, or nullptr.
    template <class Test>
    Pointer find(Test&& test) const
    {
        const auto found = std::ranges::find_if(all_, test);
        return found == all_.end() ? nullptr : *found;
    }

private:
    static constexpr std::size_t kept = 4;
    static bool isIdle(const Pointer& handle) { return handle->cursors.empty(); }
    void trim(const Pointer& taken)
    {
        if (all_.size() > kept)
            std::erase_if(all_, [&](const Pointer& each) { return each != taken && isIdle(each); });
    }
    std::vector<Pointer> all_;
};

} // namespace zv
