#pragma once
// The process clock YieldToHost reads: seconds since local midnight, as a floating number.

namespace ps {

class Clock {
public:
    virtual ~Clock() = default;
    virtual double Timer() = 0;
};

class SystemClock : public Clock {
public:
    double Timer() override;
};

}  // namespace ps
