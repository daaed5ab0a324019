#pragma once

#include <list>
#include <string>
#include <vector>

#include <Security/Security.h>

/// Stands in for the framework's calls: writes each down with all that it is given, and answers what the test says. It
/// keeps no items. Its objects count their references, and one that is used after its release fails the test. One
/// thread only.
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
CFTypeRef text(const std::string& content);
CFTypeRef data(const std::string& content);
/// Takes the references to the values.
CFTypeRef dictionary(const std::vector<CFTypeRef>& keysAndValues);

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

/// The calls since the last time.
[[nodiscard]] std::vector<std::string> takeCalls();

/// Fails the test for each object that somebody still owns and each answer that nobody asked for, and forgets
/// everything.
void expectNothingLeft();

}  // namespace AppleFrameworksDouble
