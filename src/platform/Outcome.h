// A value, or why there is none: the part of std::expected this code uses. std::expected itself
// cannot be used below the windows layer, since the clang that builds the fuzz targets cannot
// compile the standard library's.
#pragma once

#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace tilmora {

template <typename E>
struct Failed {
    E error;
};

// What a function returns when it fails: `return failed(reason);`.
template <typename E>
Failed<E> failed(E error) {
    return {std::move(error)};
}

template <typename T, typename E>
class Outcome {
public:
    template <typename U = T>
    requires std::is_constructible_v<T, U&&> &&
        (!std::is_same_v<std::remove_cvref_t<U>, Outcome>)Outcome(U&& value)
        : state_(std::in_place_index<0>, std::forward<U>(value)) {}
    template <typename F>
    Outcome(Failed<F> failure)
        : state_(std::in_place_index<1>, std::move(failure.error)) {}

    bool has_value() const { return state_.index() == 0; }
    explicit operator bool() const { return has_value(); }
    T& operator*() & { return std::get<0>(state_); }
    const T& operator*() const& { return std::get<0>(state_); }
    T&& operator*() && { return std::move(std::get<0>(state_)); }
    T* operator->() { return &std::get<0>(state_); }
    const T* operator->() const { return &std::get<0>(state_); }
    const E& error() const { return std::get<1>(state_); }

private:
    std::variant<T, E> state_;
};

template <typename E>
class Outcome<void, E> {
public:
    Outcome() = default;
    template <typename F>
    Outcome(Failed<F> failure)
        : error_(std::move(failure.error)) {}

    bool has_value() const { return !error_; }
    explicit operator bool() const { return has_value(); }
    const E& error() const { return *error_; }

private:
    std::optional<E> error_;
};

} // namespace tilmora
