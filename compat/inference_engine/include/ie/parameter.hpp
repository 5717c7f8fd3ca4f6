// A value of a configuration entry or of a metric.
#pragma once

#include <any>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace InferenceEngine {

/** Holds a copy of a value of any type. */
class Parameter {
public:
    Parameter() = default;

    template <class T, class = std::enable_if_t<!std::is_same_v<std::decay_t<T>, Parameter>>>
    Parameter(T&& value) : value_(std::forward<T>(value)) {}

    bool empty() const noexcept { return !value_.has_value(); }

    template <class T>
    bool is() const {
        return value_.type() == typeid(std::decay_t<T>);
    }

    /** @throws std::bad_cast if the value has another type */
    template <class T>
    const T& as() const {
        return std::any_cast<const T&>(value_);
    }

private:
    std::any value_;
};

}  // namespace InferenceEngine
