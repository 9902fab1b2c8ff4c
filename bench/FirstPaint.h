#pragma once

#include "Cost.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

namespace zv::bench {

/// Event filter that waits for a window's first paint, tells what it cost since `start`, and quits.
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
            QTimer::singleShot(0, [this] {
                tellCost(start_);
                QApplication::quit();
            });
        return QObject::eventFilter(watched, event);
    }

private:
    long long start_;
};

} // namespace zv::bench
