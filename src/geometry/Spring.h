// A damped spring that eases a value towards its target, stepped by elapsed time
// so that it moves the same at any frame rate. Retargeting keeps the current value and velocity,
// so a value in flight glides to the new target instead of jumping.
#pragma once

namespace tilmora {

class Spring {
public:
    // `response`: the period of the undamped oscillation in seconds; `dampingFraction`: 1 is
    // critical damping, below 1 overshoots a little.
    explicit Spring(double value = 0, double response = 0.18, double dampingFraction = 0.85);

    double value() const { return value_; }
    double target() const { return target_; }
    bool isSettled() const { return settled_; }

    void setTarget(double target);
    // Jumps to `value` and stays there.
    void reset(double value);
    // Advances by `seconds`; once within a hundredth of a point and nearly still, the value
    // becomes the target.
    void step(double seconds);

private:
    double response_;
    double dampingFraction_;
    double value_;
    double target_;
    double velocity_ = 0;
    bool settled_ = true;
};

} // namespace tilmora
