// Of the vendor's Security framework exactly what the program uses; see CoreFoundation.h beside it.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

constexpr OSStatus errSecSuccess = 0;
constexpr OSStatus errSecItemNotFound = -25300;

extern const CFStringRef kSecAttrAccessible;
extern const CFStringRef kSecAttrAccessibleAfterFirstUnlock;
extern const CFStringRef kSecAttrAccount;
extern const CFStringRef kSecAttrService;
extern const CFStringRef kSecClass;
extern const CFStringRef kSecClassGenericPassword;
extern const CFStringRef kSecMatchLimit;
extern const CFStringRef kSecMatchLimitOne;
extern const CFStringRef kSecReturnData;
extern const CFStringRef kSecValueData;

OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef* result);
OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result);
OSStatus SecItemDelete(CFDictionaryRef query);

}  // extern "C"
