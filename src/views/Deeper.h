#pragma once

namespace zv {

/// RAII guard of a flag or a depth: so long as it lives the count is one higher.
class Deeper {
public:
    explicit Deeper(int& count) : count_(count) { ++count_; }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;
    ~Deeper() { --count_; }

private:
    int& count_;
};

} // namespace zv
