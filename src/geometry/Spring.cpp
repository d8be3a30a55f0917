#include "geometry/Spring.h"

#include <cmath>
#include <numbers>

namespace tilmora {

namespace {

constexpr double restingDistance = 0.01;
constexpr double restingSpeed = 0.1;

} // namespace

Spring::Spring(double value, double response, double dampingFraction)
    : response_(response)
    , dampingFraction_(dampingFraction)
    , value_(value)
    , target_(value) {}

void Spring::setTarget(double target) {
    target_ = target;
    settled_ = value_ == target_ && velocity_ == 0;
}

void Spring::reset(double value) {
    value_ = target_ = value;
    velocity_ = 0;
    settled_ = true;
}

void Spring::step(double seconds) {
    if (settled_ || seconds <= 0) {
        return;
    }
    // The closed form of a damped oscillator of unit mass, exact for any step length.
    const double omega = 2 * std::numbers::pi / response_;
    const double zeta = dampingFraction_;
    const double displacement = value_ - target_;
    const double decay = std::exp(-zeta * omega * seconds);
    double position = 0;
    double velocity = 0;
    if (zeta < 1) {
        const double omegaD = omega * std::sqrt(1 - zeta * zeta);
        const double b = (velocity_ + zeta * omega * displacement) / omegaD;
        const double cosine = std::cos(omegaD * seconds);
        const double sine = std::sin(omegaD * seconds);
        position = decay * (displacement * cosine + b * sine);
        velocity = decay * ((b * omegaD - zeta * omega * displacement) * cosine -
                            (displacement * omegaD + zeta * omega * b) * sine);
    } else {
        const double b = velocity_ + omega * displacement;
        position = decay * (displacement + b * seconds);
        velocity = decay * (b - omega * (displacement + b * seconds));
    }
    value_ = target_ + position;
    velocity_ = velocity;
    if (std::abs(position) < restingDistance && std::abs(velocity) < restingSpeed) {
        reset(target_);
    }
}

} // namespace tilmora
