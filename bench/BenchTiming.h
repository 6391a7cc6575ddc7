#pragma once

#include <QElapsedTimer>

#include <algorithm>
#include <functional>
#include <vector>

// The median wall time of several runs of the work, in seconds: one slow run on
// a busy machine does not move it.
inline double medianSeconds(int runs, const std::function<void()> &work)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(double(timer.nsecsElapsed()) / 1e9);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}
