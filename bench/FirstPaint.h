#pragma once

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <ctime>
#include <fstream>
#include <iostream>
#include <string>

namespace zv::bench {

inline long long nowMicroseconds()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// Event filter that waits for a window's first paint, prints the time since `start` (microseconds of the
/// steady clock), the processor time (microseconds) and the peak memory of the process (kB), and quits.
class FirstPaint final : public QObject {
public:
    FirstPaint(QWidget& window, long long start) : start_(start)
    {
        window.installEventFilter(this);
        window.show();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            QTimer::singleShot(0, [this] { tell(); });
        return QObject::eventFilter(watched, event);
    }

private:
    void tell() const
    {
        const long long took = nowMicroseconds() - start_;
        const double worked = 1e6 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
        std::ifstream status("/proc/self/status");
        std::string word;
        while (status >> word && word != "VmHWM:") {
        }
        long memory = 0;
        status >> memory;
        std::cout << took << ' ' << static_cast<long long>(worked) << ' ' << memory << '\n';
        QApplication::quit();
    }
    long long start_;
};

} // namespace zv::bench
