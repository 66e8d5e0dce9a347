#include "common/clock.h"

#include <chrono>
#include <ctime>

namespace ps {

double SystemClock::Timer() {
    using namespace std::chrono;
    auto now = system_clock::now();
    std::time_t t = system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&t, &local);
    double fraction = duration<double>(now.time_since_epoch()).count() - static_cast<double>(t);
    return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec + fraction;
}

}  // namespace ps
