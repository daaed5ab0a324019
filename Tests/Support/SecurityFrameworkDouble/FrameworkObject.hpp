#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <CoreFoundation/CoreFoundation.h>

namespace SecurityFrameworkDouble {

/// Every kind of object of the double; the references that the calls take and give point to one.
struct FrameworkObject {
    enum class Kind : CFTypeID { string = 1, data, dictionary, array, boolean, trustedApplication, access, item };

    Kind kind = Kind::string;
    /// Of texts and data what they hold, of others what they are called in records.
    std::string text = {};
    std::vector<std::pair<CFTypeRef, CFTypeRef>> members = {};
    std::vector<const void*> elements = {};
    CFArrayCallBacks callBacks{};
    long references = 1;
    bool isConstant = false;
};

/// A new object with one reference, by the type that its users know.
template <class Reference>
Reference madeObject(FrameworkObject object);
CFTypeRef madeObject(FrameworkObject object);

/// The object behind a reference. Fails the test when it has been released already.
FrameworkObject& objectOf(CFTypeRef reference);
/// As above; fails the test also when the object is of another kind.
const FrameworkObject& objectOf(CFTypeRef reference, FrameworkObject::Kind kind);

/// How records show an object: texts quoted, data in angle brackets, constants by their names.
std::string shown(CFTypeRef reference);

/// The objects that somebody still owns, shown, without the constants; forgets all that are gone.
std::vector<std::string> takeLeftObjects();

template <class Reference>
Reference madeObject(FrameworkObject object) {
    return static_cast<Reference>(const_cast<void*>(madeObject(std::move(object))));
}

}  // namespace SecurityFrameworkDouble
