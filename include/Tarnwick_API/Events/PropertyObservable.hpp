#pragma once

#include <Tarnwick_API/Events/Event.hpp>

#include <memory>

namespace Tarnwick_API {

/// For an application's objects that have one property to be watched. The library has none itself.
template <typename Property>
class PropertyObservable {
public:
    /// What the property is.
    using PropertyType = Property;

    PropertyObservable() = default;
    PropertyObservable(const PropertyObservable&) = delete;
    PropertyObservable& operator=(const PropertyObservable&) = delete;
    virtual ~PropertyObservable() = default;

    /// Raised with the new value after each change. Always the same event. Each raise keeps its own value: when a
    /// handler changes the property again, the handlers after it get the newer value first and the older one last, so
    /// who needs the present one asks the object.
    [[nodiscard]] virtual const std::shared_ptr<Event<PropertyType>>& propertyChanged() const = 0;
};

}  // namespace Tarnwick_API
