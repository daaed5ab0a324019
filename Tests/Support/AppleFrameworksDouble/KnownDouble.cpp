#include "AppleFrameworksDouble.hpp"
#include "DoubleState.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

#include <SystemConfiguration/SystemConfiguration.h>
#include <gtest/gtest.h>
#include <sys/sysctl.h>

using AppleFrameworksDouble::constant;
using AppleFrameworksDouble::known;
using AppleFrameworksDouble::made;
using AppleFrameworksDouble::Object;
using AppleFrameworksDouble::objectOf;

namespace {

/// Opaque to the caller: nobody may release what a "Get" function has given.
CFBundleRef mainBundle() {
    static Object bundle{.text = "main bundle", .isConstant = true};
    return reinterpret_cast<CFBundleRef>(&bundle);
}

template <class Key>
CFTypeRef found(const std::map<Key, CFTypeRef>& values, const Key& key) {
    const auto entry = values.find(key);
    return entry == values.end() ? nullptr : entry->second;
}

CFTypeRef copied(CFTypeRef object) {
    return object == nullptr ? nullptr : CFRetain(object);
}

template <class Values>
void release(const Values& values) {
    for (const auto& [key, value] : values) {
        CFRelease(value);
    }
}

CFTypeRef currentLocale;
CFTypeRef informationDictionary;

}  // namespace

namespace AppleFrameworksDouble {

Known& known() {
    static Known values;
    return values;
}

void forgetKnown() {
    const auto values = std::exchange(known(), {});
    release(values.information);
    release(values.localizedTexts);
    release(values.preferences);
    release(values.locale);
    for (const auto* const object :
         {values.preferredLanguages, values.computerName, std::exchange(informationDictionary, nullptr)}) {
        if (object != nullptr) {
            CFRelease(object);
        }
    }
}

}  // namespace AppleFrameworksDouble

const CFStringRef kCFPreferencesCurrentApplication = constant("kCFPreferencesCurrentApplication");
const CFLocaleKey kCFLocaleCountryCode = constant("kCFLocaleCountryCode");
const CFLocaleKey kCFLocaleLanguageCode = constant("kCFLocaleLanguageCode");

CFBundleRef CFBundleGetMainBundle() {
    return known().mainBundle ? mainBundle() : nullptr;
}

CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle) {
    EXPECT_EQ(bundle, mainBundle());
    if (informationDictionary == nullptr) {
        std::vector<CFTypeRef> members;
        for (const auto& [key, value] : known().information) {
            members.insert(members.end(), {AppleFrameworksDouble::text(key), CFRetain(value)});
        }
        informationDictionary = AppleFrameworksDouble::dictionary(members);
    }
    return static_cast<CFDictionaryRef>(informationDictionary);
}

CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value, CFStringRef table) {
    EXPECT_EQ(bundle, mainBundle());
    EXPECT_EQ(table, nullptr) << "the application's own table";
    const auto* text = found(known().localizedTexts, objectOf(key).text);
    const auto isDefaultMissing = value == nullptr || objectOf(value).text.empty();
    return static_cast<CFStringRef>(CFRetain(text != nullptr ? text : isDefaultMissing ? key : value));
}

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
    EXPECT_EQ(application, kCFPreferencesCurrentApplication);
    return copied(found(known().preferences, objectOf(key).text));
}

CFArrayRef CFLocaleCopyPreferredLanguages() {
    return static_cast<CFArrayRef>(copied(known().preferredLanguages));
}

CFLocaleRef CFLocaleCopyCurrent() {
    currentLocale = known().locale.empty() ? nullptr : made({.text = "current locale"});
    return static_cast<CFLocaleRef>(currentLocale);
}

CFTypeRef CFLocaleGetValue(CFLocaleRef locale, CFLocaleKey key) {
    EXPECT_EQ(locale, currentLocale);
    EXPECT_EQ(objectOf(locale).text, "current locale");
    return found(known().locale, key);
}

CFStringRef SCDynamicStoreCopyComputerName(SCDynamicStoreRef store, CFStringEncoding* /*nameEncoding*/) {
    EXPECT_EQ(store, nullptr) << "a session is the caller's to make";
    return static_cast<CFStringRef>(copied(known().computerName));
}

int sysctlbyname(const char* name, void* old, std::size_t* oldLength, void* wanted, std::size_t wantedLength) {
    EXPECT_STREQ(name, "kern.osproductversion");
    EXPECT_EQ(wanted, nullptr) << "nothing is changed";
    EXPECT_EQ(wantedLength, 0U);
    const auto& version = known().productVersion;
    if (!version || version->size() + 1 > *oldLength) {
        return -1;
    }
    *oldLength = version->size() + 1;
    std::memcpy(old, version->c_str(), *oldLength);
    return 0;
}
