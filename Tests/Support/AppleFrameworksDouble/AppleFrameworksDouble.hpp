#pragma once

#include <chrono>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <Security/Security.h>

/// Stands in for macOS. Calls of the keychain are written down with all that they are given and answered in the order
/// that the test says; no items are kept. What the system knows of the application and the user is `known()`. Objects
/// count their references, and one that is used after its release fails the test. One thread only.
namespace AppleFrameworksDouble {

/// What every reference points to.
struct Object {
    enum class Kind : CFTypeID { string = 1, data, dictionary, array, other };

    Kind kind = Kind::other;
    /// What texts and data hold; by what name records show others.
    std::string text = {};
    /// The elements of an array; the keys of a dictionary, each before its value.
    std::vector<CFTypeRef> parts = {};
    void (*release)(CFAllocatorRef allocator, const void* part) = nullptr;
    long references = 1;
    bool isConstant = false;
};

/// All that have been made.
std::list<Object>& objects();

/// The caller owns the one reference of the new object.
CFTypeRef made(Object object);

/// A text of the framework's own, which nobody may release.
CFStringRef constant(const char* name);
CFTypeRef text(const std::string& content);
CFTypeRef data(const std::string& content);
/// Takes the references to the values.
CFTypeRef dictionary(const std::vector<CFTypeRef>& keysAndValues);
/// Takes the references to the elements.
CFTypeRef array(const std::vector<CFTypeRef>& elements);

/// The object behind a reference. Fails the test when it has been released already.
Object& objectOf(CFTypeRef reference);

/// How records show an object: texts quoted, data in angle brackets, constants by their names, members in the order in
/// which they were added.
std::string shown(CFTypeRef reference);

struct Answer {
    OSStatus status = errSecSuccess;
    /// For who gets one; the double passes the reference on.
    CFTypeRef object = nullptr;
};
/// What the next calls answer, one after the other. A call for which nothing is left fails the test.
void answer(const std::vector<Answer>& answers);

/// What the system knows, each by its key. The double owns the objects; what "Copy" functions give is owned by the
/// caller too, what "Get" functions give is not. A missing one is not known.
struct Known {
    bool mainBundle = true;
    std::map<std::string, CFTypeRef> information;
    std::map<std::string, CFTypeRef> localizedTexts;
    std::map<std::string, CFTypeRef> preferences;
    CFTypeRef preferredLanguages = nullptr;
    std::map<CFStringRef, CFTypeRef> locale;
    CFTypeRef computerName = nullptr;
    std::optional<std::string> productVersion;
};
Known& known();

/// Lets the time of libdispatch pass, and runs what comes up on its main queue. Of timers that fire at the same time
/// the last one comes first, as there is no promise of an order.
void runDispatchMainQueue(std::chrono::nanoseconds time = {});

/// The calls since the last time.
[[nodiscard]] std::vector<std::string> takeCalls();

/// Fails the test for each object that somebody else still owns, each answer that nobody asked for and all work that
/// nobody ran, and forgets everything.
void expectNothingLeft();

}  // namespace AppleFrameworksDouble
