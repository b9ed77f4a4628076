#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QString>

#include <algorithm>
#include <cstdio>
#include <functional>

/// One benchmark: a piece of work and the limit that it is held against, measured in turn in the same run, so
/// that a machine whose speed drifts slows both. Prints medians and the ratio; never fails on time.
namespace Ratio {

/// Milliseconds of one run.
inline double Time(const std::function<void()>& run) {
    QElapsedTimer timer;
    timer.start();
    run();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

inline double Median(QList<double> values) {
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0.0 : values[values.size() / 2];
}

struct Result {
    double Work = 0;    // milliseconds, median
    double Limit = 0;   // milliseconds, median
    double Factor = 0;  // median of the ratios pair by pair
    double Least = 0;
    double Most = 0;
};

/// Runs the two in turn, first once without counting. Each returns its own milliseconds, so that a step can
/// leave its set-up out of the measure.
inline Result Measure(int rounds, const std::function<double()>& work, const std::function<double()>& limit) {
    (void)work();
    (void)limit();
    QList<double> works;
    QList<double> limits;
    QList<double> factors;
    for (int round = 0; round < rounds; ++round) {
        const double first = round % 2 == 0 ? work() : limit();
        const double second = round % 2 == 0 ? limit() : work();
        works.append(round % 2 == 0 ? first : second);
        limits.append(round % 2 == 0 ? second : first);
        factors.append(works.last() / limits.last());
    }
    return {Median(works), Median(limits), Median(factors),
            *std::min_element(factors.cbegin(), factors.cend()),
            *std::max_element(factors.cbegin(), factors.cend())};
}

/// One line for people and for the table in a note: name, times, ratio, aim, and whether the aim was met.
inline void Print(const char* name, const Result& result, double aim) {
    std::printf("%-52s %10.3f ms %10.3f ms  ratio %5.2f (%.2f to %.2f)  aim %5.2f  %s\n", name, result.Work,
                result.Limit, result.Factor, result.Least, result.Most, aim,
                result.Factor <= aim ? "met" : "MISSED");
}

}  // namespace Ratio
